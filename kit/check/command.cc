// `cubekit check`.
#include <CLI/CLI.hpp>
#include <filesystem>
#include <iostream>
#include <memory>

#include "kit/check/check.h"
#include "kit/command/command.h"
#include "kit/netlist/nxf_parser.h"
#include "kit/table/read_design.h"
#include "kit/util/progress.h"

namespace cubekit {

namespace {

struct Check {
  const std::string &design, &truth_table;
  std::ostream &out, &errors;
};

int print_all(std::ostream &stream, const std::string &path, const std::vector<Finding> &findings, int status) {
  for (const Finding &finding : findings) print_finding(stream, path, finding);
  return findings.empty() ? kYes : status;
}

bool is_there(const std::string &path) {
  std::error_code ignored;
  return std::filesystem::exists(path, ignored);
}

int read(const Check &check, const std::string &path, FileText &text) {
  Finding error;
  if (during("reading the files", [&] { return read_file(path, text, error); })) return kYes;
  print_finding(check.errors, path, error);
  return kMisuse;
}

// The parameter file is there when the constraints have something for it.
int check_parameter_file(const Check &check, const ParameterSet &wanted) {
  const std::string path = check.design + ".par";
  if (wanted.list.empty() && !wanted.reserves) {
    if (!is_there(path)) return kYes;
    return print_all(check.out, path, {{0, "is of another run: the constraints have nothing for it"}}, kNo);
  }
  FileText text;
  if (read(check, path, text) != kYes) return kMisuse;
  const std::string name = std::filesystem::path(check.design).filename();
  const int verdict = print_all(check.out, path, check_parameters(text.view(), wanted, name), kNo);
  return text.has_changed() ? kMisuse : verdict;
}

// The table is needed for the constraints alone, and may be missing as long as nobody names it.
int check_settings(const Check &check, std::string_view constraints, const std::string &part, const DdfReading &ddf) {
  ParameterSet parameters;
  Judgement judgement;
  TruthTable table;
  if (!constraints.empty()) {
    const TableSource source{table_path(check.design, check.truth_table), "", part};
    if ((!check.truth_table.empty() || is_there(source.path)) && !read_table(source, table)) {
      check.errors << table.messages;
      return kMisuse;
    }
    const Signals signals = gather_signals(ddf, table.design.get());
    judgement = during("checking the constraints", [&] { return check_constraints(constraints, signals, parameters); });
  }
  const std::string path = check.design + ".tvx";
  if (print_all(check.out, path, judgement.wrong, kNo) != kYes) return kNo;
  const int verdict = print_all(check.errors, path, judgement.open, kMisuse);
  const int other = check_parameter_file(check, parameters);
  return other == kYes ? verdict : other;
}

} // namespace

int check_files(const std::string &design, const std::string &truth_table, std::ostream &out, std::ostream &errors) {
  const Check check{design, truth_table, out, errors};
  const std::string paths[] = {design + ".nxf", design + ".ddf", design + ".tvx"};
  FileText texts[3];
  for (std::size_t i = 0; i < 3; i++)
    if (read(check, paths[i], texts[i]) != kYes) return kMisuse;
  Netlist netlist;
  Finding error;
  if (!during("joining the netlist", [&] { return parse_nxf(std::move(texts[0]), netlist, error); }))
    return print_all(out, paths[0], {error}, kNo);
  int verdict = print_all(out, paths[0], during("checking the netlist", [&] { return check_netlist(netlist); }), kNo);
  DdfReading ddf;
  const auto compare = [&] { return compare_netlists(netlist, texts[1].view(), ddf); };
  if (print_all(out, paths[1], during("comparing the netlists", compare), kNo) != kYes) verdict = kNo;
  if (ddf.parsed) { // it has the names that the constraints use
    const int other = check_settings(check, texts[2].view(), std::string(netlist.part), ddf);
    if (verdict == kYes) verdict = other;
  }
  for (const FileText *text : {&netlist.text, &texts[1], &texts[2]})
    if (text->has_changed()) return kMisuse; // said when the texts are done with
  if (verdict == kYes)
    out << "in order: " << netlist.symbols.size() << " symbols, " << netlist.nets.size() << " nets\n";
  return verdict;
}

std::function<int()> setup_check(CLI::App &command) {
  struct Arguments {
    std::string design, truth_table;
  };
  auto arguments = std::make_shared<Arguments>();
  command.add_option("DESIGN", arguments->design, "the design's name, with its directory and without extension")
      ->required();
  command.add_option("-i,--tt2", arguments->truth_table, "the truth table, where it is not DESIGN.tt2");
  return [arguments] { return check_files(arguments->design, arguments->truth_table, std::cout, std::cerr); };
}

} // namespace cubekit
