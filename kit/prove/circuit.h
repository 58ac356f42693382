// The functions of a netlist's nets. Some nets are given a value beforehand (device inputs, storage,
// equations); all others follow from their gates, down to these nets.
#pragma once

#include <string>
#include <vector>

#include "kit/netlist/netlist.h"
#include "kit/prove/formula.h"
#include "kit/prove/meaning.h"

namespace cubekit {

struct Circuit {
  const Netlist &netlist;
  const Meaning &meaning;
  Formulas &formulas;
  std::vector<Literal> values;             // per net: known so far; kUnset
  std::vector<std::uint32_t> zdot_outputs; // per symbol: the equation whose terms a ZDOT holds; kNone
  std::string fault{};                     // the first thing without a function: a loop, an unconnected pin
};

Circuit make_circuit(const Netlist &netlist, const Meaning &meaning, Formulas &formulas);

// The function of a net, or its given value. A tree of gates is treated as one gate.
Literal net_value(Circuit &circuit, NetIndex net);
// The function of the net's driver, whatever value the net was given.
Literal driver_value(Circuit &circuit, NetIndex net);
// The function on a pin of a symbol; `missing` when the symbol has no such pin.
Literal pin_value(Circuit &circuit, SymbolIndex symbol, std::string_view pin, Literal missing = kUnset);

// The symbol that drives the net; kNone for none.
inline SymbolIndex driver_of(const Netlist &netlist, NetIndex net) { return netlist.nets[net].source.symbol; }

} // namespace cubekit
