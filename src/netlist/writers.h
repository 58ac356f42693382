// The two netlist files. Each writer maps the design afresh (renaming colliding names first) and prints the
// netlist in its own syntax.
#pragma once

#include <string>

#include "model/cube_table.h"
#include "model/design.h"

namespace cubenet {

// Writes the parameter file (if the design has parameters or reserved pins) and the NXF netlist. 0, or 2 if a
// file can't be opened or written whole (31103). `rsp_name` is only named in the parameter file.
[[nodiscard]] int write_nxf(const CubeTable &cubes, const std::string &nxf_name, const std::string &par_name,
                            const std::string &rsp_name, Design *design);

// Writes the ddf netlist. 0, or 2 if the file can't be opened or written whole (31103).
[[nodiscard]] int write_ddf(const CubeTable &cubes, const std::string &ddf_name, Design *design);

} // namespace cubenet
