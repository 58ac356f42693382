// A listing of the whole design database for developers; no stage of a run writes it.
#pragma once

#include <string>

#include "model/cube_table.h"
#include "model/design.h"
#include "util/output_file.h"

namespace cubenet {

void put_listing(OutputFile &file, const Design &design, const CubeTable &cubes);

// Writes the listing to the named file, replacing it. 0, or 2 if the file can't be written whole.
[[nodiscard]] int dump_design(const std::string &file_name, const Design &design, const CubeTable &cubes);

} // namespace cubenet
