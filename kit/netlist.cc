// Looks things up in a netlist.
#include "kit/netlist.h"

#include <algorithm>
#include <charconv>
#include <iterator>

namespace cubekit {

PrimitiveIndex parse_primitive(std::string_view text, std::uint32_t &width) {
  width = 0;
  const PrimitiveIndex exact = find_primitive(text);
  if (exact != kMacro && !kPrimitives[exact].width_in_name) return exact;
  const std::size_t digits = text.find_first_of("0123456789");
  if (digits == std::string_view::npos || text[digits] == '0') return kMacro;
  const PrimitiveIndex gate = find_primitive(text.substr(0, digits));
  if (gate == kMacro || !kPrimitives[gate].width_in_name) return kMacro;
  const char *end = text.data() + text.size();
  std::uint32_t number = 0;
  const auto [stop, fault] = std::from_chars(text.data() + digits, end, number);
  if (fault != std::errc() || stop != end) return kMacro;
  width = number;
  return gate;
}

void list_destinations(Netlist &netlist) {
  if (!netlist.in_order || !netlist.destinations.empty()) return;
  netlist.destinations.resize(count_destinations(netlist));
  std::vector<std::uint32_t> next;
  next.reserve(netlist.nets.size());
  for (const Net &net : netlist.nets) next.push_back(net.first_destination);
  for (SymbolIndex s = 0; s < netlist.symbols.size(); s++) {
    const Symbol &symbol = netlist.symbols[s];
    for (std::uint32_t p = symbol.first_pin; p < symbol.first_pin + symbol.pin_count; p++) {
      const NetIndex net = netlist.pins[p].net;
      if (netlist.nets[net].source.pin != p) netlist.destinations[next[net]++] = {s, p};
    }
  }
}

bool is_numbered(std::string_view name, std::uint32_t number) {
  char text[16] = {'A'};
  const char *end = std::to_chars(text + 1, std::end(text), number).ptr;
  return name == std::string_view(text, static_cast<std::size_t>(end - text));
}

std::uint32_t find_pin(const Netlist &netlist, SymbolIndex symbol_index, std::string_view name) {
  const Symbol &symbol = netlist.symbols[symbol_index];
  // Numbered inputs stand at the place that their number tells.
  std::uint32_t number = 0;
  const char *end = name.data() + name.size();
  if (name.size() > 1 && name[0] == 'A' && std::from_chars(name.data() + 1, end, number).ptr == end &&
      number < symbol.pin_count && name_of(netlist, netlist.pins[symbol.first_pin + number]) == name)
    return symbol.first_pin + number;
  if (symbol.primitive == kMacro && symbol.pin_count > kFewPins) {
    const auto ports = netlist.large_macros.find(symbol.kind);
    const std::uint32_t place = ports == netlist.large_macros.end() ? kNone : find_name(ports->second, name);
    return place == kNone ? kNone : symbol.first_pin + place;
  }
  // Other pins stand behind them.
  const std::uint32_t few = std::min(symbol.pin_count, kFewPins);
  for (std::uint32_t p = symbol.first_pin + symbol.pin_count - few; p < symbol.first_pin + symbol.pin_count; p++)
    if (name_of(netlist, netlist.pins[p]) == name) return p;
  return kNone;
}

NetIndex net_at(const Netlist &netlist, SymbolIndex symbol, std::string_view pin) {
  const std::uint32_t found = find_pin(netlist, symbol, pin);
  return found == kNone ? kNone : netlist.pins[found].net;
}

} // namespace cubekit
