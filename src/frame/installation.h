// The installation directory in the environment, for hosts that start further tools from it. A translation run needs
// none of it.
#pragma once

#include <cstddef>
#include <string>

namespace cubenet {

constexpr std::size_t kLongestProgramPath = 1031; // of a longer one the front counts

struct InstallationHost {
  std::string (*program_path)(); // empty when it can't be told
  void (*message_box)(const char *text, const char *caption);
};

// The running program's path as the system knows it, and its message boxes, printed to the console where it has none.
InstallationHost system_installation_host();

// Puts the parent of the program's directory into QVSROOT. 1 when it did, 0 when QVSROOT and QVS_USE_QVSROOT are set
// and stay, 2 when the program's path has no such parent. With QVS_DEBUG_ENV set it shows what it did in two message
// boxes.
int set_installation_directory(const InstallationHost &host);

} // namespace cubenet
