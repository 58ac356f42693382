// Reduction: a cube shrinks to what only it covers.
#include <algorithm>
#include <cstdint>
#include <numeric>
#include <utility>

#include "kit/minimize/passes.h"

namespace cubekit {

namespace {

// Shrinks the cube to the smallest one around the points that the others and the free points leave to it; to
// one that drives nothing when none are left.
void shrink(Marks &cube, const Cover &others, const Cover &free) {
  Marks shrunk(cube.size());
  Cover near = find_meeting(others, cube.data());
  add_cubes(near, find_meeting(free, cube.data()));
  for (std::size_t j = 0; j < others.outputs; j++) {
    if (!drives_output(others, cube.data(), j)) continue;
    const Marks zeros = bound_zeros(cofactor(near, j, cube.data()));
    if (zeros.empty()) continue;
    for (std::size_t w = 0; w < others.input_words; w++) shrunk[w] |= zeros[w] & cube[w];
    set_output(others, shrunk.data(), j);
  }
  cube = std::move(shrunk);
}

bool is_idle(const Cover &cover, Cube cube) {
  return count_marks({cube + cover.input_words, cover.words - cover.input_words}) == 0;
}

// Cubes of outputs that aren't expanded could not grow back.
bool is_left_out(const Cover &cover, Cube cube, const Problem &problem) {
  for (std::size_t j = 0; j < cover.outputs; j++)
    if (problem.is_left_out[j] && drives_output(cover, cube, j)) return true;
  return false;
}

// Nearness is measured to the largest cube.
std::vector<std::uint32_t> order_for_reduction(const Cover &cover, Order by) {
  std::vector<std::ptrdiff_t> sizes(cover.size());
  for (std::size_t c = 0; c < cover.size(); c++)
    sizes[c] = static_cast<std::ptrdiff_t>(count_marks({cover[c], cover.words}));
  const auto largest = static_cast<std::size_t>(std::max_element(sizes.begin(), sizes.end()) - sizes.begin());
  std::vector<std::pair<std::ptrdiff_t, std::ptrdiff_t>> keys;
  for (std::size_t c = 0; c < cover.size(); c++) {
    std::ptrdiff_t distance = 0;
    for (std::size_t w = 0; w < cover.input_words; w++)
      distance += std::popcount(conflicts_of(cover[c][w] & cover[largest][w]));
    switch (by) {
    case Order::NEAREST_FIRST: keys.emplace_back(distance, -sizes[c]); break;
    case Order::LARGEST_FIRST: keys.emplace_back(0, -sizes[c]); break;
    case Order::SMALLEST_FIRST: keys.emplace_back(0, sizes[c]); break;
    case Order::FARTHEST_FIRST: keys.emplace_back(-distance, -sizes[c]); break;
    }
  }
  std::vector<std::uint32_t> order(cover.size());
  std::iota(order.begin(), order.end(), 0U);
  std::stable_sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) { return keys[a] < keys[b]; });
  return order;
}

} // namespace

std::vector<bool> reduce(Cover &cover, const Problem &problem, Order by) {
  std::vector<bool> is_whole(cover.size(), true), is_kept_whole;
  for (const std::uint32_t c : order_for_reduction(cover, by)) {
    if (problem.is_stopped()) break;
    if (is_left_out(cover, cover[c], problem)) continue;
    Marks cube(cover[c], cover[c] + cover.words);
    std::fill_n(cover[c] + cover.input_words, cover.words - cover.input_words, 0);
    const Marks whole = cube;
    shrink(cube, cover, problem.free);
    is_whole[c] = cube == whole;
    std::copy(cube.begin(), cube.end(), cover[c]);
  }
  Cover kept(cover.inputs, cover.outputs);
  for (std::size_t c = 0; c < cover.size(); c++) {
    if (is_idle(cover, cover[c])) continue;
    add_cube(kept, cover[c]);
    is_kept_whole.push_back(is_whole[c]);
  }
  cover = std::move(kept);
  return is_kept_whole;
}

void add_shared_expansions(Cover &cover, const Problem &problem) {
  Cover others = cover, reduced(cover.inputs, cover.outputs);
  for (std::size_t c = 0; c < cover.size() && !problem.is_stopped(); c++) {
    if (is_left_out(cover, cover[c], problem)) continue;
    Marks cube(cover[c], cover[c] + cover.words);
    std::fill_n(others[c] + others.input_words, others.words - others.input_words, 0);
    shrink(cube, others, problem.free);
    std::copy_n(cover[c], cover.words, others[c]);
    if (!is_idle(cover, cube.data()) && !std::equal(cube.begin(), cube.end(), cover[c])) add_cube(reduced, cube.data());
  }
  Cover grown = reduced;
  expand(grown, problem);
  if (grown.size() < reduced.size()) add_cubes(cover, grown);
}

} // namespace cubekit
