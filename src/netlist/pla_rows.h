// The rows of a PLA block.
#pragma once

#include <cstdint>
#include <vector>

#include "model/cube_table.h"
#include "util/output_file.h"

namespace cubenet {

// One row per term: a tab, a character per column ('0' complemented literal, '1' true literal, '-' not used
// by the term), " 1" and a line end. `columns` are the block's inputs, ascending; `terms` cube indices.
void put_pla_rows(OutputFile &file, const CubeTable &cubes, const std::uint32_t *terms, std::size_t term_count,
                  const std::vector<std::uint32_t> &columns);

} // namespace cubenet
