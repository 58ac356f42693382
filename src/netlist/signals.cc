// Takes one signal with its equations and readers, gives its nets in statement order and its symbols in print order.
// Storage elements are map_register's; here are input pins, combinational signals and what all signals share.
#include "netlist/signals.h"

#include <algorithm>

#include "netlist/macros.h"
#include "netlist/registers.h"

namespace cubenet {

namespace {

struct OutputSuffix {
  std::string_view net;   // of an equation with that extension
  std::string_view block; // of the block in front of its inverter
};

// clang-format off
constexpr std::array<OutputSuffix, kExtensionCodes> kOutputSuffixes{{ // .Q, .FB and .PIN are no outputs
    {"", "_B"},        {"_X1", "_X1B"},   {"_X2", "_X2B"},   {"_DX1", "_DX1B"}, {"_DX2", "_DX2B"}, {"_GX1", "_GX1B"},
    {"_GX2", "_GX2B"}, {"_TX1", "_TX1B"}, {"_TX2", "_TX2B"}, {"_D", "_DB"},     {"_REG", "_REGB"}, {"_T", "_TB"},
    {"_J", "_JB"},     {"_K", "_KB"},     {"_R", "_RB"},     {"_S", "_SB"},     {"_C", "_CB"},     {"_LH", "_LHB"},
    {"_LE", "_LEB"},   {"_CE", "_CEB"},   {"_SP", "_SPB"},   {"_SR", "_SRB"},   {"_AR", "_ARB"},   {"_RE", "_REB"},
    {"", ""},          {"", ""},          {"_OE", "_OEB"},   {"", ""},          {"_AP", "_APB"},   {"_PR", "_PRB"},
}};

// The statements of one signal's nets: what goes into it, then what comes out. A block's net stands before the net of
// the inverter behind it.
constexpr std::array<std::string_view, 64> kRegisterStatements{
    "_CB", "_C", "_LEB", "_LE", "_LHB", "_LH", "_ARB", "_AR", "_REB", "_RE", "_APB", "_AP", "_PRB", "_PR", "_CEB", "_CE",
    "_SPB", "_SP", "_SRB", "_SR", "_DB", "_D", "_REGB", "_REG", "_TB", "_T", "_JB", "_J", "_KB", "_K", "_SB", "_S", "_RB", "_R",
    "_DX1B", "_DX1", "_DX2B", "_DX2", "_GX1B", "_GX1", "_GX2B", "_GX2", "_TX1B", "_TX1", "_TX2B", "_TX2",
    "_1", "_2", "_3", "_4", "_5", "_6", "_7", "_8", "_9", "_BD", "_QB", "_Q", "_FB", "_PIN", "_OEB", "_OE", "_Z", ""};
constexpr std::array<std::string_view, 11> kCombinationalStatements{
    "_X1B", "_X1", "_X2B", "_X2", "_OEB", "_OE", "_B", "_D", "_H", "_Z", "_PIN"};
// clang-format on

template <std::size_t Size>
constexpr std::size_t rank_of(const std::array<std::string_view, Size> &order, std::string_view suffix) {
  return static_cast<std::size_t>(std::find(order.begin(), order.end(), suffix) - order.begin());
}

constexpr bool has_place(std::string_view suffix) {
  return suffix.empty() || rank_of(kRegisterStatements, suffix) < kRegisterStatements.size() ||
         rank_of(kCombinationalStatements, suffix) < kCombinationalStatements.size();
}
static_assert(std::all_of(kOutputSuffixes.begin(), kOutputSuffixes.end(),
                          [](const OutputSuffix &each) { return has_place(each.net) && has_place(each.block); }));

// Combinational: the signal's own equation, or its XOR pair, drives it.
bool has_equation(const SignalMapper &mapper) { return has(mapper, EXT_NONE) || has(mapper, EXT_X1); }

// Where nobody reads the output and it only passes a tristate node on, its pad stands without an enable.
bool is_feed(const SignalMapper &mapper) {
  const std::uint32_t output = mapper.equations[EXT_NONE];
  return is_pin(mapper.design, mapper.signal) && output != kNone && mapper.design.fan_out.oe_feed[output] != 0 &&
         !is_pin_read(mapper);
}

// What the gate of a combinational signal drives: a buffer's data, the pin itself, or a node.
std::string_view value_suffix(const SignalMapper &mapper) {
  if (has(mapper, EXT_OE) || is_feed(mapper)) return "_D";
  return is_pin(mapper.design, mapper.signal) ? "_PIN" : "";
}

ReadNets map_input_pin(SignalMapper &mapper) {
  if (!is_pin_read(mapper)) return {};
  const NetIndex outside = net_of(mapper, "");
  mapper.netlist.nets[outside].kind = NetKind::EXTERNAL_INPUT;
  mapper.netlist.external_pins.push_back({mapper.signal, Direction::IN, outside});
  return {.plain = outside, .d = outside};
}

ReadNets map_combinational(SignalMapper &mapper, bool from_macro) {
  const NetIndex value = net_of(mapper, value_suffix(mapper));
  if (has(mapper, EXT_X1))
    add_symbol(mapper, Primitive::LXOR2, "",
               {{PinKind::A, net_of(mapper, "_X1")}, {PinKind::A, net_of(mapper, "_X2")}, {PinKind::Z0, value}});
  if (from_macro && is_pin(mapper.design, mapper.signal))
    add_gate_to(mapper, Primitive::BUF, "_D", {net_of(mapper, "_H")}, value);
  NetIndex read = value;
  if (has(mapper, EXT_OE))
    read = add_pad(mapper, value, net_of(mapper, "_OE"));
  else if (is_feed(mapper))
    read = add_pad(mapper, value, kNone);
  return {.plain = read, .d = read};
}

// A pin without a pad is driven straight by the net that its readers read.
void add_direct_pin(SignalMapper &mapper) {
  const std::vector<ExternalPin> &placed = mapper.netlist.external_pins;
  if (!placed.empty() && placed.back().pin == mapper.signal) return;
  const NetIndex net = net_of(mapper, "_PIN");
  mapper.netlist.nets[net].kind = NetKind::EXTERNAL_OUTPUT;
  mapper.netlist.external_pins.push_back({mapper.signal, Direction::OUT, net});
}

// Which equations the signal has, and who reads it in which form.
void gather_roles(const NetlistBuilder &builder, SignalMapper &mapper) {
  const Design &design = builder.design;
  mapper.equations.fill(kNone);
  for_each_entry(builder.outputs, mapper.signal,
                 [&](std::uint32_t output) { mapper.equations[extension_code(design.OB_EXT[output])] = output; });
  for_each_entry(builder.columns, mapper.signal, [&](std::uint32_t column) {
    if (design.fan_out.fans_out[column] != 0) mapper.reads |= 1U << extension_code(design.IB_EXT[column]);
  });
  mapper.reads |= macro_reads(builder, mapper.signal);
}

void place_outputs(NetlistBuilder &builder, SignalMapper &mapper) {
  for (std::size_t code = 0; code < kExtensionCodes; code++) {
    const std::uint32_t output = mapper.equations[code];
    if (output == kNone) continue;
    OutputGate &gate = builder.netlist.outputs[output];
    gate.instance = {mapper.base, kOutputSuffixes[code].net};
    gate.block = {mapper.base, kOutputSuffixes[code].block};
    gate.active_low = test_bit(builder.design.output_inversion, output);
    gate.protect = builder.design.olb_attributes[output].PROTECT != 0;
    gate.net = net_of(mapper, code == EXT_NONE ? value_suffix(mapper) : kOutputSuffixes[code].net);
    if (builder.connections.forms[output] != OutputForm::LOGIC) continue;
    if (builder.expand)
      builder.netlist.nets[gate.net].source_output = output;
    else if (gate.active_low)
      gate.block_net = net_of(mapper, kOutputSuffixes[code].block);
  }
}

void add_xor_gates(NetlistBuilder &builder, SignalMapper &mapper) {
  for_each_entry(builder.outputs, mapper.signal, [&](std::uint32_t output) {
    if (builder.connections.forms[output] != OutputForm::XOR) return;
    const OutputGate &gate = builder.netlist.outputs[output];
    const XorGate &function = builder.connections.xor_gates[builder.connections.xor_index[output]];
    const PinKind out = function.inverted ? PinKind::ZN0 : PinKind::Z0;
    Symbol &symbol = add_symbol(mapper, Primitive::LXOR2, gate.instance.suffix,
                                {{PinKind::A, kNone}, {PinKind::A, kNone}, {out, gate.net}});
    symbol.protect = gate.protect;
    symbol.origin = output;
  });
}

void order_statements(SignalMapper &mapper, bool registered) {
  const auto rank = [&](std::string_view suffix) {
    return registered ? rank_of(kRegisterStatements, suffix) : rank_of(kCombinationalStatements, suffix);
  };
  std::sort(mapper.nets.begin(), mapper.nets.end(),
            [&](const auto &a, const auto &b) { return rank(a.first) < rank(b.first); });
  for (const auto &[suffix, net] : mapper.nets) mapper.netlist.statements.push_back(net);
}

} // namespace

bool is_made_suffix(std::string_view suffix) { return !suffix.empty() && has_place(suffix); }

void connect_xor_gates(NetlistBuilder &builder) {
  for (const Symbol &symbol : builder.signal_symbols) {
    if (symbol.primitive != Primitive::LXOR2 || symbol.origin == kNone) continue;
    const XorGate &function = builder.connections.xor_gates[builder.connections.xor_index[symbol.origin]];
    builder.netlist.pins[symbol.first_pin].net = builder.netlist.column_nets[function.first];
    builder.netlist.pins[symbol.first_pin + 1].net = builder.netlist.column_nets[function.second];
  }
}

void map_signal(NetlistBuilder &builder, SignalIndex signal) {
  const Design &design = builder.design;
  SignalMapper mapper{design, builder.netlist, builder.signal_symbols, signal, signal_name(design, signal)};
  gather_roles(builder, mapper);
  const std::uint32_t use_flags = signal_flags(design, signal).use_flags;
  const bool registered = (use_flags & F_FF) != 0;
  // .D of a combinational signal is the signal.
  if (!registered && is_read(mapper, EXT_D)) mapper.reads |= 1U << EXT_NONE;
  const MacroPin *driver = registered || has_equation(mapper) ? nullptr : find_macro_driver(builder, signal);
  const bool pin = is_pin(design, signal);
  ReadNets reads;
  if (pin && (use_flags & F_IO) == 0 && driver == nullptr) {
    reads = map_input_pin(mapper);
  } else {
    place_outputs(builder, mapper);
    if (builder.xor_place == XorPlace::WITH_SIGNAL) add_xor_gates(builder, mapper);
    reads = registered ? map_register(mapper) : map_combinational(mapper, driver != nullptr);
    if (pin) add_direct_pin(mapper);
  }
  for_each_entry(builder.columns, signal, [&](std::uint32_t column) {
    if (design.fan_out.fans_out[column] != 0)
      builder.netlist.column_nets[column] = read_net(reads, extension_code(design.IB_EXT[column]));
  });
  connect_macro_pins(builder, mapper, reads, driver);
  order_statements(mapper, registered);
}

} // namespace cubenet
