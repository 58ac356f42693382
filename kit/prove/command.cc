// `cubekit prove`.
#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>

#include "kit/command/arguments.h"
#include "kit/command/command.h"
#include "kit/netlist/nxf_parser.h"
#include "kit/prove/prove.h"
#include "model/run_settings.h"

namespace cubekit {

namespace {

struct Arguments : DesignArguments {
  std::string netlist;
  bool abc = false;
};

int prove(const Arguments &arguments) {
  Netlist netlist;
  const std::string nxf = arguments.netlist.empty() ? arguments.design + ".nxf" : arguments.netlist;
  if (!load_nxf(nxf, netlist, std::cerr)) return netlist.faults.empty() ? kMisuse : kNo;
  TruthTable table;
  if (const int status = load_table(table_source(arguments, netlist.part), table, std::cerr); status != kYes)
    return status;
  ProofOptions options{.case_sensitive = arguments.case_sensitive, .abc = arguments.abc};
  if (!arguments.part.empty()) options.series = cubenet::part_series(arguments.part);
  ProofReport report;
  if (prove_netlist(*table.design, table.cubes, netlist, options, report)) {
    std::cout << "proved: " << report.claims << " claims, " << report.by_structure << " by structure, "
              << report.by_exhaustion << " by all input vectors, " << report.by_sat << " by SAT"
              << (options.abc ? "; abc agrees" : "") << '\n';
    return kYes;
  }
  for (const std::string &text : report.texts) std::cout << text;
  std::cout << "not proved: " << report.differences << " of " << report.claims << " claims differ\n";
  return kNo;
}

} // namespace

std::function<int()> setup_prove(CLI::App &command) {
  auto arguments = std::make_shared<Arguments>();
  declare_design(command, *arguments);
  declare_table(command, *arguments);
  declare_part(command, *arguments);
  command.add_option("--nxf", arguments->netlist, "the netlist, where it is not DESIGN.nxf");
  command.add_flag("--abc", arguments->abc, "ask berkeley-abc as well");
  return [arguments] { return prove(*arguments); };
}

} // namespace cubekit
