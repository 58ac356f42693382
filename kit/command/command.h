// What a sub-command is: its name, its summary for the help texts, and the function that declares its
// arguments and returns the action to run.
#pragma once

#include <functional>
#include <span>
#include <string_view>

#include "kit/util/progress.h" // for the time that a command takes
#include "kit/util/status.h"

namespace CLI {
class App;
}

namespace cubekit {

// Declares options and positionals on the sub-command and returns the action, run after parsing; its result
// is the exit status. Parsed values live in the returned action (for example in a shared_ptr that it
// captures).
using CommandSetup = std::function<int()> (*)(CLI::App &command);

struct Command {
  std::string_view name;
  std::string_view summary;
  CommandSetup setup;
};

// Parses the arguments and runs the sub-command. Returns the exit status.
int run_command_line(std::span<const Command> commands, int argc, const char *const *argv);

} // namespace cubekit
