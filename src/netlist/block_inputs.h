// The inputs of the PLA and ZDOT blocks: the columns of the truth table that the terms of a block's output
// use, numbered in column order. They are never held as pins, but found again whenever needed.
//
// Finding the inputs of an output takes at most one step for each literal of its terms. A PLA block prints at
// least one character for each, so the total time is linear in input plus output. A ZDOT block prints no
// terms: it takes a step per sixteen columns, for the terms up to the last one that adds an input.
#pragma once

#include <bit>
#include <cstdint>
#include <vector>

#include "model/cube_table.h"
#include "model/design.h"

namespace cubenet {

struct BlockInputs {
  BlockInputs(const CubeTable &table, const TermLists &term_lists);

  const CubeTable &cubes;
  const TermLists &lists;
  // Of the last output:
  std::vector<std::uint32_t> masks; // per input word, as literal_mask has them: the inputs
  std::vector<std::uint32_t> words; // those that hold any, ascending
};

// Finds the inputs of an output's block.
void find_block_inputs(BlockInputs &inputs, std::uint32_t output);

// Calls visit(column, number) for every input of the last block found, ascending.
template <typename Visit> void for_each_block_input(const BlockInputs &inputs, Visit visit) {
  std::uint32_t number = 0;
  for (const std::uint32_t word : inputs.words)
    for (std::uint32_t left = inputs.masks[word]; left != 0; left &= left - 1)
      visit(word * 16 + static_cast<std::uint32_t>(std::countr_zero(left)) / 2, number++);
}

// Determines the terms needed and counts the readers of the input words, unless already done. No output uses
// more than `most` inputs.
void count_block_inputs(const CubeTable &cubes, std::size_t most, TermLists &lists);

} // namespace cubenet
