// The destinations of the nets. A few terms that drive many outputs make more inputs of PLA and ZDOT blocks than the
// truth table has characters, so of these only as many as the limit allows are held, for the statements that come next,
// and by the word of sixteen columns. Memory is bounded by the table and the names, never by the number of
// destinations.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "netlist/block_inputs.h"
#include "netlist/netlist.h"

namespace cubenet {

constexpr std::size_t kNotHeld = ~std::size_t{0};

// A block that uses columns of one word.
struct BlockReader {
  SymbolIndex block;
  std::uint32_t number; // of the first input in the word
  std::uint32_t mask;   // the columns, as literal_mask has them
};

struct Destinations {
  Destinations(const Netlist &mapped, const CubeTable &cubes, const TermLists &lists);

  const Netlist &netlist;
  BlockInputs inputs;
  std::size_t limit;                // of `readers`, unless one net alone has more
  std::vector<std::size_t> starts;  // per input word: its part of `readers`, or kNotHeld
  std::vector<std::size_t> ends;    // per input word
  std::vector<BlockReader> readers; // in print order per word
  std::vector<Destination> found;   // of the net asked for last
};

// The destinations of a statement's net, in print order; valid until the next call. The blocks are walked again for
// each part that is held: once in all designs but those whose text is hundreds of times as long as their table.
std::span<const Destination> find_destinations(Destinations &destinations, std::size_t statement);

} // namespace cubenet
