// What a truth table means: which value each reference reads, what each equation asks for, and what a
// register or latch does next. This is the only place in the kit that defines it; netlists are compared with
// it.
//
// The terms used here:
//   storage   the value that a register or latch holds. `.Q` reads it. An inverted pin shows its complement,
//             which is what `.FB` reads; a node, or a pin that is not inverted, shows it as it is.
//   outside   the level at a device pin, or on the bus after a node's tristate buffer. The plain name of an
//             input, and of any signal with an output enable, reads it, as does `.PIN`.
//   output    the value of a signal before any pad: the shown storage, an equation, an XOR pair, a macro's
//             output. Without an output enable the plain name reads it.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "kit/prove/formula.h"
#include "kit/util/name_index.h"
#include "model/cube_table.h"
#include "model/design.h"
#include "model/names.h"

namespace cubekit {

using cubenet::CubeTable;
using cubenet::Design;
using cubenet::ExtensionCode;
using cubenet::SignalIndex;

// What the design says of one signal.
struct SignalRoles {
  std::array<std::uint32_t, cubenet::EXT_PR + 1> equations; // by extension code: output-list entry, or kNone
  bool used = false;                                        // some list or macro names it
  bool pin = false;
  bool inverted = false;              // '-' on the pin list
  std::uint32_t macro_output = kNone; // into Meaning::ports: the macro port that drives it
};

// One connection of a placed macro.
struct MacroPort {
  std::size_t instance = 0; // into Design::instances
  std::string port;
  bool output = false;
  const cubenet::Connection *connection = nullptr;
  SignalIndex signal = cubenet::kNoSignal; // kNoSignal: a net that nothing else names
};

struct Meaning {
  const Design *design = nullptr;
  const CubeTable *cubes = nullptr;
  std::vector<SignalRoles> signals;
  std::vector<SignalIndex> columns, outputs; // signals of the input list and of the output list
  std::vector<std::uint32_t> starts, terms;  // terms of output o: terms[starts[o]] to terms[starts[o + 1]]
  std::vector<MacroPort> ports;
  std::unordered_map<std::string, std::uint32_t> plain_nets; // undeclared net to the macro output driving it
};

// False, with the reason, when no netlist can be made of the design.
[[nodiscard]] bool make_meaning(const Design &design, const CubeTable &cubes, Meaning &meaning, std::string &error);

// The values that the functions below use; kUnset where a signal has none.
struct Values {
  Formulas formulas;
  std::vector<Literal> equations;   // per output-list entry
  std::vector<Literal> storage;     // per signal
  std::vector<Literal> outside;     // per signal
  std::vector<Literal> data_inputs; // per signal: at the storage's data input, in the storage's polarity
  std::vector<Literal> ports;       // per macro port: of outputs
};
void clear_values(const Meaning &meaning, Values &values);

inline bool has(const SignalRoles &roles, ExtensionCode code) { return roles.equations[code] != kNone; }
bool is_registered(const SignalRoles &roles);
bool is_flip_flop(const SignalRoles &roles); // as opposed to a latch

Literal output_value(const Meaning &meaning, Values &values, SignalIndex signal);
Literal read_value(const Meaning &meaning, Values &values, SignalIndex signal, ExtensionCode code);
// What a macro's input must get.
Literal port_value(const Meaning &meaning, Values &values, const MacroPort &port);

// The function that the output's terms describe over the given column values, before the output's own
// inversion.
Literal sum_of_terms(const Meaning &meaning, Formulas &formulas, std::size_t output,
                     const std::vector<Literal> &columns);
// What each equation must be, over the values its columns read.
std::vector<Literal> wanted_equations(const Meaning &meaning, Values &values);

struct NextValue {
  Literal cleared = kFalse; // at any time, over everything else
  Literal set = kFalse;     // at any time, unless cleared
  Literal event = kFalse;   // flip-flop: the clock, whose rising edge counts; latch: open
  Literal next = kFalse;    // flip-flop: after the edge, latch: while open; unless cleared or set
};
NextValue next_value(const Meaning &meaning, Values &values, SignalIndex signal);

} // namespace cubekit
