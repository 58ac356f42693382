// A netlist as it stands in an .nxf file. All names are views into the file's text, which the record owns, so a Netlist
// may be moved but not copied.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "kit/file_text.h"
#include "kit/name_index.h"
#include "kit/primitives.h"

namespace cubekit {

using NetIndex = std::uint32_t;
using SymbolIndex = std::uint32_t;

// The name of a symbol's pin. Netlists have millions of pins and few names for them: pins of one netlist have the same
// name exactly if they share its text.
struct PinName {
  const std::string_view *text = nullptr;
  operator std::string_view() const { return *text; }
};
inline bool operator==(PinName a, std::string_view b) { return *a.text == b; }

struct Pin {
  PinName name;
  NetIndex net = kNone; // kNone: no NET statement names the pin
  Direction direction = Direction::IN;
};

struct Symbol {
  PrimitiveIndex primitive = kMacro;
  std::uint32_t width = 0;         // numbered inputs: of the name for gates, counted for PLA and ZDOT
  std::string_view primitive_text; // as written, with the width
  std::string_view instance;
  bool protect = false;
  bool hard = false;
  std::uint32_t first_pin = 0; // into Netlist::pins; the pins of a symbol stand in a row
  std::uint32_t pin_count = 0;
  std::string_view rows; // PLA: the text of all rows, one after another; see row_count and row_at
  std::uint32_t line = 0;
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
  bool in_order = false; // surely all destinations are inputs, and follow the symbols
  EndPoint source;
  std::uint32_t first_destination = 0; // into Netlist::destinations
  std::uint32_t destination_count = 0;
  std::uint32_t line = 0;
};

struct ExternalPin {
  std::string_view pin;
  Direction direction = Direction::IN;
  std::string_view net_name;
  NetIndex net = kNone;
  std::uint32_t line = 0;
};

struct Netlist {
  FileText text;
  std::string_view design, description, technology, part; // empty: not given

  std::vector<ExternalPin> external_pins; // in file order, as all lists here
  std::vector<Net> nets;
  std::vector<EndPoint> destinations;
  std::vector<Symbol> symbols;
  std::vector<Pin> pins;

  std::deque<std::string_view> pin_names;
  std::vector<PinName> input_names; // "A0", "A1", ..., as far as any symbol has them in their places
  HashIndex nets_by_name, symbols_by_instance;
  NameIndex external_by_pin;
  std::unordered_map<SymbolIndex, NameIndex> large_macros; // ports by name, where there are too many to look through
  // Names that lead nowhere and names given twice, met while the file's parts were joined. A netlist that is used for
  // anything but judging it has none.
  std::vector<Finding> faults;

  Netlist() = default;
  Netlist(Netlist &&) = default;
  Netlist &operator=(Netlist &&) = default;
};

// Splits "AND3" into AND and 3; "FD21" is a name of its own, of width 0. kMacro when the library has no such primitive.
PrimitiveIndex parse_primitive(std::string_view text, std::uint32_t &width);

inline const PrimitiveRow &primitive_of(const Symbol &symbol) { return kPrimitives[symbol.primitive]; }
inline NetIndex find_net(const Netlist &netlist, std::string_view name) {
  return find_value(netlist.nets_by_name, hash_name(name),
                    [&](NetIndex net) { return netlist.nets[net].name == name; });
}
inline SymbolIndex find_symbol(const Netlist &netlist, std::string_view instance) {
  return find_value(netlist.symbols_by_instance, hash_name(instance),
                    [&](SymbolIndex symbol) { return netlist.symbols[symbol].instance == instance; });
}
// A symbol's pins up to this number are searched one by one.
constexpr std::uint32_t kFewPins = 8;

// The pin of that name, as an index into Netlist::pins; kNone when the symbol has none.
std::uint32_t find_pin(const Netlist &netlist, SymbolIndex symbol, std::string_view name);
// The net on that pin; kNone when the symbol has no such pin.
NetIndex net_at(const Netlist &netlist, SymbolIndex symbol, std::string_view pin);

// A PLA row in the file: a tab, one character per input ('0', '1', '-'), " 1" and a line end.
constexpr std::size_t kRowFrame = 4;
inline std::size_t row_count(const Symbol &symbol) { return symbol.rows.size() / (symbol.width + kRowFrame); }
inline std::string_view row_at(const Symbol &symbol, std::size_t row) {
  return symbol.rows.substr(row * (symbol.width + kRowFrame) + 1, symbol.width);
}

} // namespace cubekit
