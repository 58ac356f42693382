// Sets the installation directory as the running program on Windows, and prints what came of it: the result, the
// variable as the C runtime and as the system have it.
#include <cstdio>
#include <cstdlib>

#include <windows.h>

#include "frame/installation.h"

int main() {
  const int result = cubenet::set_installation_directory(cubenet::system_installation_host());
  const char *const root = std::getenv("QVSROOT");
  char system_root[MAX_PATH] = "unset";
  GetEnvironmentVariableA("QVSROOT", system_root, sizeof system_root);
  std::printf("%d %s %s", result, root != nullptr ? root : "unset", system_root);
  return 0;
}
