// Reads a truth table (.tt2): header lines, product terms and attribute statements, into a design database.
#pragma once

#include <cstdio>
#include <memory>
#include <string>

#include "model/cube_table.h"
#include "model/design.h"

namespace cubenet {

// Reads the open file up to ".e"/".end" or its end; `file_name` is for messages only. Every fault is reported
// with its number; errors return nullptr, warnings never do. On success the database is complete except for
// the checker's groups, and `cubes` has the product terms in file order. On failure `cubes` is released.
std::unique_ptr<Design> read_tt2(std::FILE *file, const std::string &file_name, CubeTable &cubes);

} // namespace cubenet
