// What can only be seen from inside a program on Windows. Without an argument it sets the installation
// directory as the running program, and prints the effect: the result, the variable as the C runtime and as
// the system have it. With the name of a file it writes an output, prints whether the name is there
// meanwhile, and keeps the output, also while somebody reads the file that is there, discards it, or ends by
// force, as the second argument says.
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include <windows.h>

#include "frame/installation.h"
#include "util/output_file.h"

namespace {

void print_installation() {
  const int result = cubenet::set_installation_directory(cubenet::system_installation_host());
  const char *const root = std::getenv("QVSROOT");
  char system_root[MAX_PATH] = "unset";
  GetEnvironmentVariableA("QVSROOT", system_root, sizeof system_root);
  std::printf("%d %s %s", result, root != nullptr ? root : "unset", system_root);
}

void write_output(const char *name, std::string_view end) {
  cubenet::OutputFile file;
  if (!cubenet::open_output(file, name)) return;
  cubenet::put(file, "text");
  cubenet::flush_output(file);
  std::printf("%s %s", file.failed ? "failed" : "written",
              GetFileAttributesA(name) != INVALID_FILE_ATTRIBUTES ? "over" : "new");
  std::fflush(stdout);
  if (end == "ended") TerminateProcess(GetCurrentProcess(), 3);
  if (end == "read")
    CreateFileA(name, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
  if (end != "discarded") std::printf(cubenet::close_output(file) ? " whole" : " lost");
}

} // namespace

int main(int argc, char **argv) {
  if (argc > 2)
    write_output(argv[1], argv[2]);
  else
    print_installation();
  return 0;
}
