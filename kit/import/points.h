// The on, off and free points of a PLA.
#pragma once

#include "kit/import/draft.h"

namespace cubekit {

struct PointLists {
  std::vector<std::uint32_t> on{}, off{}, free{}; // terms of the pool
};

// Which lists a PLA has.
struct PlaType {
  bool has_on = true, has_off = false, has_free = true;
};

// A PLA as its terms list it. The draft has the inputs as its first signals, then the outputs.
struct Pla {
  PlaType lists{};
  std::size_t inputs = 0;
  std::string phase{};                   // a digit per output, 0: its complement is listed; empty: none is
  std::vector<PointLists> points{};      // of the outputs
  std::vector<std::size_t> term_lines{}; // the first line of each term of the draft
};
[[nodiscard]] bool read_pla_points(std::string_view text, Draft &draft, Pla &pla, Remark &fault);

// Completes the on and free points of all outputs as the type says: points on no list are off when there is
// no off list, on when there is no on list, and free when there are both. An off list that is no longer
// needed is left as it is. False when two terms contradict each other, or the table gets too large; `lines`
// are those of the terms.
[[nodiscard]] bool complete_points(Draft &draft, std::size_t inputs, const PlaType &type,
                                   std::vector<PointLists> &outputs, const std::vector<std::size_t> &lines,
                                   Remark &fault);

} // namespace cubekit
