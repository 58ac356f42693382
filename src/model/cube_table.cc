// Storage of the cube table. The block is grown with realloc, which moves large blocks by remapping their
// pages, so a table of many megabytes never exists twice.
#include "model/cube_table.h"

#include <cstdlib>
#include <cstring>

#include "model/bit_set.h"
#include "util/memory.h"

namespace cubenet {

namespace {
constexpr std::size_t kFirstCapacity = 10;
} // namespace

CubeTable::~CubeTable() { release_cubes(*this); }

void set_cube_layout(CubeTable &table, std::size_t inputs, std::size_t outputs) {
  table.inputs = inputs;
  table.outputs = outputs;
  table.words_per_row = bit_set_words(std::uint64_t{2} * inputs + outputs);
}

void grow_cubes(CubeTable &table) {
  const std::size_t grown = table.capacity == 0 ? kFirstCapacity : table.capacity + table.capacity / 2 + 1;
  table.rows =
      static_cast<std::uint32_t *>(reallocate(table.rows, grown * table.words_per_row * sizeof(std::uint32_t)));
  table.capacity = grown;
}

std::uint32_t *next_cube(CubeTable &table) {
  std::uint32_t *row = next_raw_cube(table);
  std::memset(row + 1, 0, (table.words_per_row - 1) * sizeof(std::uint32_t));
  return row;
}

void release_cubes(CubeTable &table) {
  std::free(table.rows);
  table.rows = nullptr;
  table.capacity = 0;
  table.NUM_CUBES = 0;
}

std::size_t count_literals(const CubeTable &table, const std::uint32_t *row) {
  std::size_t count = 0;
  for (std::size_t w = 0; w < input_words(table); w++)
    count += static_cast<std::size_t>(std::popcount(literal_mask(row[1 + w], input_word_mask(table, w))));
  return count;
}

} // namespace cubenet
