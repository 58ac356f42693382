// The start of a process: its signals and its standard streams.
#include "util/process.h"

#include <csignal>

#include <fcntl.h>
#include <unistd.h>

#include "util/temporary_file.h"

namespace cubenet {
namespace {

// A stream that came closed would lend its number to the next file that is opened, and console text would end in a
// netlist.
bool open_closed_streams() {
  for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; stream++)
    if (fcntl(stream, F_GETFD) < 0 && open("/dev/null", O_RDWR) != stream) return false;
  return true;
}

// The process ends as it would without a handler, once this one returns.
void end_without_temporaries(int signal) {
  remove_temporaries();
  raise(signal);
}

void catch_ending_signal(int signal) {
  struct sigaction action;
  if (sigaction(signal, nullptr, &action) != 0 || action.sa_handler == SIG_IGN)
    return; // as for a run in the background
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
