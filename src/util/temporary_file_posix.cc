// Temporary files on POSIX systems. They are listed for the signal handlers from before they are created
// until they are gone; the list has atomic pointers, so a handler sees a valid list at any time.
#include "util/temporary_file.h"

#include <array>
#include <atomic>
#include <climits>
#include <cstdio>

#include <fcntl.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <unistd.h>

namespace cubenet {
namespace {

using Listed = std::atomic<const char *>;
static_assert(Listed::is_always_lock_free);
std::array<Listed, 8> temporaries; // a null pointer is a free place

Listed *find_listed(const char *name) {
  for (Listed &place : temporaries)
    if (place == name) return &place;
  return nullptr;
}

void remove_listed(const std::string &name) {
  unlink(name.c_str());
  if (Listed *const place = find_listed(name.c_str()); place != nullptr) *place = nullptr;
}

std::string folder_of(const std::string &path) { return path.substr(0, path.rfind('/') + 1); }

bool take_over(int descriptor, const FileStatus &former) {
  FileStatus own;
  if (!file_status(descriptor, own)) return false;
  const bool is_owned = own.owner == former.owner && own.group == former.group;
  if (!is_owned && fchown(descriptor, former.owner, former.group) != 0)
    static_cast<void>(fchown(descriptor, static_cast<uid_t>(-1), former.group) == 0);
  return own.mode == former.mode || fchmod(descriptor, former.mode) == 0;
}

// Swapping looks the same from outside, and some file systems make a rename over another file wait
// milliseconds for the disk.
bool replace(const char *name, const char *path) {
#ifdef RENAME_EXCHANGE
  if (renameat2(AT_FDCWD, name, AT_FDCWD, path, RENAME_EXCHANGE) == 0) return true;
#endif
  return std::rename(name, path) == 0;
}

// For a mount point, or another user's file in a sticky folder.
bool write_over(const char *name, const char *path) {
  constexpr std::size_t kMost = std::size_t{1} << 30;
  const int from = open(name, O_RDONLY | O_CLOEXEC), to = open(path, O_WRONLY | O_TRUNC | O_CLOEXEC);
  ssize_t sent = -1;
  if (from >= 0 && to >= 0)
    while ((sent = sendfile(to, from, nullptr, kMost)) > 0) {
    }
  if (sent < 0 && to >= 0) static_cast<void>(cut_file(to, 0));
  if (from >= 0) close(from);
  return to >= 0 && close(to) == 0 && sent == 0;
}

} // namespace

std::string follow_links(const std::string &path) {
  std::array<char, PATH_MAX> text;
  std::string name = path;
  for (int links = 0; links < 40; links++) { // the system's own limit
    const ssize_t length = readlink(name.c_str(), text.data(), text.size());
    if (length <= 0) return name;
    const std::string next(text.data(), static_cast<std::size_t>(length));
    name = next.front() == '/' ? next : folder_of(name) + next;
  }
  return {};
}

int make_temporary(const std::string &path, const FileStatus *former, std::string &name) {
  name.insert(0, folder_of(path));
  Listed *const place = find_listed(nullptr);
  if (place == nullptr) return -1;
  *place = name.c_str();
  const mode_t mode = former != nullptr ? former->mode & 0777 : 0666;
  const int descriptor = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
  if (descriptor >= 0 && (former == nullptr || take_over(descriptor, *former))) return descriptor;
  if (descriptor >= 0)
    drop_temporary(descriptor, name);
  else
    *place = nullptr;
  return -1;
}

bool keep_temporary(int descriptor, const std::string &name, const std::string &path) {
  const bool kept =
      close_file(descriptor) && (replace(name.c_str(), path.c_str()) || write_over(name.c_str(), path.c_str()));
  remove_listed(name); // the replaced file may have this name now
  return kept;
}

void drop_temporary(int descriptor, const std::string &name) {
  static_cast<void>(close_file(descriptor));
  remove_listed(name);
}

void remove_temporaries() {
  for (const Listed &place : temporaries)
    if (const char *const name = place; name != nullptr) unlink(name);
}

} // namespace cubenet
