#include "kit/commands.h"
#include "util/process.h"

int main(int argc, char **argv) {
  return cubenet::start_process() ? cubekit::run_command_line(cubekit::commands(), argc, argv) : cubekit::kMisuse;
}
