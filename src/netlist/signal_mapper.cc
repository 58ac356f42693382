// The bricks of the signal mapping: nets by suffix, symbols with their pins, gates, and pads.
#include "netlist/signal_mapper.h"

#include <algorithm>

namespace cubenet {

NetIndex read_net(const ReadNets &reads, ExtensionCode code) {
  switch (code) {
  case EXT_Q: return reads.q;
  case EXT_FB: return reads.fb;
  case EXT_D: return reads.d;
  case EXT_T: return reads.t;
  case EXT_REG: return reads.reg;
  case EXT_NONE:
  case EXT_PIN: return reads.plain;
  default: return kNone;
  }
}

NetIndex net_of(SignalMapper &mapper, std::string_view suffix) {
  for (const auto &[known, net] : mapper.nets)
    if (known == suffix) return net;
  const auto net = static_cast<NetIndex>(mapper.netlist.nets.size());
  mapper.netlist.nets.push_back({.name = {mapper.base, suffix}});
  mapper.nets.emplace_back(suffix, net);
  return net;
}

void add_pin(SignalMapper &mapper, PinKind kind, NetIndex net) {
  Symbol &symbol = mapper.symbols.back();
  mapper.netlist.pins.push_back({kind, 0, net});
  symbol.pin_count++;
}

Symbol &add_symbol(SignalMapper &mapper, Primitive primitive, std::string_view suffix,
                   std::initializer_list<PinSpec> pins) {
  Symbol symbol;
  symbol.primitive = primitive;
  symbol.instance = {mapper.base, suffix};
  symbol.first_pin = static_cast<std::uint32_t>(mapper.netlist.pins.size());
  mapper.symbols.push_back(symbol);
  for (const PinSpec &pin : pins) add_pin(mapper, pin.kind, pin.net);
  return mapper.symbols.back();
}

namespace {

void add_inputs_and_output(SignalMapper &mapper, Primitive primitive, std::string_view suffix,
                           std::initializer_list<NetIndex> inputs, NetIndex output) {
  add_symbol(mapper, primitive, suffix, {});
  for (const NetIndex input : inputs)
    if (input != kNone) add_pin(mapper, PinKind::A, input);
  add_pin(mapper, is_inverting(primitive) ? PinKind::ZN0 : PinKind::Z0, output);
}

} // namespace

NetIndex add_gate(SignalMapper &mapper, Primitive primitive, std::string_view suffix,
                  std::initializer_list<NetIndex> inputs) {
  const NetIndex output = net_of(mapper, suffix);
  add_inputs_and_output(mapper, primitive, suffix, inputs, output);
  return output;
}

void add_gate_to(SignalMapper &mapper, Primitive primitive, std::string_view suffix,
                 std::initializer_list<NetIndex> inputs, NetIndex output) {
  add_inputs_and_output(mapper, primitive, suffix, inputs, output);
}

NetIndex join(SignalMapper &mapper, Primitive primitive, std::string_view suffix,
              std::initializer_list<NetIndex> inputs) {
  const auto there = std::count_if(inputs.begin(), inputs.end(), [](NetIndex net) { return net != kNone; });
  if (there == 1) return *std::find_if(inputs.begin(), inputs.end(), [](NetIndex net) { return net != kNone; });
  return add_gate(mapper, primitive, suffix, inputs);
}

NetIndex add_pad(SignalMapper &mapper, NetIndex data, NetIndex enable) {
  if (!is_pin(mapper.design, mapper.signal)) {
    const NetIndex out = net_of(mapper, "_Z");
    add_symbol(mapper, Primitive::IT11, "_Z", {{PinKind::A, data}, {PinKind::OE, enable}, {PinKind::O0, out}});
    return out;
  }
  const bool bidirectional = is_pin_read(mapper);
  add_symbol(mapper, bidirectional ? Primitive::XBIDI1 : Primitive::XTRI1, "_Z", {{PinKind::A, data}}).origin =
      static_cast<std::uint32_t>(mapper.signal);
  if (enable != kNone) add_pin(mapper, PinKind::OE, enable);
  const NetIndex outside = net_of(mapper, "");
  mapper.netlist.nets[outside].kind = bidirectional ? NetKind::EXTERNAL_INPUT : NetKind::EXTERNAL_OUTPUT;
  add_pin(mapper, bidirectional ? PinKind::XB0 : PinKind::XO0, outside);
  mapper.netlist.external_pins.push_back({mapper.signal, bidirectional ? Direction::BIDI : Direction::OUT, outside});
  if (!bidirectional) return kNone;
  const NetIndex inside = net_of(mapper, "_PIN");
  add_pin(mapper, PinKind::Z0, inside);
  return inside;
}

} // namespace cubenet
