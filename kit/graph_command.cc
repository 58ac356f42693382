// `cubekit graph`: the drawing itself, or what Graphviz makes of it.
#include <fcntl.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstring>
#include <iostream>
#include <memory>
#include <sstream>

#include "kit/command.h"
#include "kit/export_output.h"
#include "kit/graph.h"
#include "kit/graph_flow.h"

extern char **environ;

namespace cubekit {

namespace {

struct Arguments {
  std::string design, signal, output;
  bool svg = false;
};

bool write_whole(int descriptor, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = ::write(descriptor, text.data(), text.size());
    if (written <= 0 && errno != EINTR) return false;
    if (written > 0) text.remove_prefix(static_cast<std::size_t>(written));
  }
  return ::lseek(descriptor, 0, SEEK_SET) == 0;
}

// Runs dot on the text. Its own messages go to standard error.
bool run_dot(int input, const std::string &output) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
  std::string words[] = {"dot", "-Tsvg", "-o" + output};
  char *arguments[] = {words[0].data(), words[1].data(), output.empty() ? nullptr : words[2].data(), nullptr};
  pid_t child = 0;
  const int fault = ::posix_spawnp(&child, words[0].c_str(), &actions, nullptr, arguments, environ);
  posix_spawn_file_actions_destroy(&actions);
  if (fault != 0) {
    std::cerr << "cubekit: 'dot' of Graphviz can't be started: " << std::strerror(fault) << '\n';
    return false;
  }
  int status = 0;
  while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

int draw_svg(const std::string &dot, const std::string &output) {
  const int input = ::memfd_create("graph", MFD_CLOEXEC);
  const bool drawn = input >= 0 && write_whole(input, dot) && run_dot(input, output);
  if (input >= 0) ::close(input);
  if (!drawn) std::cerr << "cubekit: the drawing could not be made\n";
  return drawn ? kYes : kMisuse;
}

int run_graph(const Arguments &arguments) {
  Netlist netlist;
  if (!load_design(arguments.design, netlist, std::cerr)) return kMisuse;
  std::ostringstream dot;
  if (!write_dot(dot, netlist, arguments.signal)) {
    std::cerr << arguments.design << ".nxf: there is no signal '" << arguments.signal << "'\n";
    return kMisuse;
  }
  if (arguments.svg) return draw_svg(dot.str(), arguments.output);
  return write_output(arguments.output, [&](std::ostream &stream) { stream << dot.view(); });
}

} // namespace

std::function<int()> setup_graph(CLI::App &command) {
  auto arguments = std::make_shared<Arguments>();
  command.add_option("DESIGN", arguments->design, "the design's name, with its directory and without extension")
      ->required();
  command.add_option("--signal", arguments->signal, "draw only what this signal depends on");
  command.add_flag("--svg", arguments->svg, "draw with Graphviz, as SVG");
  command.add_option("-o,--output", arguments->output, "the file to write, instead of standard output");
  return [arguments] { return run_graph(*arguments); };
}

} // namespace cubekit
