// The installation directory: two cuts of the program's path, put into the environment.
#include "frame/installation.h"

#include <array>
#include <cstdlib>
#include <string_view>

#include <unistd.h>

#include "frame/console.h"

namespace cubenet {
namespace {

std::string path_of_this_program() {
  std::array<char, 1031> path; // no longer path is asked for
  const ssize_t length = readlink("/proc/self/exe", path.data(), path.size());
  return length < 0 ? std::string() : std::string(path.data(), static_cast<std::size_t>(length));
}

void print_box(const char *text, const char *caption) { console_printf("%s\n%s\n", caption, text); }

// `path` up to its last separator; empty when there is none behind the first character.
std::string_view parent_directory(std::string_view path) {
  const std::size_t separator = path.find_last_of("\\/");
  return separator == std::string_view::npos ? std::string_view() : path.substr(0, separator);
}

} // namespace

InstallationHost system_installation_host() { return {path_of_this_program, print_box}; }

int set_installation_directory(const InstallationHost &host) {
  if (std::getenv("QVSROOT") != nullptr && std::getenv("QVS_USE_QVSROOT") != nullptr) return 0;
  const std::string path = host.program_path();
  const std::string directory(parent_directory(parent_directory(path)));
  if (directory.empty()) return 2;
  setenv("QVSROOT", directory.c_str(), 1);
  if (std::getenv("QVS_DEBUG_ENV") != nullptr) {
    host.message_box(("QVSROOT=" + directory).c_str(), "qvprint: QVSROOT");
    const char *const now = std::getenv("QVSROOT");
    host.message_box(now != nullptr ? now : "", "qvprint: getenv(QVSROOT)");
  }
  return 1;
}

} // namespace cubenet
