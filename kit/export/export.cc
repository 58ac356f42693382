// `cubekit export`: one netlist in the form that is asked for.
#include "kit/export/export.h"
#include "kit/check/check.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>

#include "kit/command/arguments.h"
#include "kit/command/command.h"
#include "kit/command/output.h"
#include "kit/netlist/flow.h"
#include "kit/util/progress.h"

namespace cubekit {

namespace {

struct Arguments : DesignArguments {
  std::string format, library = "with";
};

void write_verilog_parts(std::ostream &stream, const Netlist &netlist, const std::string &library) {
  if (library != "only") write_verilog(stream, netlist);
  if (library == "with") stream << '\n';
  if (library != "without") write_library(stream, netlist);
}

int run_export(const Arguments &arguments) {
  Netlist netlist;
  if (!load_design(arguments.design, netlist, std::cerr)) return kMisuse;
  return write_output(arguments.output, [&](std::ostream &stream) {
    const Stage stage("writing", 0, arguments.output.empty() ? Printing::YES : Printing::NO);
    if (arguments.format == "blif")
      write_blif(stream, netlist);
    else if (arguments.format == "json")
      write_json(stream, netlist);
    else
      write_verilog_parts(stream, netlist, arguments.library);
  });
}

} // namespace

std::function<int()> setup_export(CLI::App &command) {
  auto arguments = std::make_shared<Arguments>();
  command.add_option("FORMAT", arguments->format, "blif, verilog or json")
      ->required()
      ->check(CLI::IsMember({"blif", "verilog", "json"}));
  declare_design(command, *arguments);
  declare_output(command, *arguments);
  command
      .add_option("--library", arguments->library,
                  "verilog: write the netlist with the modules of its primitives, without them, or them only")
      ->check(CLI::IsMember({"with", "without", "only"}))
      ->capture_default_str();
  return [arguments] { return run_export(*arguments); };
}

} // namespace cubekit
