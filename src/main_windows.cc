// The Windows entry point: a process without windows, inside a host that splits the command line and takes
// all console output.
#include <algorithm>
#include <array>
#include <string>

#include "frame/host_library.h"
#include "frame/run.h"
#include "report/console.h"

namespace {

struct HostLibraryConsole final : cubenet::HostConsole {
  void print(std::string_view text) override { HostPrint("%s", std::string(text).c_str()); }
};

} // namespace

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int) {
  int count = 0;
  std::array<char *, kMostArguments> arguments{};
  HostSplitCommandLine(GetCommandLineA(), &count, arguments.data());
  count = std::clamp(count, 0, kMostArguments); // the host drops further arguments
  char empty[] = "";
  for (char *&argument : arguments)
    if (argument == nullptr) argument = empty;
  HostRegisterInstance(instance);
  HostStart(count, arguments.data());

  static HostLibraryConsole console;
  cubenet::set_host_console(&console);
  return cubenet::run_program(count, arguments.data());
}
