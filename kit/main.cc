#include "kit/command.h"

int main(int argc, char **argv) { return cubekit::run_cubekit(argc, argv); }
