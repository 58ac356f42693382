// The installation directory: the program's path without its last two components, put into the environment.
#include "frame/installation.h"

#include <cstdlib>
#include <string_view>

#include "util/system.h"

namespace cubenet {
namespace {

// `path` up to its last separator; empty if there is none after the first character.
std::string_view parent_directory(std::string_view path) {
  const std::size_t separator = path.find_last_of("\\/");
  return separator == std::string_view::npos ? std::string_view() : path.substr(0, separator);
}

} // namespace

int set_installation_directory(const InstallationHost &host) {
  if (std::getenv("QVSROOT") != nullptr && std::getenv("QVS_USE_QVSROOT") != nullptr) return 0;
  const std::string path = host.program_path();
  const std::string directory(parent_directory(parent_directory(path)));
  if (directory.empty()) return 2;
  set_environment("QVSROOT", directory);
  if (std::getenv("QVS_DEBUG_ENV") != nullptr) {
    host.message_box(("QVSROOT=" + directory).c_str(), "qvprint: QVSROOT");
    const char *const now = std::getenv("QVSROOT");
    host.message_box(now != nullptr ? now : "", "qvprint: getenv(QVSROOT)");
  }
  return 1;
}

} // namespace cubenet
