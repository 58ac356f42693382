// Takes a checked design and the connections of its terms, gives the netlist: signal by signal, pins first, the nets
// in statement order and the symbols in print order, then the nets' sources and destinations as the symbols have them.
#include "netlist/build_netlist.h"

#include <numeric>
#include <string>
#include <utility>

#include "netlist/macros.h"
#include "netlist/netlist_builder.h"
#include "netlist/output_blocks.h"
#include "netlist/signals.h"

namespace cubenet {

namespace {

template <typename Visit> void for_each_pin(const Netlist &netlist, Visit visit) {
  for (SymbolIndex s = 0; s < netlist.symbols.size(); s++) {
    const Symbol &symbol = netlist.symbols[s];
    for (std::uint32_t p = symbol.first_pin; p < symbol.first_pin + symbol.pin_count; p++) visit(s, p);
  }
}

void link_columns(Netlist &netlist) {
  netlist.first_columns.assign(netlist.nets.size(), kNone);
  netlist.next_columns.assign(netlist.column_nets.size(), kNone);
  for (auto k = static_cast<std::uint32_t>(netlist.column_nets.size()); k-- > 0;) {
    const NetIndex net = netlist.column_nets[k];
    if (net == kNone) continue;
    netlist.next_columns[k] = netlist.first_columns[net];
    netlist.first_columns[net] = k;
  }
}

// What is read, or drives a pin, but has no source (a tristate pin without data, a macro input on a net that nobody
// drives) is tied to 0, so that every net has a source.
void tie_undriven_nets(NetlistBuilder &builder) {
  Netlist &netlist = builder.netlist;
  constexpr std::uint8_t kDriven = 1, kNeeded = 2;
  std::vector<std::uint8_t> state(netlist.nets.size(), 0);
  for (NetIndex n = 0; n < netlist.nets.size(); n++) {
    const Net &net = netlist.nets[n];
    if (net.kind == NetKind::EXTERNAL_INPUT || net.kind == NetKind::RAIL || net.source_output != kNone)
      state[n] = kDriven;
    else if (net.kind == NetKind::EXTERNAL_OUTPUT)
      state[n] = kNeeded;
  }
  for_each_pin(netlist, [&](SymbolIndex, std::uint32_t p) {
    const Pin &pin = netlist.pins[p];
    state[pin.net] |= pin_direction(pin.kind) == Direction::OUT ? kDriven : kNeeded;
  });
  if (netlist.has_blocks)
    for (NetIndex n = 0; n < state.size(); n++)
      if (netlist.first_columns[n] != kNone) state[n] |= kNeeded;
  for (NetIndex n = 0; n < state.size(); n++) {
    if (state[n] != kNeeded) continue;
    builder.yielding_symbols.push_back(static_cast<SymbolIndex>(netlist.symbols.size()));
    open_symbol(netlist, Primitive::BUF, netlist.nets[n].name);
    netlist.pins.push_back({PinKind::A, 0, rail(netlist, false)});
    netlist.pins.push_back({PinKind::Z0, 0, n});
    close_symbol(netlist);
  }
}

// Names that the program is free to choose: each stays as it is unless another of its kind has it, and then gets a
// number. `for_each_name` visits those of the kind. Only the ones that may matter are held.
template <typename ForEachName>
void name_yielding(Netlist &netlist, const std::vector<Name *> &yielding, ForEachName for_each_name) {
  if (yielding.empty()) return;
  std::vector<std::string> wanted;
  for (Name *name : yielding) wanted.push_back(name_text(std::exchange(*name, {})));
  const TextSet<std::string_view> sought(wanted.begin(), wanted.end());
  TextSet<std::string> taken;
  for_each_name([&](const Name &name) {
    const std::string text = name_text(name);
    if (sought.contains(text) || sought.contains(std::string_view(text).substr(0, text.rfind('_')))) taken.insert(text);
  });
  TextMap<std::string_view, int> numbers; // next one per wanted name
  for (std::size_t i = 0; i < wanted.size(); i++) {
    std::string text = wanted[i];
    for (int &number = numbers.try_emplace(wanted[i], 2).first->second; !taken.insert(text).second; number++)
      text = wanted[i] + "_" + std::to_string(number);
    netlist.own_names.push_back(std::move(text));
    *yielding[i] = {netlist.own_names.back(), ""};
  }
}

// Nets that only macros need keep away from the names of all signals as well, whose pins may be called so.
void name_yielding_nets(NetlistBuilder &builder) {
  Netlist &netlist = builder.netlist;
  std::vector<Name *> yielding;
  for (const NetIndex n : builder.yielding_nets) yielding.push_back(&netlist.nets[n].name);
  name_yielding(netlist, yielding, [&](auto visit) {
    for (const Net &net : netlist.nets) visit(net.name);
    for (SignalIndex signal = 0; signal < signal_count(builder.design); signal++)
      visit({signal_name(builder.design, signal), ""});
  });
}

// Of macros that were given one name the first keeps it, and what ties a net to 0 is called like that net.
void name_yielding_symbols(NetlistBuilder &builder) {
  Netlist &netlist = builder.netlist;
  std::vector<Name *> yielding;
  for (const SymbolIndex s : builder.yielding_symbols) yielding.push_back(&netlist.symbols[s].instance);
  name_yielding(netlist, yielding, [&](auto visit) { for_each_instance(netlist, visit); });
}

// Every net gets its one source; every input pin becomes a destination of its net, in print order.
void derive_nets(Netlist &netlist) {
  netlist.first_columns.resize(netlist.nets.size(), kNone); // a rail may have been added
  std::vector<std::uint32_t> &starts = netlist.destination_starts;
  starts.assign(netlist.nets.size() + 1, 0);
  for_each_pin(netlist, [&](SymbolIndex s, std::uint32_t p) {
    const Pin &pin = netlist.pins[p];
    if (pin_direction(pin.kind) != Direction::OUT) {
      starts[pin.net + 1]++;
    } else {
      netlist.nets[pin.net].source_symbol = s;
      netlist.nets[pin.net].source_pin = p;
    }
  });
  std::partial_sum(starts.begin(), starts.end(), starts.begin());
  netlist.destinations.resize(starts.back());
  std::vector<std::uint32_t> next(starts.begin(), starts.end() - 1);
  for_each_pin(netlist, [&](SymbolIndex s, std::uint32_t p) {
    const Pin &pin = netlist.pins[p];
    if (pin_direction(pin.kind) != Direction::OUT) netlist.destinations[next[pin.net]++] = {s, p};
  });
}

} // namespace

Netlist build_netlist(const Design &design, const CubeTable &cubes, const Connections &connections, bool expand,
                      XorPlace xor_place) {
  NetlistBuilder builder{design, cubes, connections, expand, xor_place};
  Netlist &netlist = builder.netlist;
  netlist.outputs.resize(design.OLB.size());
  netlist.column_nets.assign(design.ILB.size(), kNone);
  builder.columns = group_by_signal(design.ilb_signals, signal_count(design));
  builder.outputs = group_by_signal(design.olb_signals, signal_count(design));
  // Most signals have one net. What is reserved and not used takes no memory; what grows takes it three times.
  netlist.nets.reserve(static_cast<std::size_t>(signal_count(design)) + design.OLB.size());
  collect_macro_pins(builder);
  for (SignalIndex signal = 0; signal < signal_count(design); signal++)
    if (!signal_name(design, signal).empty()) map_signal(builder, signal);
  connect_xor_gates(builder);
  add_macros(builder);
  add_output_blocks(builder);
  netlist.symbols.insert(netlist.symbols.end(), builder.signal_symbols.begin(), builder.signal_symbols.end());
  netlist.has_blocks = !expand;
  link_columns(netlist);
  name_yielding_nets(builder);
  tie_undriven_nets(builder);
  name_yielding_symbols(builder);
  for (const NetIndex each : {netlist.gnd, netlist.vcc})
    if (each != kNone) netlist.statements.push_back(each);
  derive_nets(netlist);
  return std::move(netlist);
}

} // namespace cubenet
