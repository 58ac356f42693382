// The program as the system starts it: sound standard streams and writes that fail instead of killing, then the run.
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

#include "frame/run.h"

namespace {

// A stream that came closed would lend its number to the next file that is opened, and console text would end in a
// netlist.
bool open_closed_streams() {
  for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; stream++)
    if (fcntl(stream, F_GETFD) < 0 && open("/dev/null", O_RDWR) != stream) return false;
  return true;
}

} // namespace

int main(int argc, char **argv) {
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  if (!open_closed_streams()) return 2;
  return cubenet::run_program(argc, argv);
}
