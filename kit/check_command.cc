// `cubekit check`.
#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>

#include "kit/check.h"
#include "kit/command.h"
#include "kit/nxf_parser.h"

namespace cubekit {

namespace {

int print_all(const std::string &path, const std::vector<Finding> &findings) {
  for (const Finding &finding : findings) print_finding(std::cout, path, finding);
  return findings.empty() ? kYes : kNo;
}

int check(const std::string &design) {
  const std::string paths[] = {design + ".nxf", design + ".ddf", design + ".tvx"};
  std::vector<char> texts[3];
  Finding error;
  for (std::size_t i = 0; i < 3; i++) {
    if (read_file(paths[i], texts[i], error)) continue;
    print_finding(std::cerr, paths[i], error);
    return kMisuse;
  }
  const std::string_view ddf_text{texts[1].data(), texts[1].size()}, constraints{texts[2].data(), texts[2].size()};
  int verdict = print_all(paths[2], check_constraints(constraints));
  Netlist netlist;
  if (!parse_nxf(std::move(texts[0]), netlist, error)) return print_all(paths[0], {error});
  if (print_all(paths[0], check_netlist(netlist)) != kYes) verdict = kNo;
  if (print_all(paths[1], compare_netlists(netlist, ddf_text)) != kYes) verdict = kNo;
  if (verdict == kYes)
    std::cout << "in order: " << netlist.symbols.size() << " symbols, " << netlist.nets.size() << " nets\n";
  return verdict;
}

} // namespace

std::function<int()> setup_check(CLI::App &command) {
  auto design = std::make_shared<std::string>();
  command.add_option("DESIGN", *design, "the design's name, with its directory and without extension")->required();
  return [design] { return check(*design); };
}

} // namespace cubekit
