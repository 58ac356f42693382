// Compares a ddf netlist with the .nxf netlist of the same run. The ddf leaves some things out, and the .nxf
// may have renamed again what the ddf shows; everything else must be the same.
#include <algorithm>
#include <string>
#include <utility>

#include "kit/check/check.h"
#include "kit/check/ddf_parser.h"

namespace cubekit {

namespace {

struct Comparison {
  const Netlist &netlist;
  DdfReading &reading;
  std::vector<Finding> &findings;
  bool guarded_first; // a name that may or may not be guarded is assumed to be
  bool stripped_known = false;
  NameIndex stripped_nets{}, stripped_symbols{}; // "_PLA<n>_" taken off
  std::vector<std::uint8_t> symbol_listed{}, net_listed{};
  std::vector<bool> pin_named{};
  std::vector<std::uint32_t> external_pins{};                   // per net: the one on it; kNone
  std::vector<std::uint32_t> listed_pins{};                     // of a net: pins of listed symbols
  std::vector<std::pair<NetIndex, const DdfNet *>> open_nets{}; // whose lines don't name all those pins
};

void report(Comparison &comparison, std::size_t line, std::string text) {
  comparison.findings.push_back({line, std::move(text)});
}

// The name without a leading "_PLA<n>_"; empty when it has none.
std::string_view strip(std::string_view name) {
  if (!name.starts_with("_PLA")) return {};
  const std::size_t digits_end = name.find_first_not_of("0123456789", 4);
  if (digits_end == 4 || digits_end == std::string_view::npos || name[digits_end] != '_') return {};
  return name.substr(digits_end + 1);
}

// Few names need them, so they are built when the first one does.
void index_stripped_names(Comparison &comparison) {
  if (comparison.stripped_known) return;
  comparison.stripped_known = true;
  const Netlist &netlist = comparison.netlist;
  for (NetIndex n = 0; n < netlist.nets.size(); n++)
    if (const std::string_view name = strip(netlist.nets[n].name); !name.empty())
      add_name(comparison.stripped_nets, name, n);
  for (SymbolIndex s = 0; s < netlist.symbols.size(); s++)
    if (const std::string_view name = strip(netlist.symbols[s].instance); !name.empty())
      add_name(comparison.stripped_symbols, name, s);
}

template <typename Find> std::uint32_t find_guarded(const Find &find, std::string_view name) {
  for (const std::string &guarded : {"_RES" + std::string(name), "_RES_" + std::string(name)})
    for (const bool stripped : {true, false})
      if (const std::uint32_t found = find(guarded, stripped); found != kNone) return found;
  return kNone;
}

// What a name of the ddf has become: the same, guarded, or numbered. `find(name, stripped)` looks among the
// names as they are, or without their numbers.
template <typename Find> std::uint32_t find_renamed(const Find &find, std::string_view name, bool guarded_first) {
  std::uint32_t found = guarded_first && name.starts_with('_') ? find_guarded(find, name) : kNone;
  if (found == kNone) found = find(name, false);
  if (found == kNone && !guarded_first) found = find_guarded(find, name);
  return found == kNone ? find(name, true) : found;
}

// `find_exact` looks among the names as they are; `stripped_names` is one of the comparison's indices.
template <typename FindExact>
std::uint32_t find_in_netlist(Comparison &comparison, const NameIndex &stripped_names, const FindExact &find_exact,
                              std::string_view name) {
  const auto find = [&](std::string_view sought, bool stripped) {
    if (!stripped) return find_exact(comparison.netlist, sought);
    index_stripped_names(comparison);
    return find_name(stripped_names, sought);
  };
  return find_renamed(find, name, comparison.guarded_first);
}

SymbolIndex find_listed(Comparison &comparison, std::string_view instance) {
  return find_in_netlist(comparison, comparison.stripped_symbols, find_symbol, instance);
}

NetIndex find_listed_net(Comparison &comparison, std::string_view net) {
  return find_in_netlist(comparison, comparison.stripped_nets, find_net, net);
}

// Whether a name of the ddf may have become this one: guarded, numbered, or both.
bool may_become(std::string_view name, std::string_view renamed) {
  for (const std::string_view each : {renamed, strip(renamed)})
    for (const std::string_view guard : {"", "_RES", "_RES_"})
      if (each.starts_with(guard) && each.substr(guard.size()) == name) return true;
  return false;
}

void compare_ports(Comparison &comparison, const char *label, Direction direction,
                   const std::vector<std::string_view> &ports) {
  std::size_t next = 0;
  for (const ExternalPin &pin : comparison.netlist.external_pins) {
    if (pin.direction != direction) continue;
    if (next >= ports.size() || !may_become(ports[next], pin.pin))
      return report(comparison, 0, std::string(label) + " lack pin " + quoted(pin.pin));
    next++;
    if (direction == Direction::BIDI) break; // the list holds one
  }
  if (next < ports.size()) report(comparison, 0, std::string(label) + " list " + quoted(ports[next]) + " too much");
}

// A register whose data comes through an inverter of its own has a line for that pin.
bool has_data_line(const Netlist &netlist, SymbolIndex index) {
  const Symbol &symbol = netlist.symbols[index];
  const NetIndex data = net_at(netlist, index, "D0");
  if (primitive_of(symbol).function != Function::FLIP_FLOP || data == kNone) return false;
  return netlist.nets[data].name == std::string(symbol.instance) + "_BD";
}

void compare_marks(Comparison &comparison, const DdfSymbol &symbol, SymbolIndex found) {
  const bool protect = comparison.netlist.symbols[found].protect && !symbol.unended;
  if (symbol.protect != protect)
    report(comparison, symbol.line,
           quoted(symbol.instance) + (protect ? " is protected in the .nxf" : " is not protected in the .nxf"));
  const std::string data = has_data_line(comparison.netlist, found) ? std::string(symbol.instance) + "_BD" : "";
  if (symbol.data_net != data)
    report(comparison, symbol.line, quoted(symbol.instance) + " has another pin line below it in the .nxf");
}

void compare_symbols(Comparison &comparison) {
  const Netlist &netlist = comparison.netlist;
  SymbolIndex &first_listed = comparison.reading.first_listed;
  for (const DdfSymbol &symbol : comparison.reading.netlist.symbols) {
    const SymbolIndex found = find_listed(comparison, symbol.instance);
    if (found == kNone) {
      report(comparison, symbol.line, "the .nxf has no symbol " + quoted(symbol.instance));
      continue;
    }
    if (netlist.symbols[found].primitive_text != symbol.primitive)
      report(comparison, symbol.line,
             quoted(symbol.instance) + " is " + shortened(netlist.symbols[found].primitive_text) + " in the .nxf");
    compare_marks(comparison, symbol, found);
    if (std::exchange(comparison.symbol_listed[found], 1) != 0)
      report(comparison, symbol.line, quoted(symbol.instance) + " is listed twice");
    first_listed = std::min(first_listed, found);
  }
  for (SymbolIndex i = 0; i < netlist.symbols.size(); i++) {
    const Symbol &symbol = netlist.symbols[i];
    if (comparison.symbol_listed[i] != 0) continue;
    // The gates of expanded product terms, which come before all others, and the inverter of a complement.
    const Function function = primitive_of(symbol).function;
    const bool is_gate = function == Function::AND || function == Function::OR || function == Function::BUFFER;
    if (is_gate && (i < first_listed || symbol.instance.ends_with("_QB"))) continue;
    report(comparison, 0, "symbol " + quoted(symbol.instance) + " of the .nxf is missing");
  }
}

// How many pins of listed symbols are on each net.
void count_listed_pins(Comparison &comparison) {
  const Netlist &netlist = comparison.netlist;
  comparison.listed_pins.resize(netlist.nets.size());
  for (SymbolIndex i = 0; i < netlist.symbols.size(); i++) {
    if (comparison.symbol_listed[i] == 0) continue;
    const Symbol &symbol = netlist.symbols[i];
    for (std::uint32_t p = symbol.first_pin; p < symbol.first_pin + symbol.pin_count; p++)
      if (netlist.pins[p].net != kNone) comparison.listed_pins[netlist.pins[p].net]++;
  }
}

bool is_listed(const Comparison &comparison, const EndPoint &end) {
  return end.symbol != kNone && comparison.symbol_listed[end.symbol] != 0;
}

// The end of a net in the .nxf that an item of the ddf names; without a pin when there is none.
EndPoint find_end(Comparison &comparison, std::string_view item) {
  const std::size_t dot = item.rfind('.');
  if (dot == std::string_view::npos) return {};
  const SymbolIndex symbol = find_listed(comparison, item.substr(0, dot));
  if (symbol == kNone) return {};
  return {symbol, find_pin(comparison.netlist, symbol, item.substr(dot + 1))};
}

// What the ddf calls the device pin on the net: like the net, without the suffix that the .nxf adds to the
// pin's name.
std::string_view device_pin(const Comparison &comparison, NetIndex index, std::string_view net) {
  const std::uint32_t pin = comparison.external_pins[index];
  const std::string_view name = comparison.netlist.nets[index].name;
  if (pin == kNone || !name.starts_with(comparison.netlist.external_pins[pin].pin)) return {};
  const std::string_view suffix = name.substr(comparison.netlist.external_pins[pin].pin.size());
  return net.ends_with(suffix) ? net.substr(0, net.size() - suffix.size()) : std::string_view{};
}

// The port first, then the source, then the destinations, in any order: the ddf orders them by its own
// symbols.
void compare_net(Comparison &comparison, const DdfNet &ddf_net) {
  const Netlist &netlist = comparison.netlist;
  const auto fault = [&](const std::string &text) {
    report(comparison, ddf_net.line, "net " + quoted(ddf_net.name) + ' ' + text);
  };
  const NetIndex index = find_listed_net(comparison, ddf_net.name);
  if (index == kNone) return fault("is none of the .nxf");
  if (std::exchange(comparison.net_listed[index], 1) != 0) return fault("has two lines");
  const Net &net = netlist.nets[index];
  std::uint32_t at = ddf_net.first_item;
  const std::uint32_t end = ddf_net.first_item + ddf_net.item_count;
  if (comparison.reading.netlist.items[at].starts_with('.') != net.external)
    return fault("should meet a device pin, or should not");
  if (net.external) {
    const std::string_view item = comparison.reading.netlist.items[at++];
    if (item.substr(1) != device_pin(comparison, index, ddf_net.name))
      fault("names device pin " + quoted(item) + ", other than in the .nxf");
  }
  if (net.has_source && (at == end || find_end(comparison, comparison.reading.netlist.items[at]).pin != net.source.pin))
    return fault("has another source in the .nxf");
  std::uint32_t open = comparison.listed_pins[index] - (is_listed(comparison, net.source) ? 1 : 0);
  for (; at < end; at++) {
    const EndPoint point = find_end(comparison, comparison.reading.netlist.items[at]);
    if (point.pin == kNone || netlist.pins[point.pin].net != index || comparison.pin_named[point.pin]) {
      fault("names " + quoted(comparison.reading.netlist.items[at]) + ", other than in the .nxf");
      continue;
    }
    comparison.pin_named[point.pin] = true;
    if (is_listed(comparison, point) && point.pin != net.source.pin) open--;
  }
  if (open != 0) comparison.open_nets.emplace_back(index, &ddf_net);
}

void find_missing_pins(Comparison &comparison) {
  if (comparison.open_nets.empty()) return;
  const Netlist &netlist = comparison.netlist;
  std::vector<const DdfNet *> ddf_nets(netlist.nets.size());
  for (const auto &[net, ddf_net] : comparison.open_nets) ddf_nets[net] = ddf_net;
  for (SymbolIndex s = 0; s < netlist.symbols.size(); s++) {
    if (comparison.symbol_listed[s] == 0) continue;
    const Symbol &symbol = netlist.symbols[s];
    for (std::uint32_t p = symbol.first_pin; p < symbol.first_pin + symbol.pin_count; p++) {
      const NetIndex net = netlist.pins[p].net;
      if (net == kNone || ddf_nets[net] == nullptr || comparison.pin_named[p] || netlist.nets[net].source.pin == p)
        continue;
      report(comparison, ddf_nets[net]->line,
             "net " + quoted(ddf_nets[net]->name) + " lacks a pin of symbol " + quoted(symbol.instance));
    }
  }
}

// A net may be left out when it is a rail, or inside what the ddf leaves out.
void find_missing_nets(Comparison &comparison) {
  const Netlist &netlist = comparison.netlist;
  for (NetIndex n = 0; n < netlist.nets.size(); n++) {
    const Net &net = netlist.nets[n];
    if (comparison.net_listed[n] != 0 || net.rail) continue;
    if (net.external || comparison.listed_pins[n] != 0)
      report(comparison, 0, "net " + quoted(net.name) + " of the .nxf is missing");
  }
}

void compare_cells(Comparison &comparison) {
  const std::string_view cell = comparison.reading.netlist.cell, design = comparison.netlist.design;
  if (cell != design && !(cell.empty() && design == "design_name"))
    report(comparison, 1, "the cell is " + quoted(cell) + ", the design of the .nxf " + quoted(design));
}

std::vector<Finding> compare(const Netlist &netlist, std::string_view ddf_text, bool guarded_first,
                             DdfReading &reading) {
  std::vector<Finding> findings;
  reading = {};
  Comparison comparison{netlist, reading, findings, guarded_first};
  const auto is_instance = [&](std::string_view name) { return find_listed(comparison, name) != kNone; };
  Finding error;
  DdfNetlist &ddf = reading.netlist;
  if (!parse_ddf(ddf_text, is_instance, ddf, error)) return {error};
  comparison.symbol_listed.resize(netlist.symbols.size());
  comparison.net_listed.resize(netlist.nets.size());
  comparison.pin_named.resize(netlist.pins.size());
  comparison.external_pins.resize(netlist.nets.size(), kNone);
  for (std::uint32_t i = 0; i < netlist.external_pins.size(); i++)
    if (const NetIndex net = netlist.external_pins[i].net; net != kNone) comparison.external_pins[net] = i;
  compare_cells(comparison);
  compare_ports(comparison, "OUTPUTS", Direction::OUT, ddf.outputs);
  compare_ports(comparison, "INPUTS", Direction::IN, ddf.inputs);
  compare_ports(comparison, "INOUTS", Direction::BIDI, ddf.inouts);
  compare_symbols(comparison);
  count_listed_pins(comparison);
  const auto first = static_cast<std::ptrdiff_t>(findings.size());
  for (const DdfNet &net : ddf.nets) compare_net(comparison, net);
  find_missing_pins(comparison);
  std::stable_sort(findings.begin() + first, findings.end(),
                   [](const Finding &a, const Finding &b) { return a.line < b.line; });
  find_missing_nets(comparison);
  return findings;
}

} // namespace

std::vector<Finding> compare_netlists(const Netlist &netlist, std::string_view ddf_text, DdfReading &reading) {
  std::vector<Finding> findings = compare(netlist, ddf_text, false, reading);
  if (findings.empty()) return findings;
  DdfReading other;
  std::vector<Finding> others = compare(netlist, ddf_text, true, other);
  if (others.size() >= findings.size()) return findings;
  reading = std::move(other);
  return others;
}

} // namespace cubekit
