// Random tables for the benchmarks of the parts; the same on every machine.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "model/cube_table.h"
#include "model/design.h"

namespace cubenet::bench {

struct TableShape {
  std::size_t inputs, outputs, terms;
  std::uint32_t used_of_256; // how many of 256 input characters are literals
  std::uint32_t ones;        // outputs that a term drives
};

struct RandomTable {
  std::string text; // the terms, a line each, without the last line's end
  CubeTable cubes;
  Design design; // the lists, and what the checker says of the terms
};

std::unique_ptr<RandomTable> make_random_table(const TableShape &shape);

} // namespace cubenet::bench
