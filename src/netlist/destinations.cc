// Takes a mapped design, gives the destinations of one net at a time. The blocks are walked once for as many words as
// the limit allows: in most designs for all of them at once.
#include "netlist/destinations.h"

#include <algorithm>

namespace cubenet {

namespace {

constexpr std::size_t kLeast = std::size_t{4} << 20; // bytes that may be held, whatever the design

// In readers. With as many bytes as the rows of the table have, and some for every name, the walks stay few.
std::size_t choose_limit(const CubeTable &cubes) {
  const std::size_t rows = cubes.NUM_CUBES * cubes.words_per_row * sizeof(std::uint32_t);
  const std::size_t names = (cubes.inputs + cubes.outputs) * 16;
  return std::max(kLeast, rows + names) / sizeof(BlockReader);
}

bool is_held(const Destinations &all, NetIndex net) {
  bool held = true;
  for_each_column(all.netlist, net, [&](std::uint32_t k) { held = held && all.starts[k / 16] != kNotHeld; });
  return held;
}

// Gives their parts to the words that the statements from the first on need, as far as the limit allows.
void choose_words(Destinations &all, std::size_t first) {
  std::fill(all.starts.begin(), all.starts.end(), kNotHeld);
  std::size_t count = 0;
  for (std::size_t i = first; i < all.netlist.statements.size() && (i == first || count < all.limit); i++) {
    for_each_column(all.netlist, all.netlist.statements[i], [&](std::uint32_t k) {
      if (all.starts[k / 16] != kNotHeld) return;
      all.starts[k / 16] = all.ends[k / 16] = count;
      count += all.inputs.lists.word_readers[k / 16];
    });
  }
  std::vector<BlockReader>().swap(all.readers); // never old and new ones at a time
  all.readers.resize(count);
}

void hold(Destinations &all, std::size_t first) {
  choose_words(all, first);
  for (SymbolIndex s = 0; s < all.netlist.symbols.size(); s++) {
    const Symbol &symbol = all.netlist.symbols[s];
    if (!is_block(symbol.primitive)) continue;
    find_block_inputs(all.inputs, symbol.origin);
    std::uint32_t number = 0;
    for (const std::uint32_t word : all.inputs.words) {
      const std::uint32_t mask = all.inputs.masks[word];
      if (all.starts[word] != kNotHeld) all.readers[all.ends[word]++] = {s, number, mask};
      number += static_cast<std::uint32_t>(std::popcount(mask));
    }
  }
}

void add_block_inputs(Destinations &all, std::uint32_t column) {
  const std::uint32_t bit = 1U << (2 * (column % 16));
  const BlockReader *const last = all.readers.data() + all.ends[column / 16];
  for (const BlockReader *at = all.readers.data() + all.starts[column / 16]; at != last; at++) {
    if ((at->mask & bit) == 0) continue;
    const auto before = static_cast<std::uint32_t>(std::popcount(at->mask & (bit - 1)));
    all.found.push_back({at->block, at->number + before});
  }
}

bool is_before(const Destination &a, const Destination &b) {
  return a.symbol != b.symbol ? a.symbol < b.symbol : a.pin < b.pin;
}

} // namespace

Destinations::Destinations(const Netlist &mapped, const CubeTable &cubes, const TermLists &lists)
    : netlist(mapped), inputs(cubes, lists), limit(choose_limit(cubes)), starts(input_words(cubes), kNotHeld),
      ends(input_words(cubes), 0) {}

std::span<const Destination> find_destinations(Destinations &destinations, std::size_t statement) {
  const Netlist &netlist = destinations.netlist;
  const NetIndex net = netlist.statements[statement];
  const Destination *pins = netlist.destinations.data();
  const std::span<const Destination> others(pins + netlist.destination_starts[net],
                                            pins + netlist.destination_starts[net + 1]);
  if (!netlist.has_blocks || netlist.first_columns[net] == kNone) return others;
  if (!is_held(destinations, net)) hold(destinations, statement);
  std::vector<Destination> &found = destinations.found;
  found.clear();
  for_each_column(netlist, net, [&](std::uint32_t column) { add_block_inputs(destinations, column); });
  found.insert(found.end(), others.begin(), others.end());
  if (!std::is_sorted(found.begin(), found.end(), is_before)) std::sort(found.begin(), found.end(), is_before);
  return found;
}

} // namespace cubenet
