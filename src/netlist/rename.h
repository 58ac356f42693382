// Renaming of user signals whose names would collide with generated ones.
#pragma once

#include "model/cube_table.h"
#include "model/design.h"

namespace cubenet {

// Renames in place, in the pin and node names and in the input and output lists, and reports each renamed pin
// (31620) and then each renamed node (31621). Runs at the start of each netlist writer, on the current names.
// Attribute records keep the names as written.
void map_rename_signals(Design &design, const CubeTable &cubes);

} // namespace cubenet
