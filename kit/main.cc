#include "kit/commands.h"

int main(int argc, char **argv) { return cubekit::run_command_line(cubekit::commands(), argc, argv); }
