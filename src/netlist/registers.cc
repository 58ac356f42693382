// Takes one registered signal, gives its storage element and all that stands around it: operand XOR gates, inverters,
// the networks that emulate inputs which the library's primitives lack, the feedback buffers and the pad. Every
// decision follows from the signal's equations, its readers and the device series.
#include "netlist/registers.h"

#include <algorithm>
#include <array>

namespace cubenet {

namespace {

// What decides the choice of a primitive.
struct Storage {
  SignalMapper &mapper;
  bool low_series; // below 2: flip-flops without clock enable and preset
  bool inverted;   // the pin shows the complement of the storage element
  NetIndex q;      // output of the storage element
  NetIndex reset;  // kNone: none
  NetIndex preset; // kNone: none
  bool clock_enable;
  bool toggle_primitive = false;
  NetIndex data = kNone; // what the storage element takes over
};

NetIndex equation_net(SignalMapper &mapper, ExtensionCode code, std::string_view suffix) {
  return has(mapper, code) ? net_of(mapper, suffix) : kNone;
}

// The first of two synonyms that the signal has.
NetIndex either_net(SignalMapper &mapper, ExtensionCode a, std::string_view a_suffix, ExtensionCode b,
                    std::string_view b_suffix) {
  const NetIndex net = equation_net(mapper, a, a_suffix);
  return net != kNone ? net : equation_net(mapper, b, b_suffix);
}

bool is_inverted(const SignalMapper &mapper) {
  return is_pin(mapper.design, mapper.signal) &&
         test_bit(mapper.design.pin_inversion, static_cast<std::size_t>(mapper.signal));
}

// The output of the storage element is named after the way it leaves: through an inverter, into a pad, straight to a
// pin, or to its readers inside.
std::string_view q_suffix(const SignalMapper &mapper) {
  if (is_inverted(mapper)) return "_Q";
  if (has(mapper, EXT_OE)) return is_read(mapper, EXT_FB) ? "_FB" : "_Q";
  if (is_pin(mapper.design, mapper.signal)) return "_PIN";
  return is_read(mapper, EXT_Q) ? "_Q" : is_read(mapper, EXT_FB) ? "_FB" : "";
}

Storage make_storage(SignalMapper &mapper) {
  const int series = mapper.design.device_series;
  const bool toggle = has(mapper, EXT_T) || has(mapper, EXT_TX1);
  Storage storage{.mapper = mapper,
                  .low_series = series < 2,
                  .inverted = is_inverted(mapper),
                  .q = net_of(mapper, q_suffix(mapper)),
                  .reset = either_net(mapper, EXT_AR, "_AR", EXT_RE, "_RE"),
                  .preset = either_net(mapper, EXT_AP, "_AP", EXT_PR, "_PR"),
                  .clock_enable = has(mapper, EXT_CE)};
  const bool asynchronous = storage.reset != kNone || storage.preset != kNone;
  storage.toggle_primitive = toggle && series == 5 && asynchronous && !storage.clock_enable;
  return storage;
}

// A generic register on an inverted pin stores the complement of its equation, so that the pin follows it. Where
// nothing else acts on the storage element, inverting one operand of the XOR does it; else an inverter follows.
NetIndex map_generic_data(Storage &storage) {
  SignalMapper &mapper = storage.mapper;
  if (has(mapper, EXT_GX1)) {
    const bool invert_operand = storage.inverted && !has(mapper, EXT_SP) && !has(mapper, EXT_SR) &&
                                !(storage.clock_enable && storage.low_series) && storage.preset == kNone &&
                                !is_read(mapper, EXT_REG);
    const NetIndex first =
        invert_operand ? add_gate(mapper, Primitive::INV, "_REGB", {net_of(mapper, "_GX1")}) : net_of(mapper, "_GX1");
    const NetIndex data = add_gate(mapper, Primitive::LXOR2, "_REG", {first, net_of(mapper, "_GX2")});
    if (invert_operand) return data;
  }
  const NetIndex data = net_of(mapper, "_REG");
  return storage.inverted ? add_gate(mapper, Primitive::INV, "_D", {data}) : data;
}

// The wanted next value of a D, generic or toggle register before any synchronous control.
NetIndex map_data(Storage &storage) {
  SignalMapper &mapper = storage.mapper;
  if (has(mapper, EXT_DX1))
    return add_gate(mapper, Primitive::LXOR2, "_D", {net_of(mapper, "_DX1"), net_of(mapper, "_DX2")});
  if (has(mapper, EXT_D)) return net_of(mapper, "_D");
  if (has(mapper, EXT_GX1) || has(mapper, EXT_REG)) return map_generic_data(storage);
  if (has(mapper, EXT_TX1)) add_gate(mapper, Primitive::LXOR2, "_T", {net_of(mapper, "_TX1"), net_of(mapper, "_TX2")});
  const NetIndex toggle = net_of(mapper, "_T");
  const bool synchronous = has(mapper, EXT_SP) || has(mapper, EXT_SR);
  if (storage.toggle_primitive && !synchronous) return toggle;
  return add_gate(mapper, Primitive::LXOR2, "_1", {toggle, storage.q});
}

// The synchronous controls that are built from gates; kNone where there is none.
struct Emulation {
  NetIndex enable = kNone;  // series below 2: the clock enable
  NetIndex hold = kNone;    // term that keeps the value while the clock is not enabled
  NetIndex preset = kNone;  // term of the synchronous preset
  NetIndex release = kNone; // complement of the synchronous reset
};

Emulation map_controls(Storage &storage) {
  SignalMapper &mapper = storage.mapper;
  Emulation emulation;
  emulation.preset = equation_net(mapper, EXT_SP, "_SP");
  if (storage.clock_enable && storage.low_series) {
    emulation.enable = net_of(mapper, "_CE");
    const NetIndex disabled = add_gate(mapper, Primitive::INV, "_7", {emulation.enable});
    emulation.hold = add_gate(mapper, Primitive::AND, "_8", {disabled, storage.q});
    if (emulation.preset != kNone)
      emulation.preset = add_gate(mapper, Primitive::AND, "_9", {emulation.preset, emulation.enable});
  }
  if (has(mapper, EXT_SR)) emulation.release = add_gate(mapper, Primitive::INV, "_6", {net_of(mapper, "_SR")});
  return emulation;
}

// J-K: set while clear, hold while not K. S-R: set, hold while not R (so both together set).
NetIndex map_set_hold(Storage &storage, const Emulation &emulation) {
  SignalMapper &mapper = storage.mapper;
  const bool jk = has(mapper, EXT_J);
  const NetIndex keep = add_gate(mapper, Primitive::INV, "_2", {net_of(mapper, jk ? "_K" : "_R")});
  const NetIndex clear = jk ? add_gate(mapper, Primitive::INV, "_1", {storage.q}) : kNone;
  const NetIndex set = join(mapper, Primitive::AND, "_3",
                            {net_of(mapper, jk ? "_J" : "_S"), clear, emulation.release, emulation.enable});
  const NetIndex held = join(mapper, Primitive::AND, "_4", {keep, storage.q, emulation.release, emulation.enable});
  return join(mapper, Primitive::OR, "_5", {set, held, emulation.preset, emulation.hold});
}

NetIndex map_next_value(Storage &storage) {
  SignalMapper &mapper = storage.mapper;
  const bool set_hold = has(mapper, EXT_J) || has(mapper, EXT_S);
  const NetIndex data = set_hold ? kNone : map_data(storage);
  const Emulation emulation = map_controls(storage);
  if (set_hold) return map_set_hold(storage, emulation);
  const NetIndex enabled = join(mapper, Primitive::AND, "_3", {data, emulation.release, emulation.enable});
  const NetIndex next = join(mapper, Primitive::OR, "_5", {enabled, emulation.preset, emulation.hold});
  // A toggle primitive is told to toggle when the wanted value differs from the present one.
  if (storage.toggle_primitive && next != data) return add_gate(mapper, Primitive::LXOR2, "_8", {next, storage.q});
  return next;
}

struct RegisterRow {
  bool reset, preset;
  Primitive low_series, plain, enabled, toggle;
};

// clang-format off
constexpr std::array<RegisterRow, 4> kRegisters{{
    // reset  preset  series < 2        without enable    with enable        series 5 toggle
    {true,    true,   Primitive::FD21,  Primitive::FDE1,  Primitive::FDE1E,  Primitive::FTI41},
    {false,   true,   Primitive::FD21,  Primitive::FDC1,  Primitive::FDC1E,  Primitive::FTI31},
    {true,    false,  Primitive::FD21,  Primitive::FD21,  Primitive::FD21E,  Primitive::FTI21},
    {false,   false,  Primitive::FD11,  Primitive::FD11,  Primitive::FD11E,  Primitive::FD11},
}};
// clang-format on

Primitive choose_register(const Storage &storage) {
  const auto *row = std::find_if(kRegisters.begin(), kRegisters.end(), [&](const RegisterRow &each) {
    return each.reset == (storage.reset != kNone) && each.preset == (storage.preset != kNone);
  });
  if (storage.toggle_primitive) return row->toggle;
  if (storage.low_series) return row->low_series;
  return storage.clock_enable ? row->enabled : row->plain;
}

// The primitive is protected with the equation that feeds its data input.
bool is_data_protected(const SignalMapper &mapper) {
  for (int code = EXT_DX1; code <= EXT_S; code++) {
    const std::uint32_t output = mapper.equations[static_cast<std::size_t>(code)];
    if (output != kNone && mapper.design.olb_attributes[output].PROTECT != 0) return true;
  }
  return false;
}

void add_optional_pin(SignalMapper &mapper, PinKind kind, NetIndex net) {
  if (net != kNone) add_pin(mapper, kind, net);
}

// Below series 2 there is no preset: the register stores the complement, and its reset presets.
void add_flip_flop(Storage &storage) {
  SignalMapper &mapper = storage.mapper;
  const bool complement = storage.low_series && storage.preset != kNone;
  const PinKind data_pin = storage.toggle_primitive ? PinKind::T0 : PinKind::D0;
  add_symbol(mapper, choose_register(storage), "", {{data_pin, complement ? net_of(mapper, "_BD") : storage.data}})
      .protect = is_data_protected(mapper);
  add_optional_pin(mapper, PinKind::CD, complement && storage.reset == kNone ? storage.preset : storage.reset);
  if (!storage.low_series) {
    add_optional_pin(mapper, PinKind::SD, storage.preset);
    if (storage.clock_enable) add_pin(mapper, PinKind::EN, net_of(mapper, "_CE"));
  }
  add_pin(mapper, PinKind::CLK, net_of(mapper, "_C"));
  add_pin(mapper, PinKind::Q0, complement ? net_of(mapper, "_QB") : storage.q);
  if (!complement) return;
  add_gate(mapper, Primitive::INV, "_BD", {storage.data});
  add_gate_to(mapper, Primitive::INV, "_QB", {net_of(mapper, "_QB")}, storage.q);
}

void add_latch_primitive(Storage &storage) {
  SignalMapper &mapper = storage.mapper;
  if (has(mapper, EXT_LE)) add_gate(mapper, Primitive::INV, "_LH", {net_of(mapper, "_LE")});
  const bool reset = storage.reset != kNone, preset = storage.preset != kNone;
  const Primitive primitive =
      reset ? (preset ? Primitive::XDL4 : Primitive::XDL2) : (preset ? Primitive::XDL3 : Primitive::XDL1);
  add_symbol(mapper, primitive, "", {}).protect = is_data_protected(mapper);
  add_optional_pin(mapper, PinKind::CD, storage.reset);
  add_optional_pin(mapper, PinKind::SD, storage.preset);
  add_pin(mapper, PinKind::G, net_of(mapper, "_LH"));
  add_pin(mapper, PinKind::D0, storage.data);
  add_pin(mapper, PinKind::Q0, storage.q);
}

// Without asynchronous inputs in the library's latches the latch is a feedback loop: the data while the gate is open,
// the value while it is closed, and the preset; without a preset the term of data and value together covers the moment
// in which the gate closes.
void add_gate_latch(Storage &storage) {
  SignalMapper &mapper = storage.mapper;
  const bool by_le = has(mapper, EXT_LE);
  const NetIndex gate = net_of(mapper, by_le ? "_LE" : "_LH");
  const NetIndex opposite = add_gate(mapper, Primitive::INV, by_le ? "_1" : "_2", {gate});
  const NetIndex open = by_le ? opposite : gate;
  const NetIndex closed = by_le ? gate : opposite;
  const NetIndex release = storage.reset != kNone ? add_gate(mapper, Primitive::INV, "_6", {storage.reset}) : kNone;
  const NetIndex pass = join(mapper, Primitive::AND, "_3", {storage.data, open, release});
  const NetIndex hold = join(mapper, Primitive::AND, "_4", {closed, storage.q, release});
  const NetIndex third =
      storage.preset != kNone ? storage.preset : join(mapper, Primitive::AND, "_8", {storage.data, storage.q, release});
  add_gate_to(mapper, Primitive::OR, "_5", {pass, hold, third}, storage.q);
}

void add_storage(Storage &storage) {
  if (has(storage.mapper, EXT_C)) return add_flip_flop(storage);
  const bool asynchronous = storage.reset != kNone || storage.preset != kNone;
  if (storage.low_series && asynchronous) return add_gate_latch(storage);
  add_latch_primitive(storage);
}

// The net of that suffix: the given one, or a buffer from it.
NetIndex buffered(SignalMapper &mapper, std::string_view suffix, NetIndex from) {
  return net_of(mapper, suffix) == from ? from : add_gate(mapper, Primitive::BUF, suffix, {from});
}

// .Q reads the storage element; .FB reads it in the pin's polarity; the plain name reads the pin, or a node's value.
void map_outputs(Storage &storage, ReadNets &reads) {
  SignalMapper &mapper = storage.mapper;
  const bool has_pad = has(mapper, EXT_OE);
  const std::string_view outward = has_pad ? "_FB" : "_PIN"; // behind the inverter
  const NetIndex in_polarity = storage.inverted ? net_of(mapper, outward) : storage.q;
  if (is_read(mapper, EXT_Q)) reads.q = buffered(mapper, "_Q", storage.q);
  if (is_read(mapper, EXT_FB)) reads.fb = buffered(mapper, "_FB", in_polarity);
  if (storage.inverted) add_gate(mapper, Primitive::INV, outward, {storage.q});
  reads.plain = has_pad ? add_pad(mapper, in_polarity, net_of(mapper, "_OE")) : in_polarity;
}

} // namespace

ReadNets map_register(SignalMapper &mapper) {
  Storage storage = make_storage(mapper);
  storage.data = map_next_value(storage);
  ReadNets reads;
  const bool plain_data = has(mapper, EXT_D) || has(mapper, EXT_DX1);
  reads.d = plain_data ? net_of(mapper, "_D") : storage.data;
  reads.t = has(mapper, EXT_T) || has(mapper, EXT_TX1) ? net_of(mapper, "_T") : storage.data;
  reads.reg = has(mapper, EXT_REG) || has(mapper, EXT_GX1) ? net_of(mapper, "_REG") : storage.data;
  add_storage(storage);
  map_outputs(storage, reads);
  return reads;
}

} // namespace cubenet
