// Finds the order of a netlist's symbols and the influences on a net. Loops of gates are latches, so they are
// not faults.
#include "kit/netlist/flow.h"

namespace cubekit {

namespace {

// One walk, drivers first, over symbols that may lead back to themselves.
struct Walk {
  struct Visit {
    SymbolIndex symbol;
    std::uint32_t next_pin;
  };
  const Netlist &netlist;
  Passes passes;
  Flow flow{};
  std::vector<std::uint8_t> states{}; // per symbol: untouched, in progress, done
  std::vector<Visit> way{};
};
enum State : std::uint8_t { UNTOUCHED, ON_THE_WAY, DONE };

void enter(Walk &walk, SymbolIndex symbol) {
  walk.states[symbol] = ON_THE_WAY;
  walk.way.push_back({symbol, 0});
}

void leave(Walk &walk, SymbolIndex symbol) {
  walk.states[symbol] = DONE;
  walk.flow.order.push_back(symbol);
  walk.way.pop_back();
}

void visit(Walk &walk, SymbolIndex root) {
  if (root == kNone || walk.states[root] != UNTOUCHED) return;
  enter(walk, root);
  while (!walk.way.empty()) {
    Walk::Visit &step = walk.way.back();
    const Symbol &symbol = walk.netlist.symbols[step.symbol];
    if (step.next_pin == symbol.pin_count) {
      leave(walk, step.symbol);
      continue;
    }
    const Pin pin = pins_of(walk.netlist, symbol)[step.next_pin++];
    if (pin.direction != Direction::IN || !walk.passes(symbol, pin)) continue;
    const SymbolIndex source = find_driver(walk.netlist, pin.net);
    if (source == kNone) continue;
    if (walk.states[source] == ON_THE_WAY) walk.flow.cut[pin.net] = true;
    if (walk.states[source] == UNTOUCHED) enter(walk, source);
  }
}

} // namespace

bool passes_gates(const Symbol &symbol, const Pin &) {
  return !is_storage(primitive_of(symbol).function) && !is_macro(symbol);
}

SymbolIndex find_driver(const Netlist &netlist, NetIndex net_index) {
  if (net_index == kNone) return kNone;
  const Net &net = netlist.nets[net_index];
  if (net.has_source) return net.source.symbol;
  // The pad is alone on its net.
  if (!net.external || net.destination_count != 1) return kNone;
  const EndPoint &end = netlist.destinations[net.first_destination];
  return netlist.pins[end.pin].direction == Direction::BIDI ? end.symbol : kNone;
}

Flow order_symbols(const Netlist &netlist, Passes passes) {
  Walk walk{netlist, passes};
  walk.states.resize(netlist.symbols.size());
  walk.flow.cut.resize(netlist.nets.size());
  walk.flow.order.reserve(netlist.symbols.size());
  // A walk that reaches a loop from outside meets the loop's output first, and cuts there.
  for (const ExternalPin &pin : netlist.external_pins)
    if (pin.direction != Direction::IN) visit(walk, find_driver(netlist, pin.net));
  for (const Symbol &symbol : netlist.symbols)
    for (const Pin pin : pins_of(netlist, symbol))
      if (pin.direction == Direction::IN && !passes(symbol, pin)) visit(walk, find_driver(netlist, pin.net));
  for (SymbolIndex symbol = 0; symbol < netlist.symbols.size(); symbol++) visit(walk, symbol);
  return std::move(walk.flow);
}

std::vector<bool> find_influences(const Netlist &netlist, std::vector<NetIndex> nets) {
  std::vector<bool> influences(netlist.symbols.size());
  while (!nets.empty()) {
    const SymbolIndex driver = find_driver(netlist, nets.back());
    nets.pop_back();
    if (driver == kNone || influences[driver]) continue;
    influences[driver] = true;
    for (const Pin pin : pins_of(netlist, netlist.symbols[driver]))
      if (pin.direction == Direction::IN) nets.push_back(pin.net);
  }
  return influences;
}

} // namespace cubekit
