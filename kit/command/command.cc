// The command line of cubekit: help, version, and the exit statuses.
#include "kit/command/command.h"

#include <CLI/CLI.hpp>
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#include "util/memory.h"
#include "util/output_file.h"

namespace cubekit {

namespace {

constexpr std::string_view kVersion = "cubekit 7.1.01";

struct Registered {
  CLI::App *app;
  std::function<int()> action;
};

int print_help(const std::vector<Registered> &registered, const CLI::App &app, const std::string &topic) {
  if (topic.empty()) {
    std::cout << app.help();
    return kYes;
  }
  for (const Registered &command : registered) {
    if (command.app->get_name() != topic) continue;
    std::cout << command.app->help("cubekit");
    return kYes;
  }
  std::cerr << "cubekit: there is no command '" << topic << "'; 'cubekit --help' lists them\n";
  return kMisuse;
}

// Streams may allocate memory.
[[noreturn]] void end_without_memory(long) {
  constexpr std::string_view kText = "cubekit: there is not enough memory\n";
  cubenet::discard_open_outputs();
  static_cast<void>(cubenet::write_all(2, kText.data(), kText.size())); // standard error
  std::_Exit(kMisuse);
}

// An output that is the file to which the command prints would spoil both, and one that is the log loses it.
void protect_files() {
  cubenet::protect_from_output("cubenet.log");
  for (const int stream : {1, 2})
    if (cubenet::FileStatus status; cubenet::file_status(stream, status)) cubenet::protect_from_output(status);
}

// The action's status, unless output was lost.
int finish(const std::function<int()> &action) {
  const int status = action();
  if (std::cout.flush() || status == kMisuse) return status;
  std::cerr << "standard output: can't be written\n";
  return kMisuse;
}

} // namespace

int run_command_line(std::span<const Command> commands, int argc, const char *const *argv) {
  cubenet::set_out_of_memory_hook(end_without_memory);
  protect_files();
  CLI::App app{"Reads the netlists of cubenet back, proves them and shows them.", "cubekit"};
  app.require_subcommand(1);
  app.set_version_flag("--version", std::string(kVersion));
  std::vector<Registered> registered;
  for (const Command &command : commands) {
    CLI::App *sub = app.add_subcommand(std::string(command.name), std::string(command.summary));
    registered.push_back({sub, command.setup(*sub)});
  }
  std::string topic;
  CLI::App *help = app.add_subcommand("help", "show the help of a command");
  help->add_option("COMMAND", topic, "the command to tell about");
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError &error) {
    return finish([&] { return app.exit(error, std::cout, std::cerr) == 0 ? kYes : kMisuse; });
  }
  if (help->parsed()) return finish([&] { return print_help(registered, app, topic); });
  for (const Registered &command : registered)
    if (command.app->parsed()) return finish(command.action);
  return kMisuse;
}

} // namespace cubekit
