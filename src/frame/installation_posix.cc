// The program's path on POSIX systems, and message boxes printed to the console.
#include <array>

#include <unistd.h>

#include "frame/installation.h"
#include "report/console.h"

namespace cubenet {
namespace {

std::string path_of_this_program() {
  std::array<char, kLongestProgramPath> path;
  const ssize_t length = readlink("/proc/self/exe", path.data(), path.size());
  return length < 0 ? std::string() : std::string(path.data(), static_cast<std::size_t>(length));
}

void print_box(const char *text, const char *caption) { console_printf("%s\n%s\n", caption, text); }

} // namespace

InstallationHost system_installation_host() { return {path_of_this_program, print_box}; }

} // namespace cubenet
