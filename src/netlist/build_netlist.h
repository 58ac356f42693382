// Maps a checked design onto primitives.
#pragma once

#include "model/cube_table.h"
#include "model/design.h"
#include "netlist/connections.h"
#include "netlist/netlist.h"

namespace cubenet {

// Where the LXOR2 gates that take an output stand among the symbols.
enum class XorPlace { WITH_SIGNAL, WITH_OUTPUT };

// Builds the netlist of the design with the names it has now. `expand`: the product terms become gates, which are left
// to the gate planes; otherwise every output gets its PLA or ZDOT block, whose inputs are left to whoever asks for them
// (block_inputs.h). Time and memory are linear in the lists.
Netlist build_netlist(const Design &design, const CubeTable &cubes, const Connections &connections, bool expand,
                      XorPlace xor_place);

} // namespace cubenet
