// `cubekit prove`.
#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>

#include "kit/command/arguments.h"
#include "kit/command/command.h"
#include "kit/netlist/nxf_parser.h"
#include "kit/prove/prove.h"
#include "kit/table/read_design.h"
#include "kit/util/progress.h"
#include "model/run_settings.h"

namespace cubekit {

namespace {

struct Arguments : DesignArguments {
  std::string netlist;
  bool abc = false;
};

int prove(const Arguments &arguments) {
  const std::string nxf = arguments.netlist.empty() ? arguments.design + ".nxf" : arguments.netlist;
  cubenet::CubeTable cubes;
  std::string messages;
  const auto read = [&] { return read_design(table_path(arguments), arguments.case_sensitive, cubes, messages); };
  const auto design = during("reading the truth table", read);
  if (design == nullptr) {
    std::cerr << messages;
    return kMisuse;
  }
  Netlist netlist;
  if (!load_nxf(nxf, netlist, std::cerr)) return netlist.faults.empty() ? kMisuse : kNo;
  ProofOptions options;
  options.case_sensitive = arguments.case_sensitive;
  options.abc = arguments.abc;
  if (!arguments.part.empty()) options.series = cubenet::part_series(arguments.part);
  ProofReport report;
  if (prove_netlist(*design, cubes, netlist, options, report)) {
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
  command.add_option("--nxf", arguments->netlist, "the netlist, where it is not DESIGN.nxf");
  command.add_flag("--abc", arguments->abc, "ask berkeley-abc as well");
  return [arguments] { return prove(*arguments); };
}

} // namespace cubekit
