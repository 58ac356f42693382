// The design rule checker: checks a design that has been read, removes its unused pins and nodes, and fills
// the groups of the database that are marked "checker".
#pragma once

#include "model/cube_table.h"
#include "model/design.h"

namespace cubenet {

// Runs all passes in order and reports every finding. 0 if no ERROR was reported, otherwise 1; warnings never
// fail.
[[nodiscard]] int check_design(Design &design, const CubeTable &cubes);

} // namespace cubenet
