// Puts the installation directory into the environment, for hosts that start other tools from it. A
// translation doesn't need it.
#pragma once

#include <cstddef>
#include <string>

namespace cubenet {

constexpr std::size_t kLongestProgramPath = 1031; // a longer one is cut

struct InstallationHost {
  std::string (*program_path)(); // empty if unknown
  void (*message_box)(const char *text, const char *caption);
};

// The running program's path and the system's message boxes, printed to the console if it has none.
InstallationHost system_installation_host();

// Sets QVSROOT to the parent of the program's directory. Returns 1 if it did, 0 if QVSROOT and
// QVS_USE_QVSROOT are set, and kept, 2 if the program's path has no such parent. With QVS_DEBUG_ENV set, it
// shows what it did in two message boxes.
int set_installation_directory(const InstallationHost &host);

} // namespace cubenet
