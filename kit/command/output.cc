// Output files of the kit: checked streams.
#include "kit/command/output.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "kit/command/command.h"

namespace cubekit {

namespace {

int report(const std::string &path) {
  std::cerr << (path.empty() ? "standard output" : path) << ": can't be written: " << std::strerror(errno) << '\n';
  return kMisuse;
}

} // namespace

int write_output(const std::string &path, const std::function<void(std::ostream &)> &write) {
  errno = 0;
  if (path.empty()) {
    write(std::cout);
    return std::cout.flush() ? kYes : report(path);
  }
  std::ofstream file(path, std::ios::binary);
  if (!file) return report(path);
  write(file);
  file.close();
  if (file) return kYes;
  const int status = report(path);
  std::error_code ignored;
  if (std::filesystem::is_regular_file(path, ignored)) std::filesystem::remove(path, ignored);
  return status;
}

} // namespace cubekit
