// The state of one build of a netlist, shared by its three subjects: the signals, the macros and the output blocks.
#pragma once

#include <string>
#include <vector>

#include "model/cube_table.h"
#include "model/design.h"
#include "netlist/build_netlist.h"
#include "netlist/connections.h"
#include "netlist/netlist.h"
#include "netlist/signal_mapper.h"
#include "util/text_hash.h"

namespace cubenet {

// Entries of a list grouped by the signal that they name.
struct BySignal {
  std::vector<std::uint32_t> starts, entries;
};

// Calls visit(entry) for every entry of the signal, in list order.
template <typename Visit> void for_each_entry(const BySignal &groups, SignalIndex signal, Visit visit) {
  const auto at = static_cast<std::size_t>(signal);
  for (std::uint32_t i = groups.starts[at]; i < groups.starts[at + 1]; i++) visit(groups.entries[i]);
}

// A connection of a placed macro, and the net that it was given.
struct MacroPin {
  const Connection *connection;
  bool is_output;
  bool is_apart = false; // an output that must not meet the net that it names: something else drives that
  NetIndex net = kNone;
};

struct NetlistBuilder {
  const Design &design;
  const CubeTable &cubes;
  const Connections &connections;
  bool expand;
  XorPlace xor_place;
  Netlist netlist{};
  BySignal columns{}, outputs{};
  std::vector<MacroPin> macro_pins{}; // instances in list order, inputs before outputs
  BySignal connected{};               // macro pins by signal
  std::vector<Symbol> signal_symbols{};
  TextMap<std::string, NetIndex> plain_nets{}; // nets that only macros connect, by name
  std::vector<NetIndex> yielding_nets{};       // their names get a number where another net
  std::vector<SymbolIndex> yielding_symbols{}; // or symbol has them
};

BySignal group_by_signal(const std::vector<SignalIndex> &signals, SignalIndex count);
NetIndex add_net(Netlist &netlist, Name name, NetKind kind);
NetIndex rail(Netlist &netlist, bool high); // GND or VCC, made on first use

// A symbol of `netlist.symbols` whose pins are those added until close_symbol.
Symbol &open_symbol(Netlist &netlist, Primitive primitive, Name instance);
void close_symbol(Netlist &netlist);

// Maps one signal: its nets, its symbols, its external pin, and the nets that its readers read.
void map_signal(NetlistBuilder &builder, SignalIndex signal);
// An LXOR2 gate that takes an output reads its columns' nets, which stand only when all signals are mapped.
void connect_xor_gates(NetlistBuilder &builder);

// How a connection spells a net of the signal or plain net `base`.
std::string spelled_name(const std::string &base, const Connection &connection, bool is_output);
void collect_macro_pins(NetlistBuilder &builder);
// The macro output that drives a signal without an equation of its own; nullptr for none.
const MacroPin *find_macro_driver(const NetlistBuilder &builder, SignalIndex signal);
// Which forms of the signal macros read, as a bit per extension code.
std::uint32_t macro_reads(const NetlistBuilder &builder, SignalIndex signal);
void connect_macro_pins(NetlistBuilder &builder, SignalMapper &mapper, const ReadNets &reads, const MacroPin *driver);
void add_macros(NetlistBuilder &builder);

// The blocks of the outputs: rails, XOR gates where they stand with the outputs, and PLA or ZDOT blocks unless the
// product terms become gates.
void add_output_blocks(NetlistBuilder &builder);

// The net on which a reference with that extension reads; kNone when the signal can't be read so.
NetIndex read_net(const ReadNets &reads, ExtensionCode code);

} // namespace cubenet
