#include "netlist/pin_text.h"

namespace cubenet {

void put_pin_name(OutputFile &file, const Design &design, const Netlist &netlist, SymbolIndex symbol,
                  std::uint32_t pin) {
  const Pin &each = netlist.pins[pin];
  const Symbol &owner = netlist.symbols[symbol];
  if (each.kind == PinKind::A)
    put_all(file, 'A', Decimal{pin - owner.first_pin});
  else if (each.kind == PinKind::PORT_IN)
    put(file, design.macros[owner.origin].inputs[each.number]);
  else if (each.kind == PinKind::PORT_OUT)
    put(file, design.macros[owner.origin].outputs[each.number]);
  else
    put(file, kPinRows[static_cast<std::size_t>(each.kind)].name);
}

void put_pin_reference(OutputFile &file, const Design &design, const Netlist &netlist, SymbolIndex symbol,
                       std::uint32_t pin) {
  put(file, netlist.symbols[symbol].instance);
  put(file, '.');
  put_pin_name(file, design, netlist, symbol, pin);
}

void put_destination(OutputFile &file, const Design &design, const Netlist &netlist, const Destination &at) {
  const Symbol &symbol = netlist.symbols[at.symbol];
  if (!is_block(symbol.primitive)) return put_pin_reference(file, design, netlist, at.symbol, at.pin);
  put(file, symbol.instance);
  put_all(file, ".A", Decimal{at.pin});
}

void put_source(OutputFile &file, const Design &design, const Netlist &netlist, const Net &net) {
  if (net.source_symbol != kNone) return put_pin_reference(file, design, netlist, net.source_symbol, net.source_pin);
  const OutputGate &gate = netlist.outputs[net.source_output];
  put(file, gate.instance);
  put(file, gate.active_low ? ".ZN0" : ".Z0");
}

} // namespace cubenet
