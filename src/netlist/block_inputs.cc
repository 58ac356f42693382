// Takes the listed terms, gives the inputs of one output's block at a time. Only the masks of words last in
// use are cleared, so the cost of an output depends on its terms, not on the width of the table.
#include "netlist/block_inputs.h"

#include <algorithm>

#include "netlist/connections.h"

namespace cubenet {

namespace {

// Adds the inputs that a term uses; returns how many are new.
std::size_t add_term(BlockInputs &inputs, std::uint32_t term) {
  std::size_t added = 0;
  for_each_literal_word(inputs.cubes, inputs.lists, term, [&](std::uint32_t word, std::uint32_t mask) {
    std::uint32_t &known = inputs.masks[word];
    const std::uint32_t more = mask & ~known;
    if (more == 0) return;
    if (known == 0) inputs.words.push_back(word);
    known |= more;
    added += static_cast<std::size_t>(std::popcount(more));
  });
  return added;
}

void forget_inputs(BlockInputs &inputs) {
  for (const std::uint32_t word : inputs.words) inputs.masks[word] = 0;
  inputs.words.clear();
}

// Adds the output's terms until `most` inputs are found; returns the number of terms up to the last new
// input.
std::uint32_t add_terms(BlockInputs &inputs, std::size_t output, std::size_t most) {
  const std::uint32_t first = inputs.lists.starts[output], last = inputs.lists.starts[output + 1];
  std::uint32_t needed = 0;
  std::size_t found = 0;
  for (std::uint32_t i = first; i < last && found < most; i++) {
    const std::size_t added = add_term(inputs, inputs.lists.terms[i]);
    if (added == 0) continue;
    found += added;
    needed = i + 1 - first;
  }
  return needed;
}

} // namespace

BlockInputs::BlockInputs(const CubeTable &table, const TermLists &term_lists)
    : cubes(table), lists(term_lists), masks(input_words(table), 0) {}

void find_block_inputs(BlockInputs &inputs, std::uint32_t output) {
  forget_inputs(inputs);
  const std::uint32_t *terms = inputs.lists.terms.data() + inputs.lists.starts[output];
  for (std::uint32_t i = 0; i < inputs.lists.needed[output]; i++) add_term(inputs, terms[i]);
  std::sort(inputs.words.begin(), inputs.words.end());
}

void count_block_inputs(const CubeTable &cubes, std::size_t most, TermLists &lists) {
  if (!lists.needed.empty()) return;
  lists.word_readers.assign(input_words(cubes), 0);
  BlockInputs inputs(cubes, lists);
  for (std::size_t output = 0; output + 1 < lists.starts.size(); output++) {
    forget_inputs(inputs);
    lists.needed.push_back(add_terms(inputs, output, most));
    for (const std::uint32_t word : inputs.words) lists.word_readers[word]++;
  }
}

} // namespace cubenet
