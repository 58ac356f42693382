// The operating system interface on POSIX.
#include "util/system.h"

#include <cerrno>
#include <cstdlib>

#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

namespace cubenet {

namespace {

FileStatus status_of(const struct stat &found) {
  constexpr std::uint64_t kNanoseconds = 1'000'000'000;
  return {
      .is_regular = S_ISREG(found.st_mode),
      .is_directory = S_ISDIR(found.st_mode),
      .identity = {found.st_dev, found.st_ino},
      .size = static_cast<std::uint64_t>(found.st_size),
      .changed = static_cast<std::uint64_t>(found.st_mtim.tv_sec) * kNanoseconds +
                 static_cast<std::uint64_t>(found.st_mtim.tv_nsec),
      .owner = found.st_uid,
      .group = found.st_gid,
      .mode = found.st_mode & (S_ISUID | S_ISGID | S_ISVTX | S_IRWXU | S_IRWXG | S_IRWXO),
  };
}

} // namespace

int open_file(const std::string &path, OpenFor use) {
  constexpr int kFlags[] = {0, O_CREAT, O_CREAT | O_APPEND, O_CREAT | O_APPEND | O_TRUNC}; // by use
  return open(path.c_str(), O_WRONLY | O_CLOEXEC | kFlags[static_cast<std::size_t>(use)], 0666);
}

bool file_status(int descriptor, FileStatus &status) {
  struct stat found;
  if (fstat(descriptor, &found) != 0) return false;
  status = status_of(found);
  return true;
}

bool find_file(const std::string &path, FileStatus &status) {
  struct stat found;
  if (stat(path.c_str(), &found) != 0) return false;
  status = status_of(found);
  return true;
}

bool write_all(int descriptor, const char *text, std::size_t length) {
  while (length > 0) {
    const ssize_t written = write(descriptor, text, length);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    text += written;
    length -= static_cast<std::size_t>(written);
  }
  return true;
}

bool cut_file(int descriptor, std::uint64_t size) { return ftruncate(descriptor, static_cast<off_t>(size)) == 0; }

bool close_file(int descriptor) { return close(descriptor) == 0; }

void remove_file(const std::string &path) { unlink(path.c_str()); }

int descriptor_of(std::FILE *stream) { return fileno(stream); }

bool is_terminal(int descriptor) { return isatty(descriptor) == 1; }

bool fill_with_random_bytes(void *bytes, std::size_t size) {
  return getrandom(bytes, size, GRND_NONBLOCK) == static_cast<ssize_t>(size);
}

void set_environment(const std::string &name, const std::string &value) { setenv(name.c_str(), value.c_str(), 1); }

} // namespace cubenet
