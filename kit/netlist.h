// A netlist as it stands in an .nxf file. All names are views into the file's text, which the record owns, so a Netlist
// may be moved but not copied.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "kit/file_text.h"
#include "kit/name_index.h"
#include "kit/primitives.h"

namespace cubekit {

using NetIndex = std::uint32_t;
using SymbolIndex = std::uint32_t;

// Netlists have millions of pins and few names for them.
constexpr std::uint32_t kMostPinNames = 1U << 30;

struct Pin {
  NetIndex net = kNone;        // kNone: no NET statement names the pin
  std::uint32_t name : 30 = 0; // into Netlist::pin_names, which are at most kMostPinNames
  Direction direction : 2 = Direction::IN;
};

// What symbols of one primitive have in common when they have the same pins in the same order and the same marks.
// Netlists have few kinds of symbols.
struct SymbolKind {
  std::string_view primitive_text; // as written, with the width
  std::uint32_t number = 0;        // in Netlist::kinds
  PrimitiveIndex primitive = kMacro;
  bool protect = false;
  bool hard = false;
  std::uint32_t width = 0;     // numbered inputs: of the name for gates, counted for PLA and ZDOT
  std::uint32_t first_pin = 0; // of the first such symbol, into Netlist::pins; those of a symbol stand in a row
  std::uint32_t pin_count = 0;
  NameIndex ports; // of macros with too many pins to look through: these, counted from the first
};

struct Symbol {
  std::string_view instance;
  const SymbolKind *kind = nullptr; // never null in a Netlist
  const char *rows = nullptr;       // PLA: the text of all rows, one after another; see row_at
  std::uint32_t row_count = 0;
  std::uint32_t first_pin = 0;
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
  EndPoint source;
  std::uint32_t first_destination = 0; // into Netlist::destinations, once they are listed
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
  // Every pin is joined, and each net names its pins in the order of the symbols and no output behind DST.
  bool in_order = false;
  // What the nets lead to, one net's after the other's. Parsing doesn't list them, nor count those of each net, when
  // they are in order: not everybody needs them, and list_destinations finds them.
  std::vector<EndPoint> destinations;
  std::vector<Symbol> symbols;
  std::deque<SymbolKind> kinds; // never moved: symbols point to them
  std::vector<Pin> pins;

  std::vector<std::string_view> pin_names; // each once
  HashIndex nets_by_name;
  HashIndex symbols_by_instance; // those that can't be found as the source of the net of their name
  NameIndex external_by_pin;
  // Names that lead nowhere and names given twice, met while the file's parts were joined. A netlist that is used for
  // anything but judging it has none.
  std::vector<Finding> faults;

  Netlist() = default;
  Netlist(Netlist &&) = default;
  Netlist &operator=(Netlist &&) = default;
};

// Splits "AND3" into AND and 3; "FD21" is a name of its own, of width 0. kMacro when the library has no such primitive.
PrimitiveIndex parse_primitive(std::string_view text, std::uint32_t &width);

inline const PrimitiveRow &primitive_of(const Symbol &symbol) { return kPrimitives[symbol.kind->primitive]; }
inline bool is_macro(const Symbol &symbol) { return symbol.kind->primitive == kMacro; }
inline NetIndex find_net(const Netlist &netlist, std::string_view name) {
  return find_value(netlist.nets_by_name, hash_name(name),
                    [&](NetIndex net) { return netlist.nets[net].name == name; });
}
inline SymbolIndex find_symbol(const Netlist &netlist, std::string_view instance) {
  const auto has_name = [&](SymbolIndex symbol) { return netlist.symbols[symbol].instance == instance; };
  const NetIndex net = find_net(netlist, instance);
  const SymbolIndex source = net == kNone ? kNone : netlist.nets[net].source.symbol;
  return source != kNone && has_name(source) ? source
                                             : find_value(netlist.symbols_by_instance, hash_name(instance), has_name);
}
inline std::string_view name_of(const Netlist &netlist, const Pin &pin) { return netlist.pin_names[pin.name]; }
// Lists the destinations of all nets, unless they are listed.
void list_destinations(Netlist &netlist);

// A symbol's pins up to this number are searched one by one.
constexpr std::uint32_t kFewPins = 8;

// "A0", "A1", ...: whether the name is the one of that number.
bool is_numbered(std::string_view name, std::uint32_t number);

// The pin of that name, as an index into Netlist::pins; kNone when the symbol has none.
std::uint32_t find_pin(const Netlist &netlist, SymbolIndex symbol, std::string_view name);
// The net on that pin; kNone when the symbol has no such pin.
NetIndex net_at(const Netlist &netlist, SymbolIndex symbol, std::string_view pin);

// A PLA row in the file: a tab, one character per input ('0', '1', '-'), " 1" and a line end.
constexpr std::size_t kRowFrame = 4;
inline std::string_view row_at(const Symbol &symbol, std::size_t row) {
  const std::size_t width = symbol.kind->width;
  return {symbol.rows + row * (width + kRowFrame) + 1, width};
}

} // namespace cubekit
