// Output files on plain descriptors: a block that is written whenever it is full, and a failure that sticks until the
// close, which is where disk-full errors of small files show. A file that could not be written whole is emptied and
// removed, so that no later tool takes a part for the whole; devices and pipes are only closed.
#include "util/output_file.h"

#include <array>
#include <cstdlib>

#include "util/memory.h"
#include "util/system.h"

namespace cubenet {
namespace {

constexpr std::array<std::array<char, 2>, 100> make_digit_pairs() {
  std::array<std::array<char, 2>, 100> pairs{};
  for (std::size_t n = 0; n < pairs.size(); n++)
    pairs[n] = {static_cast<char>('0' + n / 10), static_cast<char>('0' + n % 10)};
  return pairs;
}
constexpr std::array<std::array<char, 2>, 100> kDigitPairs = make_digit_pairs();

std::array<FileIdentity, 4> protected_files; // the first `protected_count` count
std::size_t protected_count = 0;
OutputFile *open_files = nullptr;

// The place of the file among the protected ones; their number when it is none of them.
std::size_t find_protected(const FileStatus &status) {
  std::size_t i = 0;
  while (i < protected_count && !(protected_files[i] == status.identity)) i++;
  return i;
}

void unlist(const OutputFile &file) {
  for (OutputFile **link = &open_files; *link != nullptr; link = &(*link)->next)
    if (*link == &file) {
      *link = file.next;
      return;
    }
}

// Truncating first takes the part away from every name of the file; the name that was opened may be a link.
void remove_part(const OutputFile &file) {
  FileStatus status;
  if (!file_status(file.descriptor, status) || !status.is_regular) return;
  [[maybe_unused]] const bool emptied = cut_file(file.descriptor, 0); // the name goes whether this succeeds or not
  remove_file(file.path);
}

// Takes the old contents away, all but one byte, which the first write replaces: after emptying a file some file
// systems wait for the disk when it is closed, for milliseconds.
bool drop_contents(int descriptor, const FileStatus &status) {
  return !status.is_regular || status.size <= 1 || cut_file(descriptor, 1);
}

// For a file that nothing was written to.
bool drop_last_byte(int descriptor) {
  if (!is_at_start(descriptor)) return true;
  FileStatus status;
  return file_status(descriptor, status) && (!status.is_regular || status.size == 0 || cut_file(descriptor, 0));
}

void release(OutputFile &file) {
  unlist(file);
  std::free(file.block);
  file.block = nullptr;
  file.used = file.capacity = 0;
  file.descriptor = -1;
}

} // namespace

OutputFile::~OutputFile() {
  if (!close_output(*this)) release(*this);
}

void protect_from_output(int descriptor) {
  FileStatus status;
  if (!file_status(descriptor, status) || !status.is_regular || protected_count == protected_files.size()) return;
  protected_files[protected_count++] = status.identity;
}

void unprotect_from_output(int descriptor) {
  FileStatus status;
  if (!file_status(descriptor, status)) return;
  const std::size_t place = find_protected(status);
  if (place < protected_count) protected_files[place] = protected_files[--protected_count];
}

bool open_output(OutputFile &file, const std::string &path) {
  // Emptied only once it is known to be no file that is still needed.
  const int descriptor = open_file(path, OpenFor::OVERWRITING);
  if (descriptor < 0) return false;
  FileStatus status;
  if (!file_status(descriptor, status) || find_protected(status) < protected_count ||
      !drop_contents(descriptor, status)) {
    static_cast<void>(close_file(descriptor));
    return false;
  }
  file.path = path;
  file.descriptor = descriptor;
  file.failed = false;
  file.used = 0;
  file.next = open_files;
  open_files = &file;
  return true;
}

bool close_output(OutputFile &file) {
  if (file.descriptor < 0) return false;
  flush_output(file);
  bool whole = !file.failed && drop_last_byte(file.descriptor);
  if (!whole) remove_part(file);
  if (!close_file(file.descriptor) && whole) {
    whole = false;
    remove_file(file.path);
  }
  release(file);
  return whole;
}

void flush_output(OutputFile &file) {
  if (!file.failed && file.used > 0) file.failed = !write_all(file.descriptor, file.block, file.used);
  file.used = 0;
}

void discard_open_outputs() {
  while (open_files != nullptr) {
    OutputFile &file = *open_files;
    file.failed = true;
    static_cast<void>(close_output(file));
  }
}

char *grow_output(OutputFile &file, std::size_t bytes) {
  flush_output(file);
  if (file.block == nullptr || bytes > file.capacity) {
    const std::size_t wanted = bytes > OutputFile::kBlock ? bytes : OutputFile::kBlock;
    std::free(file.block);
    file.block = nullptr;
    file.capacity = 0;
    file.block = static_cast<char *>(allocate(wanted));
    file.capacity = wanted;
  }
  return file.block;
}

char *append_decimal(char *at, std::uint64_t value) {
  std::array<char, 20> digits; // of the largest value
  char *first = digits.data() + digits.size();
  for (; value >= 100; value /= 100)
    std::memcpy(first -= 2, kDigitPairs[static_cast<std::size_t>(value % 100)].data(), 2);
  if (value >= 10)
    std::memcpy(first -= 2, kDigitPairs[static_cast<std::size_t>(value)].data(), 2);
  else
    *--first = static_cast<char>('0' + value);
  return append(at, std::string_view(first, static_cast<std::size_t>(digits.data() + digits.size() - first)));
}

} // namespace cubenet
