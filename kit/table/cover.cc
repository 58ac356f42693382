// Cubes, and the questions that are answered by splitting a function at one input after another: an input
// whose literals are all of one kind (unate) needs no split.
#include "kit/table/cover.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numeric>
#include <utility>

namespace cubekit {

Cover::Cover(std::size_t input_count, std::size_t output_count)
    : inputs(input_count), outputs(output_count), input_words(std::max<std::size_t>(1, (input_count + 31) / 32)),
      words(input_words + (output_count + 63) / 64) {}

CubeWord *add_cube(Cover &cover) {
  const std::size_t at = cover.bits.size();
  cover.bits.resize(at + cover.words);
  std::fill_n(cover.bits.begin() + static_cast<std::ptrdiff_t>(at), cover.input_words, ~CubeWord{0});
  return cover.bits.data() + at;
}

void add_cube(Cover &cover, Cube cube) { cover.bits.insert(cover.bits.end(), cube, cube + cover.words); }

void add_cubes(Cover &cover, const Cover &more) {
  cover.bits.insert(cover.bits.end(), more.bits.begin(), more.bits.end());
}

namespace {

// Where there are literals of each kind, one bit at 2k for input k.
struct Kinds {
  std::vector<CubeWord> plain, complemented;
};

Kinds find_kinds(const Cover &function) {
  Kinds kinds{std::vector<CubeWord>(function.words), std::vector<CubeWord>(function.words)};
  for (std::size_t c = 0; c < function.size(); c++) {
    const Cube cube = function[c];
    for (std::size_t w = 0; w < function.words; w++) {
      kinds.plain[w] |= cube[w] >> 1 & ~cube[w] & kLowBits;
      kinds.complemented[w] |= cube[w] & ~(cube[w] >> 1) & kLowBits;
    }
  }
  return kinds;
}

// Of the inputs in `among`, the one that most cubes have a literal of.
std::size_t find_frequent_input(const Cover &function, const std::vector<CubeWord> &among) {
  std::vector<std::uint32_t> counts(function.inputs);
  for (std::size_t c = 0; c < function.size(); c++)
    for (std::size_t w = 0; w < function.words; w++)
      for (CubeWord left = literals_of(function[c][w]) & among[w]; left != 0; left &= left - 1)
        counts[w * 32 + static_cast<std::size_t>(std::countr_zero(left)) / 2]++;
  const auto most = std::max_element(counts.begin(), counts.end());
  return most == counts.end() || *most == 0 ? function.inputs : static_cast<std::size_t>(most - counts.begin());
}

std::size_t find_frequent_input(const Cover &function, const Kinds &kinds, bool is_binate) {
  std::vector<CubeWord> among(function.words);
  for (std::size_t w = 0; w < function.words; w++)
    among[w] = is_binate ? kinds.plain[w] & kinds.complemented[w] : kinds.plain[w] | kinds.complemented[w];
  return find_frequent_input(function, among);
}

// A function is 1 everywhere only if it is so where all its unate literals are 0. True when that dropped a
// cube.
bool drop_unate_cubes(Cover &function) {
  const Kinds kinds = find_kinds(function);
  std::size_t kept = 0;
  for (std::size_t c = 0; c < function.size(); c++) {
    const Cube cube = function[c];
    bool is_unate = false;
    for (std::size_t w = 0; w < function.words; w++)
      is_unate = is_unate || (literals_of(cube[w]) & (kinds.plain[w] ^ kinds.complemented[w])) != 0;
    if (is_unate) continue;
    std::copy_n(cube, function.words, function[kept]);
    kept++;
  }
  if (kept == function.size()) return false;
  function.bits.resize(kept * function.words);
  return true;
}

std::size_t count_literals(const Cover &function, Cube cube) {
  std::size_t count = 0;
  for (std::size_t w = 0; w < function.input_words; w++)
    count += static_cast<std::size_t>(std::popcount(literals_of(cube[w])));
  return count;
}

// Whether the cubes together are large enough to fill the space.
bool may_fill(const Cover &function) {
  double share = 0;
  for (std::size_t c = 0; c < function.size(); c++)
    share += std::ldexp(1.0, -static_cast<int>(count_literals(function, function[c])));
  return share > 0.999; // rounding
}

} // namespace

bool has_full_cube(const Cover &function) {
  for (std::size_t c = 0; c < function.size(); c++)
    if (is_full({function[c], function.words})) return true;
  return false;
}

std::size_t find_binate_input(const Cover &function) {
  return find_frequent_input(function, find_kinds(function), true);
}

Cover cofactor(const Cover &function, std::size_t input, bool value) {
  Cover result(function.inputs, 0);
  result.bits.reserve(function.bits.size());
  const std::size_t word = input / 32, bit = 2 * (input % 32);
  for (std::size_t c = 0; c < function.size(); c++) {
    if ((function[c][word] >> (bit + (value ? 1 : 0)) & 1U) == 0) continue;
    add_cube(result, function[c]);
    result[result.size() - 1][word] |= CubeWord{3} << bit;
  }
  return result;
}

namespace {
bool meet(Cube a, Cube b, std::size_t input_words) {
  CubeWord conflicts = 0;
  for (std::size_t w = 0; w < input_words; w++) conflicts |= conflicts_of(a[w] & b[w]);
  return conflicts == 0;
}
} // namespace

Cover take_output(const Cover &cover, std::size_t output) {
  Cover one(cover.inputs, 1);
  for (std::size_t c = 0; c < cover.size(); c++) {
    if (!drives_output(cover, cover[c], output)) continue;
    CubeWord *cube = add_cube(one);
    std::copy_n(cover[c], cover.input_words, cube);
    set_output(one, cube, 0);
  }
  return one;
}

Cover find_meeting(const Cover &cover, Cube cube) {
  Cover found(cover.inputs, cover.outputs);
  for (std::size_t c = 0; c < cover.size(); c++)
    if (meet(cover[c], cube, cover.input_words)) add_cube(found, cover[c]);
  return found;
}

void add_cofactor(const Cover &cover, Cube other, std::size_t output, Cube cube, Cover &function) {
  if (!drives_output(cover, other, output) || !meet(other, cube, cover.input_words)) return;
  for (std::size_t w = 0; w < cover.input_words; w++) {
    const CubeWord literals = literals_of(cube[w]);
    function.bits.push_back(other[w] | literals | literals << 1);
  }
}

Cover cofactor(const Cover &cover, std::size_t output, Cube cube) {
  Cover function(cover.inputs, 0);
  for (std::size_t c = 0; c < cover.size(); c++) add_cofactor(cover, cover[c], output, cube, function);
  return function;
}

bool is_one(Cover function) {
  do {
    if (has_full_cube(function)) return true;
  } while (drop_unate_cubes(function));
  if (!may_fill(function)) return false;
  const std::size_t input = find_binate_input(function);
  return input != function.inputs && is_one(cofactor(function, input, false)) &&
         is_one(cofactor(function, input, true));
}

bool covers(const Cover &cover, Cube cube) {
  const Cover near = find_meeting(cover, cube);
  for (std::size_t j = 0; j < cover.outputs; j++)
    if (drives_output(cover, cube, j) && !is_one(cofactor(near, j, cube))) return false;
  return true;
}

bool is_tautology(const Cover &cover) {
  Cover whole(cover.inputs, cover.outputs);
  CubeWord *cube = add_cube(whole);
  for (std::size_t j = 0; j < cover.outputs; j++) set_output(whole, cube, j);
  return covers(cover, cube);
}

std::vector<CubeWord> bound_zeros(const Cover &function) {
  if (has_full_cube(function)) return {};
  std::vector<CubeWord> bound(function.words, ~CubeWord{0});
  const std::size_t input = find_binate_input(function);
  if (input == function.inputs) { // unate: 1 wherever a literal is, only if that literal is a cube
    for (std::size_t c = 0; c < function.size(); c++) {
      if (count_literals(function, function[c]) != 1) continue;
      for (std::size_t w = 0; w < function.words; w++) {
        const CubeWord literal = literals_of(function[c][w]);
        bound[w] &= ~(function[c][w] & (literal | literal << 1));
      }
    }
    return bound;
  }
  std::vector<CubeWord> low = bound_zeros(cofactor(function, input, false));
  std::vector<CubeWord> high = bound_zeros(cofactor(function, input, true));
  if (!low.empty()) set_literal(low.data(), input, cubenet::LITERAL_COMPLEMENT);
  if (!high.empty()) set_literal(high.data(), input, cubenet::LITERAL_TRUE);
  if (low.empty()) return high;
  for (std::size_t w = 0; w < high.size(); w++) low[w] |= high[w];
  return low;
}

// ---- complement

namespace {

// The complement of a single cube: a cube for each of its literals.
void complement_cube(const Cover &function, Cube cube, Cover &result) {
  for (std::size_t w = 0; w < function.words; w++) {
    for (CubeWord left = literals_of(cube[w]); left != 0; left &= left - 1) {
      const CubeWord pair = (left & ~(left - 1)) * 3;
      add_cube(result)[w] ^= cube[w] & pair;
    }
  }
}

// The literals that all cubes share, as a cube.
std::vector<CubeWord> bound_ones(const Cover &function) {
  std::vector<CubeWord> bound(function.words);
  for (std::size_t c = 0; c < function.size(); c++)
    for (std::size_t w = 0; w < function.words; w++) bound[w] |= function[c][w];
  return bound;
}

bool is_before(const Cover &shape, Cube a, Cube b) {
  return std::lexicographical_compare(a, a + shape.words, b, b + shape.words);
}

void sort_cubes(Cover &cover) {
  std::vector<std::uint32_t> order(cover.size());
  std::iota(order.begin(), order.end(), 0U);
  std::sort(order.begin(), order.end(),
            [&](std::uint32_t a, std::uint32_t b) { return is_before(cover, cover[a], cover[b]); });
  Cover sorted(cover.inputs, cover.outputs);
  sorted.bits.reserve(cover.bits.size());
  for (const std::uint32_t c : order) add_cube(sorted, cover[c]);
  cover = std::move(sorted);
}

} // namespace

Cover join_outputs(Cover cover) {
  sort_cubes(cover);
  Cover result(cover.inputs, cover.outputs);
  for (std::size_t c = 0; c < cover.size(); c++) {
    CubeWord *last = result.size() == 0 ? nullptr : result[result.size() - 1];
    if (last == nullptr || !std::equal(last, last + cover.input_words, cover[c]))
      add_cube(result, cover[c]);
    else
      for (std::size_t w = cover.input_words; w < cover.words; w++) last[w] |= cover[c][w];
  }
  return result;
}

namespace {

// The zeros on both sides of an input: a cube that is on both sides needs no literal of it.
Cover join(Cover &low, Cover &high, std::size_t input) {
  sort_cubes(low);
  sort_cubes(high);
  Cover result(low.inputs, 0);
  for (std::size_t l = 0, h = 0; l < low.size() || h < high.size();) {
    const bool is_low = l < low.size() && (h == high.size() || !is_before(low, high[h], low[l]));
    const bool is_high = h < high.size() && (l == low.size() || !is_before(low, low[l], high[h]));
    add_cube(result, is_low ? low[l] : high[h]);
    const cubenet::Literal literal = is_low ? cubenet::LITERAL_COMPLEMENT : cubenet::LITERAL_TRUE;
    set_literal(result[result.size() - 1], input, is_low && is_high ? cubenet::LITERAL_ABSENT : literal);
    l += is_low ? 1 : 0;
    h += is_high ? 1 : 0;
  }
  return result;
}

struct Bounds {
  const std::atomic<bool> *stop;
  std::size_t *budget;
};

// False when the work should be given up.
bool spend(const Bounds &bounds, std::size_t words) {
  if (bounds.budget != nullptr) *bounds.budget -= std::min(*bounds.budget, words);
  return (bounds.stop == nullptr || !bounds.stop->load(std::memory_order_relaxed)) &&
         (bounds.budget == nullptr || *bounds.budget != 0);
}

Cover complement_function(const Cover &function, const Bounds &bounds) {
  Cover result(function.inputs, 0);
  if (!spend(bounds, function.bits.size() + 1)) return result;
  if (function.size() == 0) add_cube(result);
  if (function.size() == 0 || has_full_cube(function)) return result;
  const std::vector<CubeWord> shared = bound_ones(function);
  complement_cube(function, shared.data(), result);
  if (function.size() == 1) return result;
  if (result.size() != 0) {
    Cover rest = function;
    for (std::size_t c = 0; c < rest.size(); c++)
      for (std::size_t w = 0; w < rest.words; w++) rest[c][w] |= ~shared[w];
    add_cubes(result, complement_function(rest, bounds));
    return result;
  }
  const Kinds kinds = find_kinds(function);
  std::size_t input = find_frequent_input(function, kinds, true);
  if (input == function.inputs) input = find_frequent_input(function, kinds, false);
  Cover low = complement_function(cofactor(function, input, false), bounds);
  Cover high = complement_function(cofactor(function, input, true), bounds);
  if (!spend(bounds, low.bits.size() + high.bits.size())) return result;
  return join(low, high, input);
}

} // namespace

Cover complement(const Cover &cover, const std::atomic<bool> *stop, std::size_t *budget) {
  Cover all(cover.inputs, cover.outputs);
  const std::vector<CubeWord> everywhere(cover.input_words, ~CubeWord{0});
  for (std::size_t j = 0; j < cover.outputs; j++) {
    const Cover zeros = complement_function(cofactor(cover, j, everywhere.data()), {stop, budget});
    for (std::size_t c = 0; c < zeros.size(); c++) {
      CubeWord *cube = add_cube(all);
      std::copy_n(zeros[c], zeros.words, cube);
      set_output(all, cube, j);
    }
  }
  return join_outputs(std::move(all));
}

} // namespace cubekit
