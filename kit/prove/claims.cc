// Every value that a reader of the design can name becomes a variable: device inputs, storage elements,
// equations, pads and macro outputs. Each equation is then one claim over them, each storage element a few
// claims over its equations, so that no proof has to look further than one signal.
#include "kit/prove/claims.h"

#include <unordered_set>

#include "model/bit_set.h"

namespace cubekit {

using cubenet::display_name;
using cubenet::Instance;
using cubenet::netlist_name;
using enum cubenet::ExtensionCode;

namespace {

struct Collector {
  const std::vector<std::string> &names;
  Values &values;
  Circuit &circuit;
  Claims &claims;
  const Netlist &netlist = circuit.netlist;
  const Meaning &meaning = circuit.meaning;
  std::vector<SymbolIndex> storage{}; // per signal: flip-flop, latch, or last gate of a latch of gates
  std::vector<SymbolIndex> pads{};    // per signal
  std::vector<SymbolIndex> macros{};  // per instance
};

const std::string &name_at(const Collector &collector, SignalIndex signal) {
  return collector.names[static_cast<std::size_t>(signal)];
}

// The signal's name as the user knows it.
const std::string &shown(const Collector &collector, SignalIndex signal) {
  return signal_name(*collector.meaning.design, signal);
}

void add_claim(Collector &collector, std::string what, Literal actual, Literal wanted, NetIndex net = kNone,
               bool at_driver = false) {
  add_claim(collector.claims, {std::move(what), actual, wanted, net, at_driver});
}

SymbolIndex find_of(const Collector &collector, const std::string &instance, Function function) {
  const SymbolIndex symbol = find_symbol(collector.netlist, instance);
  return symbol != kNone && primitive_of(collector.netlist.symbols[symbol]).function == function ? symbol : kNone;
}

Literal new_value(Collector &collector, std::string name, NetIndex net) {
  const Literal value = make_variable(collector.values.formulas, std::move(name));
  if (net == kNone) return value;
  if (collector.circuit.values[net] != kUnset)
    collector.claims.faults.push_back("net '" + std::string(collector.netlist.nets[net].name) +
                                      "' stands for two different values");
  collector.circuit.values[net] = value;
  return value;
}

// Device inputs, and the values after pads and tristate buffers.
void place_outside(Collector &collector, SignalIndex signal) {
  const auto at = static_cast<std::size_t>(signal);
  const SymbolIndex pad = collector.pads[at];
  const bool has_enable = has(collector.meaning.signals[at], EXT_OE);
  NetIndex net = kNone;
  if (pad != kNone) {
    const NetIndex inside = net_at(collector.netlist, pad, "Z0"), bus = net_at(collector.netlist, pad, "O0");
    net = inside != kNone ? inside : bus;
  } else if (const std::uint32_t pin = find_name(collector.netlist.external_by_pin, name_at(collector, signal));
             pin != kNone && !has_enable) {
    const ExternalPin &external = collector.netlist.external_pins[pin];
    if (external.direction == Direction::IN) net = external.net;
  }
  collector.values.outside[at] = new_value(collector, shown(collector, signal), net);
}

// The storage element carries the signal's name; a latch made of gates ends in the OR gate N_5. With a reset
// that has to act as a preset the element stores the complement, on net N_QB.
void place_storage(Collector &collector, SignalIndex signal) {
  const auto at = static_cast<std::size_t>(signal);
  const std::string &name = name_at(collector, signal);
  SymbolIndex symbol = find_symbol(collector.netlist, name);
  if (symbol != kNone && !is_storage(primitive_of(collector.netlist.symbols[symbol]).function)) symbol = kNone;
  const char *output = "Q0";
  if (symbol == kNone && !is_flip_flop(collector.meaning.signals[at])) {
    symbol = find_of(collector, name + "_5", Function::OR);
    output = "Z0";
  }
  collector.storage[at] = symbol;
  const NetIndex net = symbol == kNone ? kNone : net_at(collector.netlist, symbol, output);
  if (net == kNone)
    collector.claims.faults.push_back("there is no storage element for '" + shown(collector, signal) + "'");
  const bool complement = symbol != kNone && holds_complement(collector.netlist, symbol);
  collector.values.storage[at] = invert(new_value(collector, shown(collector, signal) + ".Q", net), complement);
}

// An equation drives the net with its name; a plain one drives that of the signal, the pin, or the pad's
// input.
NetIndex equation_net(const Collector &collector, std::size_t output) {
  const SignalIndex signal = collector.meaning.outputs[output];
  const std::string &name = name_at(collector, signal), &extension = collector.meaning.design->OB_EXT[output];
  if (!extension.empty()) return find_net(collector.netlist, netlist_name(name, extension));
  const char *suffix = collector.pads[static_cast<std::size_t>(signal)] != kNone         ? "_D"
                       : collector.meaning.signals[static_cast<std::size_t>(signal)].pin ? "_PIN"
                                                                                         : "";
  return find_net(collector.netlist, name + suffix);
}

void place_equations(Collector &collector) {
  const Design &design = *collector.meaning.design;
  for (std::size_t o = 0; o < collector.meaning.outputs.size(); o++) {
    const NetIndex net = equation_net(collector, o);
    const std::string shown_name = display_name(design.OLB[o], design.OB_EXT[o]);
    if (net == kNone) collector.claims.faults.push_back("there is no net for equation '" + shown_name + "'");
    collector.values.equations[o] = new_value(collector, shown_name, net);
    if (net == kNone) continue;
    // The block itself, or the block before the inverter.
    SymbolIndex block = driver_of(collector.netlist, net);
    if (block != kNone && collector.netlist.symbols[block].primitive == find_primitive("INV")) {
      const NetIndex before = net_at(collector.netlist, block, "A0");
      block = before == kNone ? kNone : driver_of(collector.netlist, before);
    }
    if (block != kNone && collector.netlist.symbols[block].primitive == find_primitive("ZDOT"))
      collector.circuit.zdot_outputs[block] = static_cast<std::uint32_t>(o);
  }
}

// Of instances with the same name, all but the first got a number as a suffix, in order.
void place_macros(Collector &collector) {
  std::vector<SymbolIndex> in_order;
  for (SymbolIndex s = 0; s < collector.netlist.symbols.size(); s++)
    if (is_macro(collector.netlist.symbols[s])) in_order.push_back(s);
  std::unordered_set<std::string_view> names;
  for (const Instance &instance : collector.meaning.design->instances) {
    SymbolIndex found = find_of(collector, instance.name, Function::MACRO);
    if (const std::size_t place = collector.macros.size(); !names.insert(instance.name).second) {
      found = place < in_order.size() ? in_order[place] : kNone;
      if (found != kNone && !collector.netlist.symbols[found].instance.starts_with(instance.name + "_")) found = kNone;
    }
    collector.macros.push_back(found);
  }
}

void place_ports(Collector &collector) {
  const Design &design = *collector.meaning.design;
  for (std::size_t p = 0; p < collector.meaning.ports.size(); p++) {
    const MacroPort &port = collector.meaning.ports[p];
    if (!port.output) continue;
    const std::string &instance = design.instances[port.instance].name;
    const SymbolIndex symbol = collector.macros[port.instance];
    const NetIndex net = symbol == kNone ? kNone : net_at(collector.netlist, symbol, port.port);
    collector.values.ports[p] = new_value(collector, instance + "." + port.port, net);
  }
}

void claim_equations(Collector &collector) {
  const Design &design = *collector.meaning.design;
  const std::vector<Literal> wanted = wanted_equations(collector.meaning, collector.values);
  for (std::size_t o = 0; o < wanted.size(); o++) {
    const NetIndex net = equation_net(collector, o);
    if (net == kNone) continue;
    add_claim(collector, display_name(design.OLB[o], design.OB_EXT[o]), driver_value(collector.circuit, net), wanted[o],
              net, true);
  }
}

bool is_complement(const Collector &collector, std::size_t signal) {
  return is_inverted(collector.values.storage[signal]);
}

// A reader of N.D, where there is no such equation, sees the element's data input.
void place_data_inputs(Collector &collector) {
  for (std::size_t i = 0; i < collector.storage.size(); i++) {
    const SymbolIndex symbol = collector.storage[i];
    if (symbol == kNone || !is_storage(primitive_of(collector.netlist.symbols[symbol]).function)) continue;
    if (const NetIndex net = data_net(collector.netlist, symbol); net != kNone)
      collector.values.data_inputs[i] = invert(net_value(collector.circuit, net), is_complement(collector, i));
  }
}

void claim_storage(Collector &collector, std::size_t signal) {
  const SymbolIndex symbol = collector.storage[signal];
  if (symbol == kNone) return;
  const auto index = static_cast<SignalIndex>(signal);
  const Literal storage = collector.values.storage[signal];
  const NextValue wanted = next_value(collector.meaning, collector.values, index);
  claim_element(collector.circuit, {shown(collector, index), symbol, storage},
                is_flip_flop(collector.meaning.signals[signal]), wanted, collector.claims);
}

// The signal's output: at its pin, at its pad, or at the tristate buffer of a node.
void claim_output(Collector &collector, SignalIndex signal) {
  const auto at = static_cast<std::size_t>(signal);
  const SignalRoles &roles = collector.meaning.signals[at];
  const std::string &name = shown(collector, signal);
  const Literal wanted = output_value(collector.meaning, collector.values, signal);
  const SymbolIndex pad = collector.pads[at];
  if (pad != kNone) {
    const bool enabled = has(roles, EXT_OE);
    add_claim(collector, name + ": into the output buffer", pin_value(collector.circuit, pad, "A0"), wanted,
              net_at(collector.netlist, pad, "A0"));
    add_claim(collector, name + ": output enable", pin_value(collector.circuit, pad, "OE", kTrue),
              enabled ? collector.values.equations[roles.equations[EXT_OE]] : kTrue,
              net_at(collector.netlist, pad, "OE"));
  } else if (has(roles, EXT_OE)) {
    collector.claims.faults.push_back("'" + name + "' has an output enable and no tristate buffer");
  }
  if (!roles.pin) return;
  const std::uint32_t found = find_name(collector.netlist.external_by_pin, name_at(collector, signal));
  if (found == kNone) {
    collector.claims.faults.push_back("output pin '" + name + "' has no XPIN line");
    return;
  }
  const ExternalPin &external = collector.netlist.external_pins[found];
  if (pad == kNone) {
    add_claim(collector, name + ": at the pin",
              external.net == kNone ? kUnset : net_value(collector.circuit, external.net), wanted, external.net);
    if (external.direction != Direction::OUT) collector.claims.faults.push_back("pin '" + name + "' is not an output");
    return;
  }
  const NetIndex bidirectional = net_at(collector.netlist, pad, "XB0"), output = net_at(collector.netlist, pad, "XO0");
  const bool is_bidirectional = bidirectional != kNone;
  if (external.net != (is_bidirectional ? bidirectional : output))
    collector.claims.faults.push_back("pin '" + name + "' is not at its pad");
  if (external.direction != (is_bidirectional ? Direction::BIDI : Direction::OUT))
    collector.claims.faults.push_back("pin '" + name + "' has the wrong direction for its pad");
}

void claim_ports(Collector &collector) {
  const Design &design = *collector.meaning.design;
  for (const MacroPort &port : collector.meaning.ports) {
    if (port.output) continue;
    const std::string &instance = design.instances[port.instance].name;
    const SymbolIndex symbol = collector.macros[port.instance];
    const NetIndex net = symbol == kNone ? kNone : net_at(collector.netlist, symbol, port.port);
    const Literal wanted = port_value(collector.meaning, collector.values, port);
    if (wanted == kUnset) continue; // an undriven net
    add_claim(collector, instance + "." + port.port, net == kNone ? kUnset : net_value(collector.circuit, net), wanted,
              net);
  }
}

bool is_output(const SignalRoles &roles) {
  if (roles.macro_output != kNone) return true;
  for (const std::uint32_t equation : roles.equations)
    if (equation != kNone) return true;
  return false;
}

// Pins of the netlist that the design doesn't have or use.
void find_strange_pins(Collector &collector) {
  NameIndex pins;
  for (std::size_t i = 0; i < collector.names.size(); i++)
    if (collector.meaning.signals[i].pin && collector.meaning.signals[i].used)
      add_name(pins, collector.names[i], static_cast<std::uint32_t>(i));
  for (const ExternalPin &external : collector.netlist.external_pins)
    if (find_name(pins, external.pin) == kNone)
      collector.claims.faults.push_back("the design has no pin '" + std::string(external.pin) + "'");
}

} // namespace

NetIndex data_net(const Netlist &netlist, SymbolIndex symbol) {
  const NetIndex data = net_at(netlist, symbol, "D0");
  return data != kNone ? data : net_at(netlist, symbol, "T0");
}

bool holds_complement(const Netlist &netlist, SymbolIndex symbol) {
  const NetIndex net = net_at(netlist, symbol, "Q0");
  return net != kNone && netlist.nets[net].name == std::string(netlist.symbols[symbol].instance) + "_QB";
}

Literal level_value(Formulas &formulas, const NextValue &next, Literal storage) {
  const Literal kept = make_choice(formulas, next.event, next.next, storage);
  return make_and(formulas, {invert(next.cleared), make_or(formulas, {next.set, kept})});
}

NextValue element_value(Circuit &circuit, const Element &element) {
  const auto &[name, symbol, storage] = element;
  Formulas &formulas = circuit.formulas;
  const bool complement = holds_complement(circuit.netlist, symbol);
  const Literal held = invert(storage, complement);
  const Literal clear = pin_value(circuit, symbol, "CD", kFalse), set = pin_value(circuit, symbol, "SD", kFalse);
  const bool flip_flop = primitive_of(circuit.netlist.symbols[symbol]).function == Function::FLIP_FLOP;
  NextValue result;
  result.event = pin_value(circuit, symbol, flip_flop ? "CLK" : "G");
  const Literal data = pin_value(circuit, symbol, "D0");
  const Literal toggle = pin_value(circuit, symbol, "T0");
  result.next = data != kUnset ? data : toggle != kUnset ? make_xor(formulas, held, toggle) : kUnset;
  if (result.next == kUnset) return result;
  if (flip_flop) result.next = make_choice(formulas, pin_value(circuit, symbol, "EN", kTrue), result.next, held);
  result.next = invert(result.next, complement);
  const Literal set_only = make_and(formulas, {set, invert(clear)});
  result.cleared = complement ? set_only : clear;
  result.set = complement ? clear : set_only;
  return result;
}

void add_claim(Claims &claims, Claim claim) {
  if (claim.actual == kUnset)
    claims.faults.push_back(claim.what + ": the netlist has nothing there");
  else if (claim.wanted == kUnset)
    claims.faults.push_back(claim.what + ": the design says nothing of it");
  else
    claims.list.push_back(std::move(claim));
}

void claim_element(Circuit &circuit, const Element &element, bool flip_flop, const NextValue &wanted, Claims &claims) {
  const auto &[name, symbol, storage] = element;
  const Netlist &netlist = circuit.netlist;
  Formulas &formulas = circuit.formulas;
  const PrimitiveRow &primitive = primitive_of(netlist.symbols[symbol]);
  const auto set_only = [&](const NextValue &next) { return make_and(formulas, {next.set, invert(next.cleared)}); };
  if (flip_flop != (primitive.function == Function::FLIP_FLOP)) {
    claims.faults.push_back("'" + name + "' has the wrong storage element, " + std::string(primitive.name));
    return;
  }
  if (primitive.function == Function::OR) {
    const NetIndex net = net_at(netlist, symbol, "Z0");
    return add_claim(claims,
                     {name + ": latch", driver_value(circuit, net), level_value(formulas, wanted, storage), net, true});
  }
  const NextValue actual = element_value(circuit, element);
  const NetIndex data = data_net(netlist, symbol);
  if (actual.event == kUnset || actual.next == kUnset) {
    add_claim(claims, {name + ": storage element"});
  } else if (flip_flop) {
    add_claim(claims, {name + ": clock", actual.event, wanted.event, net_at(netlist, symbol, "CLK")});
    add_claim(claims, {name + ": asynchronous reset", actual.cleared, wanted.cleared, net_at(netlist, symbol, "CD")});
    add_claim(claims,
              {name + ": asynchronous preset", set_only(actual), set_only(wanted), net_at(netlist, symbol, "SD")});
    add_claim(claims, {name + ": next value", actual.next, wanted.next, data});
  } else {
    add_claim(claims,
              {name + ": latch", level_value(formulas, actual, storage), level_value(formulas, wanted, storage), data});
  }
}

void collect_claims(const std::vector<std::string> &names, Values &values, Circuit &circuit, Claims &claims) {
  Collector collector{names, values, circuit, claims};
  const std::vector<SignalRoles> &signals = collector.meaning.signals;
  collector.storage.assign(signals.size(), kNone);
  collector.pads.assign(signals.size(), kNone);
  clear_values(collector.meaning, values);
  for (std::size_t i = 0; i < signals.size(); i++) {
    if (!signals[i].used) continue;
    const auto signal = static_cast<SignalIndex>(i);
    collector.pads[i] = find_of(collector, names[i] + "_Z", signals[i].pin ? Function::PAD : Function::TRISTATE);
    place_outside(collector, signal);
    if (is_registered(signals[i])) place_storage(collector, signal);
  }
  place_equations(collector);
  place_macros(collector);
  place_ports(collector);
  place_data_inputs(collector);
  claim_equations(collector);
  for (std::size_t i = 0; i < signals.size(); i++) {
    if (!signals[i].used) continue;
    claim_storage(collector, i);
    if (is_output(signals[i])) claim_output(collector, static_cast<SignalIndex>(i));
  }
  claim_ports(collector);
  find_strange_pins(collector);
  if (!circuit.fault.empty()) claims.faults.push_back(circuit.fault);
}

} // namespace cubekit
