// The rules of an .nxf netlist beyond its joints: known primitives with the right pins, one driver for every net,
// device pins that agree with their nets, and a part of its family.
#include <algorithm>
#include <string>
#include <utility>

#include "kit/check/check.h"
#include "model/names.h"
#include "model/run_settings.h"

namespace cubekit {

namespace {

struct Checker {
  const Netlist &netlist;
  int series;
  std::vector<Finding> &findings;
  std::vector<std::uint8_t> fitting{}; // of a kind: its pins are those of the primitive
};

void report(Checker &checker, std::size_t line, std::string text) {
  checker.findings.push_back({line, std::move(text)});
}

std::string named(const Symbol &symbol) {
  return shortened(symbol.kind->primitive_text) + ' ' + shortened(symbol.instance);
}

// The pins behind the numbered ones, in the order of the primitive's row.
bool has_listed_pins(const SymbolKind &kind) {
  const PrimitiveRow &primitive = kPrimitives[kind.primitive];
  std::size_t at = kind.width;
  for (const PinRow &row : primitive.pins) {
    if (row.name.empty()) break;
    const bool there =
        at < kind.ports.size() && kind.ports[at].name == row.name && kind.ports[at].direction == row.direction;
    if (there)
      at++;
    else if (!row.optional)
      return false;
  }
  return at == kind.ports.size();
}

bool has_numbered_pins(const SymbolKind &kind) {
  if (kind.ports.size() < kind.width) return false;
  for (std::uint32_t i = 0; i < kind.width; i++)
    if (kind.ports[i].direction != Direction::IN || !is_numbered(kind.ports[i].name, i)) return false;
  return true;
}

bool has_fitting_pins(const SymbolKind &kind) {
  const PrimitiveRow &primitive = kPrimitives[kind.primitive];
  const std::uint32_t least = primitive.width_in_name ? 2 : primitive.numbered ? 1 : 0;
  return kind.width >= least && has_numbered_pins(kind) && has_listed_pins(kind) &&
         (primitive.function != Function::XOR || kind.ports.size() == 3);
}

// Every row has a literal, and every input is one of some row.
bool has_full_rows(const Symbol &symbol) {
  std::vector<std::uint8_t> used(symbol.kind->width);
  for (std::size_t r = 0; r < symbol.row_count; r++) {
    const std::string_view row = row_at(symbol, r);
    std::uint8_t any = 0;
    for (std::size_t i = 0; i < row.size(); i++) {
      const std::uint8_t literal = row[i] == '-' ? 0 : 1;
      used[i] |= literal;
      any |= literal;
    }
    if (any == 0) return false;
  }
  return std::ranges::find(used, 0) == used.end();
}

void check_symbol(Checker &checker, const Symbol &symbol) {
  const PrimitiveRow &primitive = primitive_of(symbol);
  if (symbol.rows != nullptr && primitive.name != "PLA")
    report(checker, symbol.line, named(symbol) + ": only a PLA has rows");
  if (primitive.function == Function::MACRO) {
    if (!symbol.kind->hard)
      report(checker, symbol.line, "the library has no primitive " + shortened(symbol.kind->primitive_text));
    return;
  }
  if (checker.series < primitive.min_series || checker.series > primitive.max_series)
    report(checker, symbol.line, named(symbol) + ": devices of this series have no such primitive");
  if (checker.fitting[symbol.kind->number] == 0)
    report(checker, symbol.line, named(symbol) + ": the pins are not those of the primitive");
  if (primitive.function == Function::TABLE) {
    if (symbol.kind->protect) report(checker, symbol.line, named(symbol) + ": a block can't be protected");
    if (primitive.name == "PLA" && symbol.row_count == 0)
      report(checker, symbol.line, named(symbol) + ": there are no rows");
    else if (primitive.name == "PLA" && !has_full_rows(symbol))
      report(checker, symbol.line, named(symbol) + ": a row has no literal, or an input is not used");
  }
}

std::string net_text(const Net &net) { return "net " + quoted(net.name); }

void check_net(Checker &checker, const Net &net) {
  const Netlist &netlist = checker.netlist;
  const bool constant = net.name == "GND" || net.name == "VCC";
  if (net.rail && !constant) report(checker, net.line, net_text(net) + " has no source");
  if (constant && !net.rail) report(checker, net.line, net_text(net) + " is a constant and can't have a source");
  if (netlist.in_order) return;
  if (net.has_source && net.source.pin != kNone && port_of(netlist, net.source).direction != Direction::OUT)
    report(checker, net.line, net_text(net) + " has a source that is no output");
  SymbolIndex last = 0;
  for (std::uint32_t d = net.first_destination; d < net.first_destination + net.destination_count; d++) {
    const EndPoint &end = netlist.destinations[d];
    if (end.pin == kNone) continue;
    if (port_of(netlist, end).direction == Direction::OUT)
      report(checker, net.line, net_text(net) + " has a destination that is an output");
    if (end.symbol < last) report(checker, net.line, net_text(net) + ": the destinations don't follow the symbols");
    last = end.symbol;
  }
}

// A part that begins with a family's name is of that family, which spells it; any other is taken for one of the first.
void check_device(Checker &checker) {
  constexpr std::string_view kFamilies[] = {"Tarvex", "Mirn"};
  const std::string_view technology = checker.netlist.technology, part = checker.netlist.part;
  if (technology.empty() && part.empty()) return; // not given
  std::string_view family = kFamilies[0];
  std::string wanted(part);
  for (const std::string_view each : kFamilies) {
    if (!cubenet::equal_ignoring_case(part.substr(0, each.size()), each)) continue;
    family = each;
    wanted = std::string(each).append(cubenet::upper_case(part.substr(each.size())));
  }
  if (technology != family) report(checker, 0, "the technology of part " + quoted(part) + " is " + std::string(family));
  if (part != wanted) report(checker, 0, "part " + quoted(part) + " is spelled " + quoted(wanted));
}

void check_external_pins(Checker &checker) {
  std::vector<std::uint8_t> met(checker.netlist.nets.size());
  for (const ExternalPin &pin : checker.netlist.external_pins) {
    if (pin.net == kNone) continue; // a fault already
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
  check_device(checker);
  for (const SymbolKind &kind : netlist.kinds) checker.fitting.push_back(has_fitting_pins(kind) ? 1 : 0);
  for (const Symbol &symbol : netlist.symbols) check_symbol(checker, symbol);
  for (const Net &net : netlist.nets) check_net(checker, net);
  check_external_pins(checker);
  return findings;
}

} // namespace cubekit
