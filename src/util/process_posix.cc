// The start of a process: its signals and its standard streams.
#include "util/process.h"

#include <csignal>

#include <fcntl.h>
#include <unistd.h>

#include "util/temporary_file.h"

namespace cubenet {
namespace {

// The next file opened would get the descriptor of a closed standard stream, and console text would go into a
// netlist.
bool open_closed_streams() {
  for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; stream++)
    if (fcntl(stream, F_GETFD) < 0 && open("/dev/null", O_RDWR) != stream) return false;
  return true;
}

// Once this handler returns, the process ends as it would without one.
void end_without_temporaries(int signal) {
  remove_temporaries();
  raise(signal);
}

void catch_ending_signal(int signal) {
  struct sigaction action;
  // A background run ignores some signals.
  if (sigaction(signal, nullptr, &action) != 0 || action.sa_handler == SIG_IGN) return;
  action = {};
  action.sa_handler = end_without_temporaries;
  action.sa_flags = static_cast<int>(SA_RESETHAND);
  sigaction(signal, &action, nullptr);
}

} // namespace

bool start_process() {
  for (const int signal : {SIGPIPE, SIGXFSZ}) std::signal(signal, SIG_IGN);
  for (const int signal : {SIGHUP, SIGINT, SIGTERM}) catch_ending_signal(signal);
  return open_closed_streams();
}

} // namespace cubenet
