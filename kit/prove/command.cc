// `cubekit prove`.
#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <optional>
#include <sstream>

#include "kit/command/arguments.h"
#include "kit/command/command.h"
#include "kit/netlist/nxf_parser.h"
#include "kit/prove/prove.h"
#include "kit/prove/source.h"
#include "kit/util/file.h"
#include "model/run_settings.h"

namespace cubekit {

namespace {

struct Arguments : DesignArguments {
  std::string netlist;
  bool abc = false;
  ImportOptions source; // no path: none
  std::string from, names;
};

int show(const ProofReport &report, bool is_proved, bool asked_abc) {
  if (is_proved) {
    std::cout << "proved: " << report.claims << " claims, " << report.by_structure << " by structure, "
              << report.by_exhaustion << " by all input vectors, " << report.by_sat << " by SAT";
    if (report.given_up > 0) std::cout << ", " << report.given_up << " by abc alone";
    std::cout << (asked_abc ? "; abc agrees" : "") << '\n';
    return kYes;
  }
  for (const std::string &text : report.texts) std::cout << text;
  if (report.claims == 0)
    std::cout << "not proved: the interfaces don't match\n";
  else
    std::cout << "not proved: " << report.differences << " of " << report.claims << " claims differ\n";
  return kNo;
}

// A name of the source, a tab, and the one in the table.
bool read_names(const std::string &path, NewNames &names) {
  std::string text;
  Finding error;
  bool is_sound = read_file(path, text, error);
  std::istringstream stream(text);
  for (std::string line; is_sound && std::getline(stream, line);) {
    const std::size_t tab = line.find('\t');
    error.line++;
    is_sound = tab != std::string::npos;
    if (is_sound)
      add_new_name(names, line.substr(0, tab), line.substr(tab + 1));
    else
      error.text = "no tab between two names";
  }
  if (!is_sound) print_finding(std::cerr, path, error);
  return is_sound;
}

int prove_by_source(const Arguments &arguments, const Netlist &netlist) {
  ImportOptions options = arguments.source;
  const std::optional<SourceKind> kind = find_source_kind(options.path, arguments.from);
  std::string text, fault;
  Finding error;
  NewNames names;
  if (!kind || (!arguments.names.empty() && !read_names(arguments.names, names))) return kMisuse;
  if (!read_file(options.path, text, error)) {
    print_finding(std::cerr, options.path, error);
    return kMisuse;
  }
  options.kind = *kind;
  options.part = arguments.part.empty() ? netlist.part : arguments.part;
  options.case_sensitive = arguments.case_sensitive;
  ProofOptions proof;
  if (!arguments.part.empty()) proof.series = cubenet::part_series(arguments.part);
  ProofReport report;
  const int status = prove_source(text, options, names, netlist, proof, report, fault);
  if (status == kMisuse) {
    std::cerr << fault;
    return kMisuse;
  }
  return show(report, status == kYes, true);
}

int prove(const Arguments &arguments) {
  Netlist netlist;
  const std::string nxf = arguments.netlist.empty() ? arguments.design + ".nxf" : arguments.netlist;
  if (!load_nxf(nxf, netlist, std::cerr)) return netlist.faults.empty() ? kMisuse : kNo;
  if (!arguments.source.path.empty()) return prove_by_source(arguments, netlist);
  TruthTable table;
  if (const int status = load_table(table_source(arguments, netlist.part), table, std::cerr); status != kYes)
    return status;
  ProofOptions options{.case_sensitive = arguments.case_sensitive, .abc = arguments.abc};
  if (!arguments.part.empty()) options.series = cubenet::part_series(arguments.part);
  ProofReport report;
  const bool is_proved = prove_netlist(*table.design, table.cubes, netlist, options, report);
  return show(report, is_proved, options.abc);
}

} // namespace

std::function<int()> setup_prove(CLI::App &command) {
  auto arguments = std::make_shared<Arguments>();
  declare_design(command, *arguments);
  declare_table(command, *arguments);
  declare_part(command, *arguments);
  command.add_option("--nxf", arguments->netlist, "the netlist, where it is not DESIGN.nxf");
  command.add_flag("--abc", arguments->abc, "ask berkeley-abc as well");
  CLI::Option *source = command.add_option("--source", arguments->source.path,
                                           "prove it against this PLA, BLIF or Verilog instead of the table");
  declare_source(command, arguments->from, arguments->source);
  command.add_option("--names", arguments->names, "the list of names that the import wrote");
  for (const char *option : {"--from", "--top", "--clock", "--names"}) command.get_option(option)->needs(source);
  source->excludes("--tt2");
  return [arguments] { return prove(*arguments); };
}

} // namespace cubekit
