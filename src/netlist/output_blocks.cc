// The blocks of the outputs, in output order: a buffer from a rail, or the PLA or ZDOT block of the output's terms with
// the inverter of an active-low output behind it.
#include "netlist/output_blocks.h"

namespace cubenet {

namespace {

void add_block_inverter(Netlist &netlist, const OutputGate &gate) {
  open_symbol(netlist, Primitive::INV, gate.instance);
  netlist.pins.push_back({PinKind::A, 0, gate.block_net});
  netlist.pins.push_back({PinKind::ZN0, 0, gate.net});
  close_symbol(netlist);
}

void add_constant(NetlistBuilder &builder, std::uint32_t output) {
  Netlist &netlist = builder.netlist;
  const OutputGate &gate = netlist.outputs[output];
  const bool high = (builder.design.fan_out.status[output] == OUTPUT_CONSTANT) != gate.active_low;
  open_symbol(netlist, Primitive::BUF, gate.instance);
  netlist.pins.push_back({PinKind::A, 0, rail(netlist, high)});
  netlist.pins.push_back({PinKind::Z0, 0, gate.net});
  close_symbol(netlist);
}

void add_pla(NetlistBuilder &builder, std::uint32_t output) {
  Netlist &netlist = builder.netlist;
  const OutputGate &gate = netlist.outputs[output];
  const bool zdot = builder.design.olb_attributes[output].ZDOT != 0;
  open_symbol(netlist, zdot ? Primitive::ZDOT : Primitive::PLA, gate.active_low ? gate.block : gate.instance).origin =
      output;
  netlist.pins.push_back({PinKind::Z0, 0, gate.active_low ? gate.block_net : gate.net});
  close_symbol(netlist);
  if (gate.active_low) add_block_inverter(netlist, gate);
}

void add_xor(NetlistBuilder &builder, std::uint32_t output) {
  Netlist &netlist = builder.netlist;
  const OutputGate &gate = netlist.outputs[output];
  const XorGate &function = builder.connections.xor_gates[builder.connections.xor_index[output]];
  Symbol &symbol = open_symbol(netlist, Primitive::LXOR2, gate.instance);
  symbol.protect = gate.protect;
  symbol.origin = output;
  netlist.pins.push_back({PinKind::A, 0, netlist.column_nets[function.first]});
  netlist.pins.push_back({PinKind::A, 0, netlist.column_nets[function.second]});
  netlist.pins.push_back({function.inverted ? PinKind::ZN0 : PinKind::Z0, 0, gate.net});
  close_symbol(netlist);
}

} // namespace

void add_output_blocks(NetlistBuilder &builder) {
  for (std::uint32_t output = 0; output < builder.netlist.outputs.size(); output++) {
    const OutputForm form = builder.connections.forms[output];
    if (form == OutputForm::CONSTANT) add_constant(builder, output);
    if (form == OutputForm::XOR && builder.xor_place == XorPlace::WITH_OUTPUT) add_xor(builder, output);
    if (form == OutputForm::LOGIC && !builder.expand) add_pla(builder, output);
  }
}

} // namespace cubenet
