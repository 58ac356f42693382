// The state of one build of a netlist, shared by its three subjects: the signals, the macros and the output blocks.
#pragma once

#include <string>
#include <vector>

#include "model/cube_table.h"
#include "model/design.h"
#include "netlist/build_netlist.h"
#include "netlist/connections.h"
#include "netlist/netlist.h"
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

} // namespace cubenet
