// Reads in blocks: filling a text of the whole size with zeros first would take as long as reading it.
#include "kit/util/file.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>

#include "kit/util/large_list.h"
#include "util/output_file.h"

namespace cubekit {

bool read_all(int descriptor, std::string &text) {
  if (cubenet::FileStatus status; cubenet::file_status(descriptor, status) && status.is_regular)
    reserve_large(text, text.size() + status.size);
  std::array<char, std::size_t{64} << 10> block;
  ssize_t got = 0;
  while ((got = ::read(descriptor, block.data(), block.size())) > 0 || (got < 0 && errno == EINTR))
    if (got > 0) text.append(block.data(), static_cast<std::size_t>(got));
  return got == 0;
}

namespace {

bool read(const std::string &path, bool is_ours, std::string &text, Finding &error) {
  text.clear();
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (cubenet::FileStatus status; !is_ours && descriptor >= 0 && cubenet::file_status(descriptor, status))
    cubenet::protect_from_output(status);
  const bool done = descriptor >= 0 && read_all(descriptor, text);
  if (!done) error = {0, std::strerror(errno)};
  if (descriptor >= 0) ::close(descriptor);
  return done;
}

} // namespace

bool read_file(const std::string &path, std::string &text, Finding &error) { return read(path, false, text, error); }

bool read_temporary(const std::string &path, std::string &text, Finding &error) {
  return read(path, true, text, error);
}

} // namespace cubekit
