// `cubekit prove`.
#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>

#include "kit/command/command.h"
#include "kit/netlist/nxf_parser.h"
#include "kit/prove/prove.h"
#include "kit/table/read_design.h"
#include "kit/util/progress.h"
#include "model/run_settings.h"

namespace cubekit {

namespace {

struct Arguments {
  std::string design, truth_table, netlist, part;
  ProofOptions options;
};

int prove(const Arguments &arguments) {
  Netlist netlist;
  const std::string nxf = arguments.netlist.empty() ? arguments.design + ".nxf" : arguments.netlist;
  if (!load_nxf(nxf, netlist, std::cerr)) return netlist.faults.empty() ? kMisuse : kNo;
  TruthTable table;
  const TableSource source{table_path(arguments.design, arguments.truth_table), arguments.part,
                           std::string(netlist.part), arguments.options.case_sensitive};
  if (const int status = load_table(source, table, std::cerr); status != kYes) return status;
  ProofOptions options = arguments.options;
  if (!arguments.part.empty()) options.series = cubenet::part_series(arguments.part);
  ProofReport report;
  const bool is_proved = prove_netlist(*table.design, table.cubes, netlist, options, report);
  if (netlist.text.has_changed()) return kMisuse; // said when the text is done with
  if (is_proved) {
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
  command.add_option("DESIGN", arguments->design, "the design's name, with its directory and without extension")
      ->required();
  command.add_option("-i,--tt2", arguments->truth_table, "the truth table, where it is not DESIGN.tt2");
  command.add_option("--nxf", arguments->netlist, "the netlist, where it is not DESIGN.nxf");
  command.add_option("-p,--part", arguments->part, "the part of the translation, where the netlist doesn't name it");
  command.add_flag("-C,--case", arguments->options.case_sensitive, "the translation told upper from lower case (-C)");
  command.add_flag("--abc", arguments->options.abc, "ask berkeley-abc as well");
  return [arguments] { return prove(*arguments); };
}

} // namespace cubekit
