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

bool is_numbered(std::string_view name, std::uint32_t number) {
  char text[16] = {'A'};
  const char *end = std::to_chars(text + 1, std::end(text), number).ptr;
  return name == std::string_view(text, static_cast<std::size_t>(end - text));
}

std::uint32_t find_pin(const Netlist &netlist, SymbolIndex symbol_index, std::string_view name) {
  const Symbol &symbol = netlist.symbols[symbol_index];
  const std::span<const Pin> pins = pins_of(netlist, symbol);
  // Numbered inputs are at the index of their number.
  std::uint32_t number = 0;
  const char *end = name.data() + name.size();
  if (name.size() > 1 && name[0] == 'A' && std::from_chars(name.data() + 1, end, number).ptr == end &&
      number < pins.size() && pins[number].name == name)
    return symbol.first_pin + number;
  if (is_macro(symbol) && pins.size() > kFewPins) {
    const auto found = netlist.macro_pins.find({symbol_index, name});
    return found == netlist.macro_pins.end() ? kNone : found->second;
  }
  // Other pins come after them.
  for (std::uint32_t place = symbol.pin_count - std::min(symbol.pin_count, kFewPins); place < pins.size(); place++)
    if (pins[place].name == name) return symbol.first_pin + place;
  return kNone;
}

NetIndex net_at(const Netlist &netlist, SymbolIndex symbol, std::string_view pin) {
  const std::uint32_t found = find_pin(netlist, symbol, pin);
  return found == kNone ? kNone : netlist.pins[found].net;
}

} // namespace cubekit
