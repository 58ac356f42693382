// The program's path and the message boxes of Windows.
#include <array>

#include <windows.h>

#include "frame/installation.h"

namespace cubenet {
namespace {

std::string path_of_this_program() {
  std::array<char, kLongestProgramPath + 1> path;
  const DWORD length = GetModuleFileNameA(nullptr, path.data(), static_cast<DWORD>(path.size()));
  return {path.data(), length < path.size() ? length : kLongestProgramPath};
}

void show_box(const char *text, const char *caption) { MessageBoxA(nullptr, text, caption, MB_OK); }

} // namespace

InstallationHost system_installation_host() { return {path_of_this_program, show_box}; }

} // namespace cubenet
