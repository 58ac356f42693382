// Sums of products in memory: a cover holds the cubes (product terms) of several outputs over the same
// inputs.
//
// A cube is `words` words of 64 bits. Input k owns bits 2k ("may be 0") and 2k+1 ("may be 1") of the first
// `input_words` words; both set: no literal; never neither. Bits of inputs that don't exist are set. Output j
// owns bit j of the words after them: the cube drives it. A cover of 0 outputs is one function, whose cubes
// have only inputs.
#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "model/cube_table.h"

namespace cubekit {

using CubeWord = std::uint64_t;
using Cube = const CubeWord *; // valid until the cover grows

inline constexpr CubeWord kLowBits = 0x5555555555555555U; // the "may be 0" bits of a word

struct Cover {
  std::size_t inputs = 0, outputs = 0;
  std::size_t input_words = 0, words = 0; // of a cube; at least one input word
  std::vector<CubeWord> bits;             // cube after cube

  Cover(std::size_t input_count, std::size_t output_count);
  std::size_t size() const { return bits.size() / words; }
  Cube operator[](std::size_t at) const { return bits.data() + at * words; }
  CubeWord *operator[](std::size_t at) { return bits.data() + at * words; }
};

// Adds a cube without literals that drives nothing.
CubeWord *add_cube(Cover &cover);
// Adds a copy of a cube of a cover of the same shape, or of each cube of one.
void add_cube(Cover &cover, Cube cube);
void add_cubes(Cover &cover, const Cover &more);

inline void set_literal(CubeWord *cube, std::size_t input, cubenet::Literal literal) {
  const std::size_t shift = 2 * (input % 32);
  cube[input / 32] = (cube[input / 32] & ~(CubeWord{3} << shift)) | CubeWord{literal} << shift;
}
inline cubenet::Literal literal_at(Cube cube, std::size_t input) {
  return static_cast<cubenet::Literal>(cube[input / 32] >> (2 * (input % 32)) & 3U);
}
inline void set_output(const Cover &cover, CubeWord *cube, std::size_t output) {
  cube[cover.input_words + output / 64] |= CubeWord{1} << (output % 64);
}
inline void clear_output(const Cover &cover, CubeWord *cube, std::size_t output) {
  cube[cover.input_words + output / 64] &= ~(CubeWord{1} << (output % 64));
}
inline bool drives_output(const Cover &cover, Cube cube, std::size_t output) {
  return (cube[cover.input_words + output / 64] >> (output % 64) & 1U) != 0;
}

// One bit, at 2k, for each input k of the word with a literal.
inline CubeWord literals_of(CubeWord word) { return (word ^ word >> 1) & kLowBits; }
// One bit, at 2k, for each input k that has no value left in the intersection of two cubes.
inline CubeWord conflicts_of(CubeWord common) { return ~(common | common >> 1) & kLowBits; }

// An input word without literals.
inline bool is_full(std::span<const CubeWord> inputs) {
  return std::all_of(inputs.begin(), inputs.end(), [](CubeWord word) { return word == ~CubeWord{0}; });
}

inline bool is_contained(std::span<const CubeWord> inner, Cube outer) {
  for (const CubeWord word : inner)
    if ((word & ~*outer++) != 0) return false;
  return true;
}

// ---- whole covers

// For each output the points that none of its cubes covers; a cube of several outputs is listed once. The
// result is useless when `stop` becomes true meanwhile. A complement may be much larger than the cover: a
// budget counts down the words of the cubes handled; when it reaches 0, the work is given up and the result
// is useless too.
[[nodiscard]] Cover complement(const Cover &cover, const std::atomic<bool> *stop = nullptr,
                               std::size_t *budget = nullptr);

// Whether every output is 1 everywhere.
[[nodiscard]] bool is_tautology(const Cover &cover);

// Whether each output that the cube drives is 1 wherever the cube is. The cube is of a cover of the same
// shape.
[[nodiscard]] bool covers(const Cover &cover, Cube cube);

// Sorted, with equal cubes of several outputs as one.
[[nodiscard]] Cover join_outputs(Cover cover);

// The cubes that drive an output, as a cover of only that output.
[[nodiscard]] Cover take_output(const Cover &cover, std::size_t output);

// The cubes whose inputs have points in common with those of the cube.
[[nodiscard]] Cover find_meeting(const Cover &cover, Cube cube);

// ---- single functions (covers of 0 outputs)

// The cubes of an output that meet the cube, without the cube's literals: the output seen from within the
// cube.
[[nodiscard]] Cover cofactor(const Cover &cover, std::size_t output, Cube cube);
// Adds one of the cover's cubes to such a function, if they meet.
void add_cofactor(const Cover &cover, Cube other, std::size_t output, Cube cube, Cover &function);

// The function with an input fixed at that value.
[[nodiscard]] Cover cofactor(const Cover &function, std::size_t input, bool value);

[[nodiscard]] bool is_one(Cover function);

// The smallest cube around all points where the function is 0; empty when there are none.
[[nodiscard]] std::vector<CubeWord> bound_zeros(const Cover &function);

// The input that most cubes have a literal of, among those with literals of both kinds; `inputs` when there
// is none.
[[nodiscard]] std::size_t find_binate_input(const Cover &function);

[[nodiscard]] bool has_full_cube(const Cover &function);

} // namespace cubekit
