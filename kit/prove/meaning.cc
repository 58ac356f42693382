// Gathers the roles of a design's signals and builds the functions that its netlist must have. Nothing here
// knows how a netlist is made.
#include "kit/prove/meaning.h"

#include <algorithm>

namespace cubekit {

using cubenet::Connection;
using cubenet::display_name;
using cubenet::extension_code;
using cubenet::Instance;
using cubenet::kNoSignal;
using cubenet::Macro;
using cubenet::netlist_name;
using cubenet::upper_case;
using enum cubenet::ExtensionCode;

namespace {

// The data inputs of registers and latches.
constexpr ExtensionCode kDataInputs[] = {EXT_D,   EXT_REG, EXT_T,   EXT_J,   EXT_K,   EXT_R,  EXT_S,
                                         EXT_DX1, EXT_DX2, EXT_GX1, EXT_GX2, EXT_TX1, EXT_TX2};

NameIndex index_signals(const Design &design) {
  NameIndex names;
  for (SignalIndex i = 0; i < signal_count(design); i++)
    if (!signal_name(design, i).empty()) add_name(names, signal_name(design, i), static_cast<std::uint32_t>(i));
  return names;
}

SignalIndex find_signal(const NameIndex &names, const std::string &name) {
  const std::uint32_t found = find_name(names, name);
  return found == kNone ? kNoSignal : static_cast<SignalIndex>(found);
}

bool gather_lists(Meaning &meaning, const NameIndex &names, std::string &error) {
  const Design &design = *meaning.design;
  for (std::size_t i = 0; i < design.ILB.size(); i++) {
    meaning.columns.push_back(find_signal(names, design.ILB[i]));
    if (meaning.columns.back() == kNoSignal) return error = "signal '" + design.ILB[i] + "' is not declared", false;
    meaning.signals[static_cast<std::size_t>(meaning.columns.back())].used = true;
  }
  for (std::size_t o = 0; o < design.OLB.size(); o++) {
    meaning.outputs.push_back(find_signal(names, design.OLB[o]));
    const ExtensionCode code = extension_code(design.OB_EXT[o]);
    const bool known = code <= EXT_PR && code != EXT_Q && code != EXT_FB && code != EXT_PIN;
    if (meaning.outputs.back() == kNoSignal || !known)
      return error = "'" + display_name(design.OLB[o], design.OB_EXT[o]) + "' can't be an output", false;
    SignalRoles &roles = meaning.signals[static_cast<std::size_t>(meaning.outputs.back())];
    roles.used = true;
    if (has(roles, code))
      return error = "'" + display_name(design.OLB[o], design.OB_EXT[o]) + "' has two equations", false;
    roles.equations[code] = static_cast<std::uint32_t>(o);
  }
  return true;
}

void gather_ports(Meaning &meaning, const NameIndex &names) {
  const Design &design = *meaning.design;
  const auto add = [&](std::size_t instance, const std::string &port, const Connection &connection, bool output) {
    const SignalIndex signal = find_signal(names, connection.name);
    const auto index = static_cast<std::uint32_t>(meaning.ports.size());
    meaning.ports.push_back({instance, port, output, &connection, signal});
    if (signal != kNoSignal) {
      SignalRoles &roles = meaning.signals[static_cast<std::size_t>(signal)];
      roles.used = true;
      const ExtensionCode code = extension_code(upper_case(connection.pin_part));
      if (output && roles.macro_output == kNone && (code == EXT_NONE || code == EXT_PIN)) roles.macro_output = index;
    } else if (output) {
      meaning.plain_nets.emplace(netlist_name(connection.name, connection.pin_part), index);
    }
  };
  for (std::size_t i = 0; i < design.instances.size(); i++) {
    const Instance &instance = design.instances[i];
    const Macro &macro = design.macros[instance.macro];
    for (std::size_t p = 0; p < instance.inputs.size(); p++) add(i, macro.inputs[p], instance.inputs[p], false);
    for (std::size_t p = 0; p < instance.outputs.size(); p++) add(i, macro.outputs[p], instance.outputs[p], true);
  }
}

void gather_terms(Meaning &meaning) {
  const CubeTable &cubes = *meaning.cubes;
  meaning.starts.assign(meaning.design->OLB.size() + 1, 0);
  for (std::size_t c = 0; c < cubes.NUM_CUBES; c++)
    for_each_output(cubes, cube(cubes, c), [&](std::size_t output) { meaning.starts[output + 1]++; });
  for (std::size_t o = 1; o < meaning.starts.size(); o++) meaning.starts[o] += meaning.starts[o - 1];
  meaning.terms.resize(meaning.starts.back());
  std::vector<std::uint32_t> next(meaning.starts.begin(), meaning.starts.end() - 1);
  for (std::size_t c = 0; c < cubes.NUM_CUBES; c++)
    for_each_output(cubes, cube(cubes, c),
                    [&](std::size_t output) { meaning.terms[next[output]++] = static_cast<std::uint32_t>(c); });
}

Literal term_value(const CubeTable &cubes, Formulas &formulas, std::size_t term, const std::vector<Literal> &columns) {
  std::vector<Literal> literals;
  for_each_literal(cubes, cube(cubes, term),
                   [&](std::size_t input, bool is_true) { literals.push_back(invert(columns[input], !is_true)); });
  return make_and(formulas, literals);
}

// The value of an equation of the signal; `missing` when it has none.
Literal equation(const Values &values, const SignalRoles &roles, ExtensionCode code, Literal missing = kFalse) {
  return has(roles, code) ? values.equations[roles.equations[code]] : missing;
}

// An equation, or the XOR of the pair that stands for it.
Literal equation_or_pair(Values &values, const SignalRoles &roles, ExtensionCode whole, ExtensionCode first,
                         ExtensionCode second) {
  if (has(roles, whole) || !has(roles, first)) return equation(values, roles, whole);
  return make_xor(values.formulas, equation(values, roles, first), equation(values, roles, second));
}

bool has_either(const SignalRoles &roles, ExtensionCode a, ExtensionCode b) { return has(roles, a) || has(roles, b); }

// The value that the data inputs specify, without clock enable and synchronous set and reset.
Literal data_value(Values &values, const SignalRoles &roles, Literal storage) {
  Formulas &formulas = values.formulas;
  if (has_either(roles, EXT_D, EXT_DX1)) return equation_or_pair(values, roles, EXT_D, EXT_DX1, EXT_DX2);
  // The equation of a generic register describes the pin.
  if (has_either(roles, EXT_REG, EXT_GX1))
    return invert(equation_or_pair(values, roles, EXT_REG, EXT_GX1, EXT_GX2), roles.inverted);
  if (has_either(roles, EXT_T, EXT_TX1))
    return make_xor(formulas, storage, equation_or_pair(values, roles, EXT_T, EXT_TX1, EXT_TX2));
  // With both, set wins.
  if (has(roles, EXT_S))
    return make_or(formulas, {equation(values, roles, EXT_S),
                              make_and(formulas, {storage, invert(equation(values, roles, EXT_R))})});
  return make_choice(formulas, storage, invert(equation(values, roles, EXT_K)), equation(values, roles, EXT_J));
}

} // namespace

bool is_registered(const SignalRoles &roles) {
  return std::ranges::any_of(kDataInputs, [&](ExtensionCode code) { return has(roles, code); });
}

bool is_flip_flop(const SignalRoles &roles) { return has(roles, EXT_C); }

bool make_meaning(const Design &design, const CubeTable &cubes, Meaning &meaning, std::string &error) {
  meaning = {};
  meaning.design = &design;
  meaning.cubes = &cubes;
  meaning.signals.resize(static_cast<std::size_t>(signal_count(design)));
  for (std::size_t i = 0; i < meaning.signals.size(); i++) {
    SignalRoles &roles = meaning.signals[i];
    roles.equations.fill(kNone);
    roles.pin = is_pin(design, static_cast<SignalIndex>(i));
    roles.inverted = roles.pin && test_bit(design.pin_inversion, i);
  }
  const NameIndex names = index_signals(design);
  if (!gather_lists(meaning, names, error)) return false;
  gather_ports(meaning, names);
  gather_terms(meaning);
  return true;
}

void clear_values(const Meaning &meaning, Values &values) {
  values.equations.assign(meaning.outputs.size(), kUnset);
  values.storage.assign(meaning.signals.size(), kUnset);
  values.outside.assign(meaning.signals.size(), kUnset);
  values.data_inputs.assign(meaning.signals.size(), kUnset);
  values.ports.assign(meaning.ports.size(), kUnset);
}

Literal output_value(const Meaning &meaning, Values &values, SignalIndex signal) {
  const auto at = static_cast<std::size_t>(signal);
  const SignalRoles &roles = meaning.signals[at];
  if (is_registered(roles)) return invert(values.storage[at], roles.inverted);
  if (has_either(roles, EXT_NONE, EXT_X1)) return equation_or_pair(values, roles, EXT_NONE, EXT_X1, EXT_X2);
  if (roles.macro_output != kNone) return values.ports[roles.macro_output];
  return values.outside[at]; // an input
}

Literal read_value(const Meaning &meaning, Values &values, SignalIndex signal, ExtensionCode code) {
  const auto at = static_cast<std::size_t>(signal);
  const SignalRoles &roles = meaning.signals[at];
  switch (code) {
  case EXT_Q: return values.storage[at];
  case EXT_FB: return invert(values.storage[at], roles.inverted);
  case EXT_REG: return equation_or_pair(values, roles, EXT_REG, EXT_GX1, EXT_GX2);
  case EXT_T: return equation_or_pair(values, roles, EXT_T, EXT_TX1, EXT_TX2);
  case EXT_D:
    if (has_either(roles, EXT_D, EXT_DX1)) return equation_or_pair(values, roles, EXT_D, EXT_DX1, EXT_DX2);
    if (is_registered(roles))
      return values.data_inputs[at] != kUnset ? values.data_inputs[at] : data_value(values, roles, values.storage[at]);
    break; // for a combinational signal it is the signal
  case EXT_NONE:
  case EXT_PIN: break;
  default: // a macro may read any equation
    return code <= EXT_PR ? equation(values, roles, code, kUnset) : kUnset;
  }
  return has(roles, EXT_OE) ? values.outside[at] : output_value(meaning, values, signal);
}

Literal port_value(const Meaning &meaning, Values &values, const MacroPort &port) {
  if (port.signal != kNoSignal)
    return read_value(meaning, values, port.signal, extension_code(upper_case(port.connection->pin_part)));
  const auto driver = meaning.plain_nets.find(netlist_name(port.connection->name, port.connection->pin_part));
  return driver == meaning.plain_nets.end() ? kUnset : values.ports[driver->second];
}

Literal sum_of_terms(const Meaning &meaning, Formulas &formulas, std::size_t output,
                     const std::vector<Literal> &columns) {
  std::vector<Literal> terms;
  for (std::uint32_t i = meaning.starts[output]; i < meaning.starts[output + 1]; i++)
    terms.push_back(term_value(*meaning.cubes, formulas, meaning.terms[i], columns));
  return make_or(formulas, terms);
}

std::vector<Literal> wanted_equations(const Meaning &meaning, Values &values) {
  const Design &design = *meaning.design;
  const CubeTable &cubes = *meaning.cubes;
  std::vector<Literal> columns, terms(cubes.NUM_CUBES), wanted;
  for (std::size_t i = 0; i < meaning.columns.size(); i++)
    columns.push_back(read_value(meaning, values, meaning.columns[i], extension_code(design.IB_EXT[i])));
  for (std::size_t c = 0; c < terms.size(); c++) terms[c] = term_value(cubes, values.formulas, c, columns);
  for (std::size_t o = 0; o < meaning.outputs.size(); o++) {
    std::vector<Literal> sum;
    for (std::uint32_t i = meaning.starts[o]; i < meaning.starts[o + 1]; i++) sum.push_back(terms[meaning.terms[i]]);
    wanted.push_back(invert(make_or(values.formulas, sum), test_bit(design.output_inversion, o)));
  }
  return wanted;
}

NextValue next_value(const Meaning &meaning, Values &values, SignalIndex signal) {
  const auto at = static_cast<std::size_t>(signal);
  const SignalRoles &roles = meaning.signals[at];
  Formulas &formulas = values.formulas;
  NextValue result;
  // At most one of each pair is there.
  result.cleared = make_or(formulas, {equation(values, roles, EXT_AR), equation(values, roles, EXT_RE)});
  result.set = make_or(formulas, {equation(values, roles, EXT_AP), equation(values, roles, EXT_PR)});
  result.next = data_value(values, roles, values.storage[at]);
  if (!is_flip_flop(roles)) {
    result.event = has(roles, EXT_LE) ? invert(equation(values, roles, EXT_LE)) : equation(values, roles, EXT_LH);
    return result;
  }
  // Synchronous preset over synchronous reset, both under the clock enable.
  result.event = equation(values, roles, EXT_C);
  result.next = make_and(formulas, {result.next, invert(equation(values, roles, EXT_SR))});
  result.next = make_or(formulas, {result.next, equation(values, roles, EXT_SP)});
  result.next = make_choice(formulas, equation(values, roles, EXT_CE, kTrue), result.next, values.storage[at]);
  return result;
}

} // namespace cubekit
