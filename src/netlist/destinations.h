// The destinations of the nets. A few terms that drive many outputs make more inputs of PLA and ZDOT blocks
// than the truth table has characters, so these inputs are held only up to a limit, for the next statements,
// by words of sixteen columns. Memory is bounded by the table and the names, never by the number of
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
  std::size_t limit;                // of `readers`, unless a single net has more
  std::vector<std::size_t> starts;  // per input word: its part of `readers`, or kNotHeld
  std::vector<std::size_t> ends;    // per input word
  std::vector<BlockReader> readers; // in print order per word
  std::vector<Destination> found;   // of the last requested net
};

// The destinations of a statement's net, in print order; valid until the next call. The blocks are walked
// once for each part that is held: in total once, unless the netlist is hundreds of times as long as the
// table.
std::span<const Destination> find_destinations(Destinations &destinations, std::size_t statement);

} // namespace cubenet
