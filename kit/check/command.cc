// `cubekit check`.
#include <CLI/CLI.hpp>
#include <filesystem>
#include <iostream>
#include <memory>

#include "kit/check/check.h"
#include "kit/command/arguments.h"
#include "kit/command/command.h"
#include "kit/netlist/check_netlist.h"
#include "kit/netlist/nxf_parser.h"
#include "kit/table/read_design.h"
#include "kit/util/file.h"

namespace cubekit {

namespace {

int print_all(std::ostream &stream, const std::string &path, const std::vector<Finding> &findings, int status) {
  for (const Finding &finding : findings) print_finding(stream, path, finding);
  return findings.empty() ? kYes : status;
}

bool is_there(const std::string &path) {
  std::error_code ignored;
  return std::filesystem::exists(path, ignored);
}

bool read(const std::string &path, std::string &text, std::ostream &errors) {
  Finding error;
  if (during("reading the files", [&] { return read_file(path, text, error); })) return true;
  print_finding(errors, path, error);
  return false;
}

// The response file is next to the others, wherever the translation was run from.
std::string response_name(const std::string &design, std::string_view parameters) {
  constexpr std::string_view kKey = "RESERVE_PIN_FILE ";
  std::string name = std::filesystem::path(design).filename().string() + ".rsp";
  const std::size_t key = parameters.rfind("\n" + std::string(kKey));
  std::string_view named = key == std::string_view::npos ? parameters : parameters.substr(key + 1);
  if (!named.starts_with(kKey)) return name;
  named.remove_prefix(kKey.size());
  named = named.substr(0, named.find('\n'));
  return named.ends_with("/" + name) ? std::string(named) : name;
}

NameIndex names_of(const DdfNetlist &ddf) {
  NameIndex names;
  for (const auto *ports : {&ddf.outputs, &ddf.inputs, &ddf.inouts})
    for (const std::string_view port : *ports) add_name(names, port, 0);
  for (const DdfSymbol &symbol : ddf.symbols) add_name(names, symbol.instance, 0);
  for (const DdfNet &net : ddf.nets) {
    add_name(names, net.name, 0);
    if (const std::string_view item = ddf.items[net.first_item]; item.starts_with('.'))
      add_name(names, item.substr(1), 0);
  }
  return names;
}

// The family of a part is its own, or the one that takes any part.
std::vector<Finding> check_part(const Netlist &netlist) {
  const auto design = read_statements("", std::string(netlist.part));
  if (design != nullptr && design->header.family == netlist.technology && design->header.part == netlist.part)
    return {};
  return {{0, quoted(netlist.part) + " is no part of technology " + quoted(netlist.technology)}};
}

// Checks what it can of the part, the constraints and the parameters without a truth table.
int check_forms(const TranslationFiles &files, std::ostream &out, std::ostream &errors) {
  if (print_all(out, files.design + ".nxf", check_part(files.netlist), kNo) != kYes) return kNo;
  Judgement judgement = during("checking the constraints", [&] {
    return check_constraints(files.constraints, names_of(files.ddf.netlist), files.response);
  });
  const std::string path = files.design + ".tvx";
  if (print_all(out, path, judgement.wrong, kNo) != kYes) return kNo;
  const int status = print_all(errors, path, judgement.open, kMisuse);
  std::vector<Finding> findings;
  find_difference(files.parameters, judgement.parameters, findings);
  return print_all(out, files.design + ".par", findings, kNo) == kYes ? status : kNo;
}

} // namespace

int check_files(const std::string &design, const std::string &truth_table, std::ostream &out, std::ostream &errors) {
  std::string nxf, ddf_text, constraints, parameters;
  const bool has_parameters = is_there(design + ".par");
  if (!read(design + ".nxf", nxf, errors) || !read(design + ".ddf", ddf_text, errors) ||
      !read(design + ".tvx", constraints, errors) || (has_parameters && !read(design + ".par", parameters, errors)))
    return kMisuse;
  Netlist netlist;
  DdfReading ddf;
  Finding error;
  if (!during("joining the netlist", [&] { return parse_nxf(std::move(nxf), netlist, error); }))
    return print_all(out, design + ".nxf", {error}, kNo);
  const auto check = [&] { return check_netlist(netlist); };
  const auto compare = [&] { return compare_netlists(netlist, ddf_text, ddf); };
  const int sound = print_all(out, design + ".nxf", during("checking the netlist", check), kNo);
  const int alike = print_all(out, design + ".ddf", during("comparing the netlists", compare), kNo);
  int verdict = sound == kYes ? alike : sound;
  const TranslationFiles files{design,
                               netlist,
                               ddf,
                               ddf_text,
                               constraints,
                               has_parameters ? std::optional<std::string_view>(parameters) : std::nullopt,
                               response_name(design, parameters)};
  const std::string table = truth_table.empty() ? design + ".tt2" : truth_table;
  if (verdict == kYes) // else the translation's options and names may be misread
    verdict = truth_table.empty() && !is_there(table) ? check_forms(files, out, errors)
                                                      : compare_with_table(files, table, out, errors);
  if (verdict == kYes)
    out << "in order: " << netlist.symbols.size() << " symbols, " << netlist.nets.size() << " nets\n";
  return verdict;
}

std::function<int()> setup_check(CLI::App &command) {
  auto arguments = std::make_shared<DesignArguments>();
  declare_design(command, *arguments);
  declare_truth_table(command, *arguments);
  return [arguments] { return check_files(arguments->design, arguments->truth_table, std::cout, std::cerr); };
}

} // namespace cubekit
