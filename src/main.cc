// The program's entry point.
#include "frame/run.h"
#include "util/process.h"

int main(int argc, char **argv) { return cubenet::start_process() ? cubenet::run_program(argc, argv) : 2; }
