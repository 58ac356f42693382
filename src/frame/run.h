// One run of the program, from its arguments to its exit status.
#pragma once

namespace cubenet {

// 0 if the design was translated completely; 2 on a usage error, an input that can't be opened, or a failed
// stage.
int run_program(int argc, char **argv);

} // namespace cubenet
