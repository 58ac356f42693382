// Looks things up in a netlist.
#include "kit/netlist/netlist.h"

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
  const auto visit = [&](const auto &add) {
    for (SymbolIndex s = 0; s < netlist.symbols.size(); s++) {
      const Symbol &symbol = netlist.symbols[s];
      for (std::uint32_t p = symbol.first_pin; p < symbol.first_pin + pin_count(symbol); p++)
        if (Net &net = netlist.nets[netlist.pin_nets[p]]; net.source.pin != p) add(net, EndPoint{s, p});
    }
  };
  visit([](Net &net, EndPoint) { net.destination_count++; });
  std::uint32_t total = 0;
  for (Net &net : netlist.nets) {
    net.first_destination = total;
    total += net.destination_count;
    net.destination_count = 0; // those listed so far
  }
  netlist.destinations.resize(total);
  visit([&](Net &net, EndPoint end) { netlist.destinations[net.first_destination + net.destination_count++] = end; });
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
      number < pin_count(symbol) && symbol.kind->ports[number].name == name)
    return symbol.first_pin + number;
  if (is_macro(symbol) && pin_count(symbol) > kFewPins) {
    const std::uint32_t place = find_name(symbol.kind->ports_by_name, name);
    return place == kNone ? kNone : symbol.first_pin + place;
  }
  // Other pins stand behind them.
  const std::uint32_t count = pin_count(symbol);
  for (std::uint32_t place = count - std::min(count, kFewPins); place < count; place++)
    if (symbol.kind->ports[place].name == name) return symbol.first_pin + place;
  return kNone;
}

NetIndex net_at(const Netlist &netlist, SymbolIndex symbol, std::string_view pin) {
  const std::uint32_t found = find_pin(netlist, symbol, pin);
  return found == kNone ? kNone : netlist.pin_nets[found];
}

} // namespace cubekit
