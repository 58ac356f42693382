// The passes of the minimization. Each keeps what the cover computes, except at free points; none makes it
// longer unless its comment says so. When asked to stop, a pass ends early, with a valid cover.
#pragma once

#include <atomic>
#include <bit>
#include <cstdint>
#include <span>
#include <vector>

#include "kit/table/cover.h"

namespace cubekit {

struct Problem {
  static constexpr std::size_t kBlock = 64;
  Cover off;                               // for each output the points that must be 0; sorted
  Cover bounds;                            // the smallest cube around each block of `off`
  Cover free;                              // for each output the points that may be either
  std::vector<bool> is_left_out;           // outputs whose zeros are too many to list: their cubes don't grow
  const std::atomic<bool> *stop = nullptr; // becomes true when passes should end

  bool is_stopped() const { return stop != nullptr && stop->load(std::memory_order_relaxed); }
};

enum class Outputs : bool { GROW, STAY };

// Makes cubes as large as possible, one after the other, except those known to be; drops those that an
// earlier one then contains.
void expand(Cover &cover, const Problem &problem, Outputs outputs = Outputs::GROW, std::vector<bool> is_done = {});

// Drops cubes that the others cover together, so that few are left.
void drop_redundant(Cover &cover, const Problem &problem);

// Takes outputs from cubes that they don't need.
void drop_redundant_outputs(Cover &cover, const Problem &problem);

// Makes cubes as small as possible, one after the other, so that the next expansion may take another way.
// Returns which cubes stayed unchanged.
enum class Order : std::uint8_t { NEAREST_FIRST, LARGEST_FIRST, SMALLEST_FIRST, FARTHEST_FIRST };
std::vector<bool> reduce(Cover &cover, const Problem &problem, Order by);

// Makes each cube as small as possible given the others as they were, and adds cubes that contain several of
// the results.
void add_shared_expansions(Cover &cover, const Problem &problem);

// ---- sets of small numbers, a bit for each

using Marks = std::vector<CubeWord>;

inline void set_mark(Marks &marks, std::size_t at) { marks[at / 64] |= CubeWord{1} << (at % 64); }
inline bool has_mark(std::span<const CubeWord> marks, std::size_t at) {
  return (marks[at / 64] >> (at % 64) & 1U) != 0;
}
inline std::size_t count_marks(std::span<const CubeWord> marks) {
  std::size_t sum = 0;
  for (const CubeWord word : marks) sum += static_cast<std::size_t>(std::popcount(word));
  return sum;
}
inline bool share_mark(std::span<const CubeWord> marks, const CubeWord *others) {
  CubeWord shared = 0;
  for (const CubeWord word : marks) shared |= word & *others++;
  return shared != 0;
}
template <typename Visit> void for_each_mark(std::span<const CubeWord> marks, Visit visit) {
  for (std::size_t w = 0; w < marks.size(); w++)
    for (CubeWord left = marks[w]; left != 0; left &= left - 1)
      visit(w * 64 + static_cast<std::size_t>(std::countr_zero(left)));
}

// The fewest marks, or nearly so, such that every set has one of them. No set is empty.
[[nodiscard]] Marks hit_all(std::vector<Marks> sets);

} // namespace cubekit
