// A netlist as an .nxf file has it. All names are views into the file's text, which the record owns, so a
// Netlist may be moved but not copied.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "kit/netlist/primitives.h"
#include "kit/util/finding.h"
#include "kit/util/name_index.h"

namespace cubekit {

using NetIndex = std::uint32_t;
using SymbolIndex = std::uint32_t;

// A pin of a symbol.
struct Pin {
  std::string_view name;
  NetIndex net = kNone; // kNone: no NET statement names the pin
  Direction direction = Direction::IN;
};

struct Symbol {
  std::string_view instance;
  std::string_view primitive_text; // as written, with the width
  const char *rows = nullptr;      // PLA: the text of all rows, one after another; see row_at
  std::uint32_t row_count = 0;
  std::uint32_t width = 0;                    // numbered inputs: gates, by the name; PLA, ZDOT: counted
  std::uint32_t first_pin = 0, pin_count = 0; // in Netlist::pins
  std::uint32_t line = 0;
  PrimitiveIndex primitive = kMacro;
  bool protect = false;
  bool hard = false;
};

// One end of a net: a pin of a symbol. Both kNone: an item that names none (a fault of the netlist).
struct EndPoint {
  SymbolIndex symbol = kNone;
  std::uint32_t pin = kNone; // into Netlist::pins
};

struct Net {
  std::string_view name;
  bool external = false; // EXT: the net meets a device pin
  bool rail = false;     // GND or VCC: no source
  bool has_source = false;
  EndPoint source;
  std::uint32_t first_destination = 0, destination_count = 0; // in Netlist::destinations
  std::uint32_t line = 0;
};

struct ExternalPin {
  std::string_view pin;
  Direction direction = Direction::IN;
  std::string_view net_name;
  NetIndex net = kNone;
  std::uint32_t line = 0;
};

// A pin of a macro that has too many to look through.
struct MacroPin {
  SymbolIndex symbol;
  std::string_view name;
  bool operator==(const MacroPin &) const = default;
};
struct MacroPinHash {
  std::size_t operator()(const MacroPin &pin) const {
    return cubenet::hash_text(pin.name) ^ pin.symbol * std::size_t{0x9E3779B97F4A7C15U};
  }
};

struct Netlist {
  std::string text;
  std::string_view design, description, technology, part; // empty: not given

  std::vector<ExternalPin> external_pins; // in file order, as all lists here
  std::vector<Net> nets;
  std::vector<EndPoint> destinations; // one net's after the other's
  std::vector<Symbol> symbols;
  std::vector<Pin> pins; // one symbol's after the other's

  // The first of each name.
  NameIndex nets_by_name, symbols_by_instance, external_by_pin;
  std::unordered_map<MacroPin, std::uint32_t, MacroPinHash> macro_pins; // into pins

  // Names that lead nowhere and names given twice, found while joining the file's parts. Only a netlist that
  // is being checked may have any.
  std::vector<Finding> faults;

  Netlist() = default;
  Netlist(Netlist &&) = default;
  Netlist &operator=(Netlist &&) = default;
};

// Splits "AND3" into AND and 3; "FD21" is a name of its own, of width 0. kMacro when the library has no such
// primitive.
PrimitiveIndex parse_primitive(std::string_view text, std::uint32_t &width);

inline const PrimitiveRow &primitive_of(const Symbol &symbol) { return kPrimitives[symbol.primitive]; }
inline bool is_macro(const Symbol &symbol) { return symbol.primitive == kMacro; }
inline std::span<const Pin> pins_of(const Netlist &netlist, const Symbol &symbol) {
  return std::span(netlist.pins).subspan(symbol.first_pin, symbol.pin_count);
}

// kNone when there is none of that name.
inline NetIndex find_net(const Netlist &netlist, std::string_view name) {
  return find_name(netlist.nets_by_name, name);
}
inline SymbolIndex find_symbol(const Netlist &netlist, std::string_view instance) {
  return find_name(netlist.symbols_by_instance, instance);
}
// The pin of that name, as an index into Netlist::pins.
std::uint32_t find_pin(const Netlist &netlist, SymbolIndex symbol, std::string_view name);
// The net on that pin.
NetIndex net_at(const Netlist &netlist, SymbolIndex symbol, std::string_view pin);

// Up to this many pins of a symbol are searched one by one.
constexpr std::uint32_t kFewPins = 8;

// "A0", "A1", ...: whether the name is the one of that number.
bool is_numbered(std::string_view name, std::uint32_t number);

// A PLA row in the file: a tab, one character per input ('0', '1', '-'), " 1" and a line end.
constexpr std::size_t kRowFrame = 4;
inline std::string_view row_at(const Symbol &symbol, std::size_t row) {
  return {symbol.rows + row * (symbol.width + kRowFrame) + 1, symbol.width};
}

} // namespace cubekit
