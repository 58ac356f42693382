// Maps a checked design onto primitives.
#pragma once

#include "model/cube_table.h"
#include "model/design.h"
#include "netlist/connections.h"
#include "netlist/netlist.h"

namespace cubenet {

// The position among the symbols of the LXOR2 gates that replace an output.
enum class XorPlace { WITH_SIGNAL, WITH_OUTPUT };

// Builds the netlist of the design under its present names. `expand`: the product terms become gates, which
// the gate planes print; otherwise every output gets its PLA or ZDOT block, whose inputs are found on demand
// (block_inputs.h). Time and memory are linear in the lists.
Netlist build_netlist(const Design &design, const CubeTable &cubes, const Connections &connections, bool expand,
                      XorPlace xor_place);

} // namespace cubenet
