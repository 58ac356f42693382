// Output files on plain descriptors: a block that is written whenever it is full, and a failure that sticks until the
// close, which is where disk-full errors of small files show. The text goes into a temporary file that takes the place
// of the named one in the end; devices, pipes, and files in a folder that takes no other are written as they are.
#include "util/output_file.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

#include "util/memory.h"
#include "util/temporary_file.h"

namespace cubenet {
namespace {

std::vector<FileIdentity> protected_files;
OutputFile *open_files = nullptr;

void unlist(const OutputFile &file) {
  for (OutputFile **link = &open_files; *link != nullptr; link = &(*link)->next)
    if (*link == &file) {
      *link = file.next;
      return;
    }
}

// Whether `name` is that of a file that can be put aside: not one of a device, or of a file that has no name any more.
bool is_replaceable(const FileStatus &former, const std::string &name) {
  FileStatus named;
  return former.is_regular && find_file(name, named) && named.identity == former.identity;
}

// Nobody else's, on any machine that shares the folder.
std::string make_temporary_name() {
  static std::uint64_t number = 0;
  if (number == 0) static_cast<void>(fill_with_random_bytes(&number, sizeof number)); // the making finds out
  return ".cubenet-" + std::to_string(number++);
}

// Makes a temporary file for the text where that is possible; `former` is nullptr when the path names no file. The
// descriptor; -1 where the file is to be written in place.
int open_beside(OutputFile &file, const FileStatus *former) {
  file.target = follow_links(file.path);
  if (file.target.empty() || (former != nullptr && !is_replaceable(*former, file.target))) return -1;
  file.temporary = make_temporary_name();
  const int beside = make_temporary(file.target, former, file.temporary);
  if (beside < 0) file.temporary.clear();
  return beside;
}

int open_in_place(const OutputFile &file, int there, const FileStatus &former) {
  if (there < 0) return open_file(file.path, OpenFor::OVERWRITING);
  return !former.is_regular || cut_file(there, 0) ? there : -1;
}

// Truncating first takes the part away from every name of the file; the name that was opened may be a link.
void remove_part(const OutputFile &file) {
  FileStatus status;
  if (file.path.empty() || !file_status(file.descriptor, status) || !status.is_regular) return;
  [[maybe_unused]] const bool emptied = cut_file(file.descriptor, 0); // the name goes whether this succeeds or not
  remove_file(file.path);
}

// Ends a file that is written as it is, whole or not.
bool close_in_place(const OutputFile &file) {
  if (file.failed) remove_part(file);
  return close_file(file.descriptor) && !file.failed;
}

void release(OutputFile &file) {
  unlist(file);
  std::free(file.block);
  file.block = nullptr;
  file.used = file.capacity = 0;
  file.descriptor = -1;
  file.temporary.clear();
}

} // namespace

OutputFile::~OutputFile() { discard_output(*this); }

void protect_from_output(const FileStatus &status) {
  if (status.is_regular) protected_files.push_back(status.identity);
}

void protect_from_output(const std::string &path) {
  if (FileStatus status; find_file(path, status)) protect_from_output(status);
}

void end_protection() { protected_files.clear(); }

bool is_protected_from_output(const FileStatus &status) {
  return std::find(protected_files.begin(), protected_files.end(), status.identity) != protected_files.end();
}

bool open_output(OutputFile &file, const std::string &path) {
  // Opened even where it is only replaced: what may not be written is not replaced either.
  const int there = open_file(path, OpenFor::REPLACING);
  FileStatus former;
  const bool is_refused =
      there < 0 ? find_file(path, former) : !file_status(there, former) || is_protected_from_output(former);
  file.path = path;
  file.failed = false;
  file.used = 0;
  file.descriptor = is_refused ? -1 : open_beside(file, there >= 0 ? &former : nullptr);
  if (!is_refused && file.descriptor < 0) file.descriptor = open_in_place(file, there, former);
  if (there >= 0 && file.descriptor != there) static_cast<void>(close_file(there));
  if (file.descriptor < 0) return false;
  file.next = open_files;
  open_files = &file;
  return true;
}

bool close_output(OutputFile &file) {
  if (file.descriptor < 0) return false;
  flush_output(file);
  bool whole = false;
  if (file.temporary.empty())
    whole = close_in_place(file);
  else if (!file.failed)
    whole = keep_temporary(file.descriptor, file.temporary, file.target);
  else
    drop_temporary(file.descriptor, file.temporary);
  release(file);
  return whole;
}

void flush_output(OutputFile &file) {
  if (!file.failed && file.used > 0) file.failed = !write_all(file.descriptor, file.block, file.used);
  file.used = 0;
}

void discard_output(OutputFile &file) {
  file.failed = true;
  static_cast<void>(close_output(file));
}

void discard_open_outputs() {
  while (open_files != nullptr) discard_output(*open_files);
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

} // namespace cubenet
