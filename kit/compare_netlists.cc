// Holds a ddf netlist against the .nxf netlist of the same run. The ddf leaves some things out, and the .nxf may have
// renamed once more what the ddf shows; everything else must be the same.
#include <algorithm>
#include <string>

#include "kit/check.h"
#include "kit/ddf_parser.h"

namespace cubekit {

namespace {

struct Comparison {
  const Netlist &netlist;
  const DdfNetlist &ddf;
  std::vector<Finding> &findings;
  bool guarded_first; // a name that could have stayed or been guarded is taken to have been guarded
  NameIndex stripped_nets{}, stripped_symbols{}; // "_PLA<n>_" taken off
  std::vector<std::uint8_t> symbol_listed{}, net_listed{}, pin_named{};
};

void report(Comparison &comparison, std::size_t line, std::string text) {
  comparison.findings.push_back({line, std::move(text)});
}

std::string quoted(std::string_view text) { return "'" + std::string(text) + "'"; }

// The name without a leading "_PLA<n>_"; empty when it has none.
std::string_view strip(std::string_view name) {
  if (!name.starts_with("_PLA")) return {};
  const std::size_t digits_end = name.find_first_not_of("0123456789", 4);
  if (digits_end == 4 || digits_end == std::string_view::npos || name[digits_end] != '_') return {};
  return name.substr(digits_end + 1);
}

std::uint32_t find_guarded(const NameIndex &exact, const NameIndex &stripped, std::string_view name) {
  for (const std::string &guarded : {"_RES" + std::string(name), "_RES_" + std::string(name)}) {
    if (const std::uint32_t found = find_name(exact, guarded); found != kNone) return found;
    if (const std::uint32_t found = find_name(stripped, guarded); found != kNone) return found;
  }
  return kNone;
}

// What a name of the ddf has become: the same, guarded, or numbered.
std::uint32_t find_renamed(const NameIndex &exact, const NameIndex &stripped, std::string_view name,
                           bool guarded_first) {
  std::uint32_t found = guarded_first && name.starts_with('_') ? find_guarded(exact, stripped, name) : kNone;
  if (found == kNone) found = find_name(exact, name);
  if (found == kNone && !guarded_first) found = find_guarded(exact, stripped, name);
  return found == kNone ? find_name(stripped, name) : found;
}

SymbolIndex find_listed(const Comparison &comparison, std::string_view instance) {
  return find_renamed(comparison.netlist.symbols_by_instance, comparison.stripped_symbols, instance,
                      comparison.guarded_first);
}

NetIndex find_listed_net(const Comparison &comparison, std::string_view name) {
  return find_renamed(comparison.netlist.nets_by_name, comparison.stripped_nets, name, comparison.guarded_first);
}

void compare_ports(Comparison &comparison, const char *label, Direction direction,
                   const std::vector<std::string_view> &ports) {
  const Netlist &netlist = comparison.netlist;
  std::size_t next = 0;
  const NameIndex none;
  for (std::uint32_t i = 0; i < netlist.external_pins.size(); i++) {
    if (netlist.external_pins[i].direction != direction) continue;
    if (next >= ports.size() ||
        (find_renamed(netlist.external_by_pin, none, ports[next], comparison.guarded_first) != i &&
         strip(netlist.external_pins[i].pin).empty()))
      return report(comparison, 0, std::string(label) + " lack pin " + quoted(netlist.external_pins[i].pin));
    next++;
    if (direction == Direction::BIDI) break; // the list holds one
  }
  if (next < ports.size()) report(comparison, 0, std::string(label) + " list " + quoted(ports[next]) + " too much");
}

void compare_symbols(Comparison &comparison) {
  const Netlist &netlist = comparison.netlist;
  SymbolIndex first_listed = kNone;
  for (const DdfSymbol &symbol : comparison.ddf.symbols) {
    const SymbolIndex found = find_listed(comparison, symbol.instance);
    if (found == kNone) {
      report(comparison, symbol.line, "the .nxf has no symbol " + quoted(symbol.instance));
      continue;
    }
    if (netlist.symbols[found].primitive_text != symbol.primitive)
      report(comparison, symbol.line,
             quoted(symbol.instance) + " is " + std::string(netlist.symbols[found].primitive_text) + " in the .nxf");
    if (comparison.symbol_listed[found]++ != 0)
      report(comparison, symbol.line, quoted(symbol.instance) + " is listed twice");
    first_listed = std::min(first_listed, found);
  }
  for (SymbolIndex i = 0; i < netlist.symbols.size(); i++) {
    const Symbol &symbol = netlist.symbols[i];
    if (comparison.symbol_listed[i] != 0) continue;
    // The gates of expanded product terms, which stand before all others, and the inverter behind a complement.
    const Function function = primitive_of(symbol).function;
    const bool is_gate = function == Function::AND || function == Function::OR || function == Function::BUFFER;
    if (is_gate && (i < first_listed || symbol.instance.ends_with("_QB"))) continue;
    report(comparison, 0, "symbol " + quoted(symbol.instance) + " of the .nxf is missing");
  }
}

// The pin of the .nxf that an item of the ddf names; kNone for none.
std::uint32_t find_item_pin(const Comparison &comparison, std::string_view item) {
  const std::size_t dot = item.rfind('.');
  if (dot == std::string_view::npos) return kNone;
  const SymbolIndex symbol = find_listed(comparison, item.substr(0, dot));
  return symbol == kNone ? kNone : find_pin(comparison.netlist, symbol, item.substr(dot + 1));
}

// The port first, then the source, then the destinations, in any order: it is that of the ddf's own symbols.
void compare_net(Comparison &comparison, const DdfNet &ddf_net) {
  const Netlist &netlist = comparison.netlist;
  const auto fault = [&](const std::string &text) {
    report(comparison, ddf_net.line, "net " + quoted(ddf_net.name) + ' ' + text);
  };
  const NetIndex index = find_listed_net(comparison, ddf_net.name);
  if (index == kNone) return fault("is none of the .nxf");
  if (comparison.net_listed[index]++ != 0) return fault("has two lines");
  const Net &net = netlist.nets[index];
  std::uint32_t at = ddf_net.first_item;
  const std::uint32_t end = ddf_net.first_item + ddf_net.item_count;
  if (comparison.ddf.items[at].starts_with('.') != net.external)
    return fault("should meet a device pin, or should not");
  if (net.external) at++;
  if (net.has_source && (at == end || find_item_pin(comparison, comparison.ddf.items[at]) != net.source.pin))
    return fault("has another source in the .nxf");
  for (; at < end; at++) {
    const std::uint32_t pin = find_item_pin(comparison, comparison.ddf.items[at]);
    if (pin == kNone || netlist.pins[pin].net != index || comparison.pin_named[pin]++ != 0)
      fault("names " + quoted(comparison.ddf.items[at]) + ", other than in the .nxf");
  }
  for (std::uint32_t d = net.first_destination; d < net.first_destination + net.destination_count; d++) {
    const EndPoint &point = netlist.destinations[d];
    if (point.pin != kNone && comparison.symbol_listed[point.symbol] != 0 && comparison.pin_named[point.pin] == 0)
      fault("lacks a pin of symbol " + quoted(netlist.symbols[point.symbol].instance));
  }
}

// A net may be left out when it is a rail, or lies within what the ddf leaves out.
void find_missing_nets(Comparison &comparison) {
  const Netlist &netlist = comparison.netlist;
  const auto is_listed = [&](const EndPoint &end) {
    return end.symbol != kNone && comparison.symbol_listed[end.symbol] != 0;
  };
  for (NetIndex n = 0; n < netlist.nets.size(); n++) {
    const Net &net = netlist.nets[n];
    if (comparison.net_listed[n] != 0 || net.rail) continue;
    bool needed = net.external || is_listed(net.source);
    for (std::uint32_t d = 0; d < net.destination_count; d++)
      needed = needed || is_listed(netlist.destinations[net.first_destination + d]);
    if (needed) report(comparison, 0, "net " + quoted(net.name) + " of the .nxf is missing");
  }
}

std::vector<Finding> compare(const Netlist &netlist, std::string_view ddf_text, bool guarded_first) {
  std::vector<Finding> findings;
  DdfNetlist ddf;
  Comparison comparison{netlist, ddf, findings, guarded_first};
  for (NetIndex n = 0; n < netlist.nets.size(); n++)
    if (const std::string_view name = strip(netlist.nets[n].name); !name.empty())
      add_name(comparison.stripped_nets, name, n);
  for (SymbolIndex s = 0; s < netlist.symbols.size(); s++)
    if (const std::string_view name = strip(netlist.symbols[s].instance); !name.empty())
      add_name(comparison.stripped_symbols, name, s);
  const auto is_instance = [&](std::string_view name) { return find_listed(comparison, name) != kNone; };
  Finding error;
  if (!parse_ddf(ddf_text, is_instance, ddf, error)) return {error};
  comparison.symbol_listed.resize(netlist.symbols.size());
  comparison.net_listed.resize(netlist.nets.size());
  comparison.pin_named.resize(netlist.pins.size());
  compare_ports(comparison, "OUTPUTS", Direction::OUT, ddf.outputs);
  compare_ports(comparison, "INPUTS", Direction::IN, ddf.inputs);
  compare_ports(comparison, "INOUTS", Direction::BIDI, ddf.inouts);
  compare_symbols(comparison);
  for (const DdfNet &net : ddf.nets) compare_net(comparison, net);
  find_missing_nets(comparison);
  return findings;
}

} // namespace

std::vector<Finding> compare_netlists(const Netlist &netlist, std::string_view ddf_text) {
  std::vector<Finding> findings = compare(netlist, ddf_text, false);
  if (findings.empty()) return findings;
  std::vector<Finding> others = compare(netlist, ddf_text, true);
  return others.size() < findings.size() ? others : findings;
}

} // namespace cubekit
