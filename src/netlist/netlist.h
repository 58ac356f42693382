// The mapped design in memory. Symbols with their pins are the truth; the nets' sources and destinations are derived
// from them, so that the two can't disagree. Both netlist files are ways of printing one Netlist.
//
// The product terms stay in the cube table: a PLA block holds its rows by reference, and in gate form the AND and OR
// planes are printed straight from the terms (gate_planes.h); the outputs of the OR plane are sources of nets here.
#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "model/design.h"
#include "netlist/name.h"
#include "netlist/primitives.h"

namespace cubenet {

using NetIndex = std::uint32_t;
using SymbolIndex = std::uint32_t;
constexpr std::uint32_t kNone = ~0U;

struct Pin {
  PinKind kind = PinKind::A;
  // PORT_IN and PORT_OUT: the port's place in the macro; unused for the rest (an A pin is numbered by its place among
  // the symbol's pins).
  std::uint32_t number = 0;
  NetIndex net = kNone;
};

struct Symbol {
  Primitive primitive = Primitive::BUF;
  bool protect = false;
  Name instance;
  // The pins, into Netlist::pins. The inputs of a PLA or ZDOT block are not among them (block_inputs.h).
  std::uint32_t first_pin = 0;
  std::uint32_t pin_count = 0;
  // PLA, ZDOT, and an LXOR2 that stands for an output: the output-list entry; XTRI1 and XBIDI1: the signal; MACRO: the
  // macro; kNone for the rest.
  std::uint32_t origin = kNone;
};

enum class NetKind : std::uint8_t {
  INTERNAL,        // "NET n SRC ..."
  EXTERNAL_INPUT,  // "NET n EXT DST ...": driven by the pin from outside
  EXTERNAL_OUTPUT, // "NET n EXT SRC ...": drives the pin
  RAIL,            // GND and VCC
};

struct Net {
  Name name;
  NetKind kind = NetKind::INTERNAL;
  SymbolIndex source_symbol = kNone;   // kNone: external, a rail, or the gate of source_output
  std::uint32_t source_pin = kNone;    // into Netlist::pins
  std::uint32_t source_output = kNone; // gate form: the output-list entry whose gate drives the net
};

struct Destination {
  SymbolIndex symbol;
  std::uint32_t pin; // into Netlist::pins; of a PLA or ZDOT block: the number of the input
};

struct ExternalPin {
  SignalIndex pin;
  Direction direction;
  NetIndex net;
};

// How one output-list entry is realised.
struct OutputGate {
  Name instance;              // the gate, or the inverter behind an active-low block
  Name block;                 // the block in front of that inverter
  NetIndex net = kNone;       // what it drives
  NetIndex block_net = kNone; // what the block drives; kNone: there is none
  bool active_low = false;
  bool protect = false;
};

struct Netlist {
  std::vector<ExternalPin> external_pins; // in pin order
  std::vector<Net> nets;
  std::vector<NetIndex> statements;  // all nets in the order of their statements, the rails last
  NetIndex gnd = kNone, vcc = kNone; // kNone: nothing reads the rail

  // In print order: macros first, then the output blocks, then the signals' own symbols.
  std::vector<Symbol> symbols;
  std::vector<Pin> pins;

  std::vector<OutputGate> outputs;   // per output-list entry
  std::vector<NetIndex> column_nets; // per input-list entry; kNone: no used term reads it

  // Derived from the symbols: per net, in print order (starts has one more entry than there are nets); without the
  // inputs of the blocks, which find_destinations adds.
  std::vector<std::uint32_t> destination_starts;
  std::vector<Destination> destinations;

  bool has_blocks = false;                  // the product terms stay in PLA and ZDOT blocks
  std::vector<std::uint32_t> first_columns; // per net: an input-list entry that reads it, kNone for none
  std::vector<std::uint32_t> next_columns;  // per input-list entry: the next one on the same net, kNone for none

  std::deque<std::string> own_names; // names that neither the design nor fixed text holds
};

// Calls visit(name) for every symbol, the gates that drive outputs in gate form among them.
template <typename Visit> void for_each_instance(const Netlist &netlist, Visit visit) {
  for (const Symbol &symbol : netlist.symbols) visit(symbol.instance);
  for (const Net &net : netlist.nets)
    if (net.source_output != kNone) visit(netlist.outputs[net.source_output].instance);
}

// Calls visit(column) for every input-list entry that reads the net, ascending.
template <typename Visit> void for_each_column(const Netlist &netlist, NetIndex net, Visit visit) {
  for (std::uint32_t k = netlist.first_columns[net]; k != kNone; k = netlist.next_columns[k]) visit(k);
}

// A net that nothing drives and nobody reads is not printed.
inline bool is_connected(const Netlist &netlist, NetIndex net) {
  const Net &each = netlist.nets[net];
  const bool is_external = each.kind == NetKind::EXTERNAL_INPUT || each.kind == NetKind::EXTERNAL_OUTPUT;
  return is_external || each.source_symbol != kNone || each.source_output != kNone ||
         netlist.destination_starts[net] != netlist.destination_starts[net + 1] ||
         (netlist.has_blocks && netlist.first_columns[net] != kNone);
}

} // namespace cubenet
