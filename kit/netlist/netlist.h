// A netlist as it stands in an .nxf file. All names are views into the file's text, which the record owns, so a Netlist
// may be moved but not copied.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "kit/netlist/primitives.h"
#include "kit/util/file_text.h"
#include "kit/util/name_index.h"

namespace cubekit {

using NetIndex = std::uint32_t;
using SymbolIndex = std::uint32_t;

// A pin as all symbols of a kind have it.
struct Port {
  std::string_view name;
  std::uint32_t name_number = 0; // the same for all ports of that name
  Direction direction = Direction::IN;
};

// What symbols of one primitive have in common when they have the same pins in the same order and the same marks.
// Symbols of one kind mostly follow one another, so netlists have few; two may still be alike.
struct SymbolKind {
  std::string_view primitive_text; // as written, with the width
  std::uint32_t number = 0;        // in Netlist::kinds
  PrimitiveIndex primitive = kMacro;
  bool protect = false;
  bool hard = false;
  std::uint32_t width = 0; // numbered inputs: of the name for gates, counted for PLA and ZDOT
  std::vector<Port> ports;
  NameIndex ports_by_name; // of macros with too many to look through
};

struct Symbol {
  std::string_view instance;
  const SymbolKind *kind = nullptr; // never null in a Netlist
  const char *rows = nullptr;       // PLA: the text of all rows, one after another; see row_at
  std::uint32_t row_count = 0;
  std::uint32_t first_pin = 0; // into Netlist::pin_nets: those of a symbol stand in a row
  std::uint32_t line = 0;
};

// A pin of a symbol.
struct Pin {
  NetIndex net = kNone; // kNone: no NET statement names the pin
  std::string_view name;
  Direction direction = Direction::IN;
};

// One end of a net: a pin of a symbol. Both kNone: an item that names none (a fault of the netlist).
struct EndPoint {
  SymbolIndex symbol = kNone;
  std::uint32_t pin = kNone; // into Netlist::pin_nets
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
  // Every pin is joined, and each net names an output behind SRC, and behind DST others in the order of the symbols.
  bool in_order = false;
  // What the nets lead to, one net's after the other's. Parsing doesn't list them, nor count those of each net, when
  // they are in order: not everybody needs them, and list_destinations finds them.
  std::vector<EndPoint> destinations;
  std::vector<Symbol> symbols;
  std::deque<SymbolKind> kinds;   // never moved: symbols point to them
  std::vector<NetIndex> pin_nets; // by pin; kNone: no NET statement names it. Netlists have millions of pins

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
inline std::uint32_t pin_count(const Symbol &symbol) { return static_cast<std::uint32_t>(symbol.kind->ports.size()); }
inline const Port &port_of(const Netlist &netlist, const EndPoint &end) {
  const Symbol &symbol = netlist.symbols[end.symbol];
  return symbol.kind->ports[end.pin - symbol.first_pin];
}

// The pins of a symbol, as a list.
struct Pins {
  const NetIndex *nets;
  std::span<const Port> ports;

  struct Iterator {
    const NetIndex *net;
    const Port *port;
    Pin operator*() const { return {*net, port->name, port->direction}; }
    Iterator &operator++() {
      ++net, ++port;
      return *this;
    }
    bool operator==(const Iterator &other) const { return port == other.port; }
  };
  Pin operator[](std::size_t place) const { return {nets[place], ports[place].name, ports[place].direction}; }
  Iterator begin() const { return {nets, ports.data()}; }
  Iterator end() const { return {nets + ports.size(), ports.data() + ports.size()}; }
};

inline Pins pins_of(const Netlist &netlist, const Symbol &symbol) {
  return {netlist.pin_nets.data() + symbol.first_pin, symbol.kind->ports};
}

// Lists the destinations of all nets, unless they are listed.
void list_destinations(Netlist &netlist);

// A symbol's pins up to this number are searched one by one.
constexpr std::uint32_t kFewPins = 8;

// "A0", "A1", ...: whether the name is the one of that number.
bool is_numbered(std::string_view name, std::uint32_t number);

// The pin of that name, as an index into Netlist::pin_nets; kNone when the symbol has none.
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
