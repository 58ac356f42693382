// Large files are mapped: filling fresh memory with their bytes takes longer than all that is done with them.
#include "kit/util/file_text.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ostream>
#include <utility>

#include "util/memory.h"
#include "util/output_file.h"
#include "util/temporary_file.h"

namespace cubekit {

namespace {

constexpr std::size_t kBlock = std::size_t{64} << 10;
constexpr std::size_t kLarge = std::size_t{1} << 20;

// A text was of a file that changed meanwhile.
bool changed_text = false;

// A mapped byte is gone: its file was cut short, or its disk fails.
void end_for_lost_bytes(int) {
  constexpr std::string_view kText = "cubekit: a file was cut short while it was read, or can't be read any more\n";
  [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, kText.data(), kText.size());
  cubenet::remove_temporaries();
  ::_exit(2);
}

bool end_when_bytes_are_lost() {
  struct sigaction action {};
  action.sa_handler = end_for_lost_bytes;
  return ::sigaction(SIGBUS, &action, nullptr) == 0;
}

// The name and the links of the file don't matter.
FileState state_of(const struct stat &status) {
  return {status.st_size, status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
}

bool has_changed(int descriptor, const FileState &before) {
  struct stat status {};
  return ::fstat(descriptor, &status) != 0 || state_of(status) != before;
}

} // namespace

FileText FileText::map(int descriptor, const FileState &state) {
  static const bool is_safe = end_when_bytes_are_lost();
  if (!is_safe) return {};
  const auto size = static_cast<std::size_t>(state.size);
  const auto page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
  const std::size_t mapped = (size + kPadding + page - 1) / page * page;
  constexpr int kAccess = PROT_READ | PROT_WRITE; // to put line ends behind the text
  void *start = ::mmap(nullptr, mapped, kAccess, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (start == MAP_FAILED) return {};
  if (::mmap(start, size, kAccess, MAP_PRIVATE | MAP_FIXED, descriptor, 0) == MAP_FAILED) {
    ::munmap(start, mapped);
    return {};
  }
  FileText text(static_cast<char *>(start), size, FreeText{mapped, descriptor, state});
  text.end_at(size);
  return text;
}

bool FileText::has_changed() const {
  const FreeText &how = bytes_.get_deleter();
  return how.mapped != 0 && cubekit::has_changed(how.descriptor, how.state);
}

bool take_changed_text() { return std::exchange(changed_text, false); }

FileText::FileText(std::size_t size)
    : FileText(static_cast<char *>(cubenet::allocate(size + kPadding)), size, FreeText{}) {
  end_at(size);
}

void FileText::end_at(std::size_t size) {
  size_ = size;
  std::memset(bytes_.get() + size_, '\n', kPadding);
}

void FreeText::operator()(char *bytes) const {
  if (mapped == 0) {
    std::free(bytes);
    return;
  }
  changed_text |= has_changed(descriptor, state);
  ::munmap(bytes, mapped);
  ::close(descriptor);
}

bool read_file(const std::string &path, FileText &text, Finding &error) {
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  struct stat status {};
  if (descriptor < 0 || ::fstat(descriptor, &status) != 0) {
    error = {0, std::strerror(errno)};
    if (descriptor >= 0) ::close(descriptor);
    return false;
  }
  cubenet::protect_from_output(path);
  const auto size = S_ISREG(status.st_mode) ? static_cast<std::size_t>(status.st_size) : 0;
  if (size >= kLarge) {
    text = FileText::map(descriptor, state_of(status));
    if (text.size() != 0) return true;
  }
  // One byte more than there seem to be, so that the end is seen; what has no size, as a pipe, is read by blocks.
  text = FileText(std::max(size + 1, kBlock));
  std::size_t used = 0;
  ssize_t got = 0;
  while ((got = ::read(descriptor, text.data() + used, text.size() - used)) > 0) {
    used += static_cast<std::size_t>(got);
    if (used < text.size()) continue;
    FileText larger(2 * used);
    std::memcpy(larger.data(), text.data(), used);
    text = std::move(larger);
  }
  if (got < 0) error = {0, std::strerror(errno)};
  if (S_ISREG(status.st_mode)) changed_text |= has_changed(descriptor, state_of(status));
  ::close(descriptor);
  text.end_at(used);
  return got >= 0;
}

void print_finding(std::ostream &stream, const std::string &path, const Finding &finding) {
  stream << path;
  if (finding.line != 0) stream << ':' << finding.line;
  stream << ": " << finding.text << '\n';
}

} // namespace cubekit
