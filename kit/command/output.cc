// The commands' output, through the translator's own writer.
#include "kit/command/output.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <iostream>
#include <streambuf>

#include "kit/command/command.h"
#include "util/output_file.h"

namespace cubekit {

namespace {

// Lets a stream write to an output file, whose close reports what was lost.
class OutputBuffer final : public std::streambuf {
public:
  explicit OutputBuffer(cubenet::OutputFile &file) : file_(file) {}

private:
  int_type overflow(int_type c) override {
    if (!traits_type::eq_int_type(c, traits_type::eof())) put(file_, traits_type::to_char_type(c));
    return traits_type::not_eof(c);
  }
  std::streamsize xsputn(const char *text, std::streamsize size) override {
    put(file_, std::string_view(text, static_cast<std::size_t>(size)));
    return size;
  }

  cubenet::OutputFile &file_;
};

int report(const std::string &path) {
  const char *const reason = std::strerror(errno);
  cubenet::FileStatus status;
  if (cubenet::find_file(path, status) && cubenet::is_protected_from_output(status))
    std::cerr << path << ": is still needed; not overwritten\n";
  else
    std::cerr << (path.empty() ? "standard output" : path) << ": can't be written: " << reason << '\n';
  return kMisuse;
}

bool open_standard_output(cubenet::OutputFile &file) {
  std::cout.flush();
  file.descriptor = ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0);
  return file.descriptor >= 0;
}

} // namespace

int write_output(const std::string &path, const std::function<void(cubenet::OutputFile &)> &write) {
  cubenet::OutputFile file;
  errno = 0;
  if (!(path.empty() ? open_standard_output(file) : open_output(file, path))) return report(path);
  write(file);
  return close_output(file) ? kYes : report(path);
}

int write_output(const std::string &path, const std::function<void(std::ostream &)> &write) {
  return write_output(path, [&](cubenet::OutputFile &file) {
    OutputBuffer buffer(file);
    std::ostream stream(&buffer);
    write(stream);
  });
}

} // namespace cubekit
