// `cubekit check`.
#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>

#include "kit/check/check.h"
#include "kit/command/arguments.h"
#include "kit/command/command.h"
#include "kit/netlist/nxf_parser.h"
#include "kit/util/file.h"
#include "kit/util/progress.h"

namespace cubekit {

namespace {

int print_all(const std::string &path, const std::vector<Finding> &findings) {
  for (const Finding &finding : findings) print_finding(std::cout, path, finding);
  return findings.empty() ? kYes : kNo;
}

int check(const std::string &design) {
  const std::string paths[] = {design + ".nxf", design + ".ddf", design + ".tvx"};
  std::string texts[3];
  Finding error;
  for (std::size_t i = 0; i < 3; i++) {
    if (during("reading the files", [&] { return read_file(paths[i], texts[i], error); })) continue;
    print_finding(std::cerr, paths[i], error);
    return kMisuse;
  }
  int verdict = print_all(paths[2], during("checking the constraints", [&] { return check_constraints(texts[2]); }));
  Netlist netlist;
  if (!during("joining the netlist", [&] { return parse_nxf(std::move(texts[0]), netlist, error); }))
    return print_all(paths[0], {error});
  if (print_all(paths[0], during("checking the netlist", [&] { return check_netlist(netlist); })) != kYes)
    verdict = kNo;
  const auto compare = [&] { return compare_netlists(netlist, texts[1]); };
  if (print_all(paths[1], during("comparing the netlists", compare)) != kYes) verdict = kNo;
  if (verdict == kYes)
    std::cout << "in order: " << netlist.symbols.size() << " symbols, " << netlist.nets.size() << " nets\n";
  return verdict;
}

} // namespace

std::function<int()> setup_check(CLI::App &command) {
  auto arguments = std::make_shared<DesignArguments>();
  declare_design(command, *arguments);
  return [arguments] { return check(arguments->design); };
}

} // namespace cubekit
