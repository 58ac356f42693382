// The operating system where it is POSIX.
#include "util/system.h"

#include <cerrno>
#include <cstdlib>

#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

namespace cubenet {

int open_file(const std::string &path, OpenFor use) {
  const int append = use == OpenFor::OVERWRITING ? 0 : O_APPEND, empty = use == OpenFor::EMPTYING ? O_TRUNC : 0;
  return open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | append | empty, 0666);
}

bool file_status(int descriptor, FileStatus &status) {
  struct stat found;
  if (fstat(descriptor, &found) != 0) return false;
  status = {S_ISREG(found.st_mode),
            S_ISDIR(found.st_mode),
            {found.st_dev, found.st_ino},
            static_cast<std::uint64_t>(found.st_size)};
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

bool is_at_start(int descriptor) { return lseek(descriptor, 0, SEEK_CUR) == 0; }

bool close_file(int descriptor) { return close(descriptor) == 0; }

void remove_file(const std::string &path) { unlink(path.c_str()); }

int descriptor_of(std::FILE *stream) { return fileno(stream); }

bool fill_with_random_bytes(void *bytes, std::size_t size) {
  return getrandom(bytes, size, GRND_NONBLOCK) == static_cast<ssize_t>(size);
}

void set_environment(const std::string &name, const std::string &value) { setenv(name.c_str(), value.c_str(), 1); }

} // namespace cubenet
