// What can only be seen from inside a program on Windows. Without an argument it sets the installation directory as the
// running program, and prints what came of it: the result, the variable as the C runtime and as the system have it.
// With the name of a file it writes a part of an output, gives up, and prints how far it came.
#include <cstdio>
#include <cstdlib>

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

void print_part(const char *name) {
  cubenet::OutputFile file;
  if (!cubenet::open_output(file, name)) return;
  std::printf("opened");
  cubenet::put(file, "a part");
  cubenet::flush_output(file);
  if (!file.failed && GetFileAttributesA(name) != INVALID_FILE_ATTRIBUTES) std::printf(" written");
  file.failed = true;
  std::printf(cubenet::close_output(file) ? " whole" : " not whole");
}

} // namespace

int main(int argc, char **argv) {
  if (argc > 1)
    print_part(argv[1]);
  else
    print_installation();
  return 0;
}
