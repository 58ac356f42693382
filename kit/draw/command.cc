// `cubekit graph`: the drawing itself, or what Graphviz makes of it.
#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <sstream>

#include "kit/command/arguments.h"
#include "kit/command/command.h"
#include "kit/command/output.h"
#include "kit/draw/graph.h"
#include "kit/netlist/check_netlist.h"
#include "kit/netlist/flow.h"

namespace cubekit {

namespace {

struct Arguments : DesignArguments {
  std::string signal;
  bool svg = false;
};

int run_graph(const Arguments &arguments) {
  Netlist netlist;
  if (!load_design(arguments.design, netlist, std::cerr)) return kMisuse;
  std::ostringstream dot;
  const auto describe = [&] { return write_dot(dot, netlist, arguments.signal); };
  if (!during("describing the picture", describe)) {
    std::cerr << arguments.design << ".nxf: there is no signal '" << arguments.signal << "'\n";
    return kMisuse;
  }
  std::string svg, fault;
  const auto draw = [&] { return draw_svg(dot.view(), svg, fault); };
  if (arguments.svg && !during("drawing", draw)) {
    std::cerr << "cubekit: " << fault << '\n';
    return kMisuse;
  }
  return write_output(arguments.output,
                      [&](std::ostream &stream) { stream << (arguments.svg ? std::string_view(svg) : dot.view()); });
}

} // namespace

std::function<int()> setup_graph(CLI::App &command) {
  auto arguments = std::make_shared<Arguments>();
  declare_design(command, *arguments);
  command.add_option("--signal", arguments->signal, "draw only what this signal depends on");
  command.add_flag("--svg", arguments->svg, "draw with Graphviz, as SVG");
  declare_output(command, *arguments);
  return [arguments] { return run_graph(*arguments); };
}

} // namespace cubekit
