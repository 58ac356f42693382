// The bricks that the three subjects of a build share: entries by signal, nets, and symbols in print order.
#include "netlist/netlist_builder.h"

#include <numeric>

namespace cubenet {

BySignal group_by_signal(const std::vector<SignalIndex> &signals, SignalIndex count) {
  BySignal groups;
  groups.starts.assign(static_cast<std::size_t>(count) + 1, 0);
  for (const SignalIndex signal : signals) groups.starts[static_cast<std::size_t>(signal) + 1]++;
  std::partial_sum(groups.starts.begin(), groups.starts.end(), groups.starts.begin());
  groups.entries.resize(signals.size());
  std::vector<std::uint32_t> next(groups.starts.begin(), groups.starts.end() - 1);
  for (std::uint32_t entry = 0; entry < signals.size(); entry++)
    groups.entries[next[static_cast<std::size_t>(signals[entry])]++] = entry;
  return groups;
}

NetIndex add_net(Netlist &netlist, Name name, NetKind kind) {
  const auto net = static_cast<NetIndex>(netlist.nets.size());
  netlist.nets.push_back({.name = name, .kind = kind});
  return net;
}

NetIndex rail(Netlist &netlist, bool high) {
  NetIndex &net = high ? netlist.vcc : netlist.gnd;
  if (net == kNone) net = add_net(netlist, {high ? "VCC" : "GND", ""}, NetKind::RAIL);
  return net;
}

Symbol &open_symbol(Netlist &netlist, Primitive primitive, Name instance) {
  Symbol symbol;
  symbol.primitive = primitive;
  symbol.instance = instance;
  symbol.first_pin = static_cast<std::uint32_t>(netlist.pins.size());
  netlist.symbols.push_back(symbol);
  return netlist.symbols.back();
}

void close_symbol(Netlist &netlist) {
  Symbol &symbol = netlist.symbols.back();
  symbol.pin_count = static_cast<std::uint32_t>(netlist.pins.size()) - symbol.first_pin;
}

} // namespace cubenet
