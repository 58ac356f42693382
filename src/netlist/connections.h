// What the product terms connect: which terms make up each output, which outputs are two-input XOR functions,
// and, in gate form, which gate each term becomes. Built once per writer from the term lists, which both
// share.
#pragma once

#include <cstdint>
#include <vector>

#include "model/cube_table.h"
#include "model/design.h"

namespace cubenet {

struct XorGate {
  std::uint32_t first, second; // input-list entries, the lower-numbered one first
  bool inverted;               // the output's value is the XNOR of the two (its own inversion included)
};

enum class OutputForm : std::uint8_t {
  LOGIC,    // a sum of the terms in its list
  XOR,      // taken by an LXOR2 gate
  CONSTANT, // tied to a rail
};

constexpr std::uint32_t kNoXor = ~0U;

struct Connections {
  const TermLists &lists;               // the design's
  std::vector<OutputForm> forms;        // per output-list entry
  std::vector<std::uint32_t> xor_index; // per output-list entry: into xor_gates, or kNoXor
  std::vector<XorGate> xor_gates;
  std::vector<std::uint32_t> refused; // outputs with the LXOR2 attribute that aren't a plain two-input XOR
};

inline std::uint32_t term_count(const Connections &connections, std::size_t output) {
  return connections.lists.starts[output + 1] - connections.lists.starts[output];
}
// The output's first term.
inline const std::uint32_t *first_term(const Connections &connections, std::size_t output) {
  return connections.lists.terms.data() + connections.lists.starts[output];
}

// Lists the terms of each output, in time linear in the size of the table, unless they are listed already:
// nothing changes them after the checker.
void list_terms(const CubeTable &cubes, Design &design);

// As for a single row, but skips words without literals if the others are listed.
template <typename Visit>
void for_each_literal_word(const CubeTable &cubes, const TermLists &lists, std::uint32_t term, Visit visit) {
  const std::uint32_t *row = cube(cubes, term);
  if (lists.word_starts.empty()) return for_each_literal_word(cubes, row, visit);
  for (std::size_t i = lists.word_starts[term]; i < lists.word_starts[term + 1]; i++) {
    const std::uint32_t w = lists.words[i];
    visit(w, literal_mask(row[1 + w], input_word_mask(cubes, w)));
  }
}

template <typename Visit>
void for_each_literal(const CubeTable &cubes, const TermLists &lists, std::uint32_t term, Visit visit) {
  const std::uint32_t *row = cube(cubes, term);
  for_each_literal_word(cubes, lists, term,
                        [&](std::uint32_t word, std::uint32_t mask) { for_each_literal_of(row, word, mask, visit); });
}

// The terms must be listed. An output with the LXOR2 attribute that isn't a plain two-input XOR stays a sum
// of products.
Connections map_build_connections(const CubeTable &cubes, const Design &design);

// Reports the refused attributes (31600).
void report_refused_xors(const Design &design, const Connections &connections);

} // namespace cubenet
