// `cubekit export`: one netlist in the requested format.
#include "kit/export/export.h"

#include <CLI/CLI.hpp>
#include <filesystem>
#include <iostream>
#include <memory>
#include <sstream>

#include "kit/command/arguments.h"
#include "kit/command/command.h"
#include "kit/command/output.h"
#include "kit/netlist/check_netlist.h"
#include "kit/netlist/flow.h"

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

// Adds the pins of the table that nothing uses. Returns kYes, or kMisuse with the reason on standard error.
int add_pins_of_table(const std::string &path, std::vector<DeclaredPin> &pins, Netlist &netlist) {
  std::ostringstream messages;
  for (const bool case_sensitive : {false, true}) { // the netlist doesn't say
    const TableSource source{path, "", std::string(netlist.part), case_sensitive};
    if (load_pins(source, pins, messages) == kYes && add_unused_pins(pins, netlist)) return kYes;
  }
  std::cerr << path << ": is not the truth table of this netlist\n";
  return kMisuse;
}

int run_export(const Arguments &arguments) {
  Netlist netlist;
  if (!load_design(arguments.design, netlist, std::cerr)) return kMisuse;
  std::vector<DeclaredPin> pins;
  const std::string table = table_source(arguments).path;
  const bool is_given = !arguments.truth_table.empty();
  if (is_given || std::filesystem::exists(table))
    if (const int status = add_pins_of_table(table, pins, netlist); status != kYes && is_given) return status;
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
  declare_truth_table(command, *arguments, ": its pins that nothing uses are ports too");
  declare_output(command, *arguments);
  command
      .add_option("--library", arguments->library,
                  "verilog: write the netlist with the modules of its primitives, without them, or them only")
      ->check(CLI::IsMember({"with", "without", "only"}))
      ->capture_default_str();
  return [arguments] { return run_export(*arguments); };
}

} // namespace cubekit
