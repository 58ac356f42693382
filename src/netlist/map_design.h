// What both netlist writers do first.
#pragma once

#include "model/cube_table.h"
#include "model/design.h"
#include "netlist/build_netlist.h"
#include "netlist/connections.h"
#include "netlist/netlist.h"

namespace cubenet {

struct MappedDesign {
  Connections connections;
  Netlist netlist;
};

// Renames colliding names, connects the terms and builds the netlist; reports 31600, 31620 and 31621. The netlist
// refers to the design's names: the design must outlive it unchanged.
MappedDesign map_design(Design &design, const CubeTable &cubes, XorPlace xor_place);

} // namespace cubenet
