// The rules of an .nxf netlist beyond its connections: known primitives with the right pins, one driver for
// every net, and device pins that agree with their nets.
#include <string>
#include <utility>

#include "kit/netlist/check_netlist.h"
#include "kit/netlist/nxf_parser.h"
#include "kit/util/progress.h"
#include "model/run_settings.h"
#include "util/output_file.h"

namespace cubekit {

namespace {

struct Checker {
  const Netlist &netlist;
  int series;
  std::vector<Finding> &findings;
};

void report(Checker &checker, std::size_t line, std::string text) {
  checker.findings.push_back({line, std::move(text)});
}

std::string named(const Symbol &symbol) { return shortened(symbol.primitive_text) + ' ' + shortened(symbol.instance); }

// The pins after the numbered ones, in the order of the primitive's row.
bool has_listed_pins(std::span<const Pin> pins, const Symbol &symbol) {
  std::size_t at = symbol.width;
  for (const PinRow &row : primitive_of(symbol).pins) {
    if (row.name.empty()) break;
    const bool there = at < pins.size() && pins[at].name == row.name && pins[at].direction == row.direction;
    if (there)
      at++;
    else if (!row.optional)
      return false;
  }
  return at == pins.size();
}

bool has_numbered_pins(std::span<const Pin> pins, const Symbol &symbol) {
  if (pins.size() < symbol.width) return false;
  for (std::uint32_t i = 0; i < symbol.width; i++)
    if (pins[i].direction != Direction::IN || !is_numbered(pins[i].name, i)) return false;
  return true;
}

bool has_fitting_pins(std::span<const Pin> pins, const Symbol &symbol) {
  const PrimitiveRow &primitive = primitive_of(symbol);
  const std::uint32_t least = primitive.width_in_name ? 2 : primitive.numbered ? 1 : 0;
  return symbol.width >= least && has_numbered_pins(pins, symbol) && has_listed_pins(pins, symbol) &&
         (primitive.function != Function::XOR || pins.size() == 3);
}

void check_symbol(Checker &checker, const Symbol &symbol) {
  const PrimitiveRow &primitive = primitive_of(symbol);
  if (symbol.rows != nullptr && primitive.name != "PLA")
    report(checker, symbol.line, named(symbol) + ": only a PLA has rows");
  if (primitive.function == Function::MACRO) {
    if (!symbol.hard) report(checker, symbol.line, "the library has no primitive " + shortened(symbol.primitive_text));
    return;
  }
  if (checker.series < primitive.min_series || checker.series > primitive.max_series)
    report(checker, symbol.line, named(symbol) + ": devices of this series have no such primitive");
  if (!has_fitting_pins(pins_of(checker.netlist, symbol), symbol))
    report(checker, symbol.line, named(symbol) + ": the pins are not those of the primitive");
  if (primitive.function == Function::TABLE) {
    if (symbol.protect) report(checker, symbol.line, named(symbol) + ": a block can't be protected");
    if (primitive.name == "PLA" && symbol.row_count == 0)
      report(checker, symbol.line, named(symbol) + ": there are no rows");
  }
}

std::string net_text(const Net &net) { return "net " + quoted(net.name); }

void check_net(Checker &checker, const Net &net) {
  const Netlist &netlist = checker.netlist;
  const bool constant = net.name == "GND" || net.name == "VCC";
  if (net.rail && !constant) report(checker, net.line, net_text(net) + " has no source");
  if (constant && !net.rail) report(checker, net.line, net_text(net) + " is a constant and can't have a source");
  if (net.has_source && net.source.pin != kNone && netlist.pins[net.source.pin].direction != Direction::OUT)
    report(checker, net.line, net_text(net) + " has a source that is no output");
  SymbolIndex last = 0;
  for (std::uint32_t d = net.first_destination; d < net.first_destination + net.destination_count; d++) {
    const EndPoint &end = netlist.destinations[d];
    if (end.pin == kNone) continue;
    if (netlist.pins[end.pin].direction == Direction::OUT)
      report(checker, net.line, net_text(net) + " has a destination that is an output");
    if (end.symbol < last) report(checker, net.line, net_text(net) + ": the destinations don't follow the symbols");
    last = end.symbol;
  }
}

void check_external_pins(Checker &checker) {
  std::vector<std::uint8_t> met(checker.netlist.nets.size());
  for (const ExternalPin &pin : checker.netlist.external_pins) {
    if (pin.net == kNone) continue; // already a fault
    const Net &net = checker.netlist.nets[pin.net];
    const std::string text = "pin " + quoted(pin.pin);
    if (std::exchange(met[pin.net], 1) != 0)
      report(checker, pin.line, text + " shares " + net_text(net) + " with another pin");
    if (!net.external) report(checker, pin.line, text + " is on " + net_text(net) + ", which is internal");
    if (net.has_source != (pin.direction == Direction::OUT))
      report(checker, pin.line, text + (net.has_source ? " is driven from inside" : " is not driven"));
  }
  for (std::size_t n = 0; n < met.size(); n++)
    if (checker.netlist.nets[n].external && met[n] == 0)
      report(checker, checker.netlist.nets[n].line, net_text(checker.netlist.nets[n]) + " meets no device pin");
}

} // namespace

std::vector<Finding> check_netlist(const Netlist &netlist) {
  std::vector<Finding> findings = netlist.faults;
  Checker checker{netlist, cubenet::part_series(netlist.part), findings};
  for (const Symbol &symbol : netlist.symbols) check_symbol(checker, symbol);
  for (const Net &net : netlist.nets) check_net(checker, net);
  check_external_pins(checker);
  return findings;
}

bool load_design(const std::string &design, Netlist &netlist, std::ostream &errors) {
  const std::string path = design + ".nxf";
  cubenet::protect_from_output(design + ".tt2"); // what the netlist was made of
  if (!read_nxf(path, netlist, errors)) return false;
  const std::vector<Finding> findings = during("checking the netlist", [&] { return check_netlist(netlist); });
  for (const Finding &finding : findings) print_finding(errors, path, finding);
  return findings.empty();
}

} // namespace cubekit
