// Bit sets in the row layout of the cube table: word 0 holds the number of data words in its low 10 bits, bit b lies in
// word 1 + b/32 at position b mod 32.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace cubenet {

// Words that a set of `bits` bits takes, the count word included; a set of no bits still has one data word. A row of
// the cube table may be announced with more bits than 32 bits count.
constexpr std::size_t bit_set_words(std::uint64_t bits) {
  return bits > 0 ? static_cast<std::size_t>((bits - 1) / 32 + 2) : 2;
}

struct BitSet {
  std::vector<std::uint32_t> words; // empty: the set was never made, and holds nothing
};

BitSet make_empty_set(std::size_t bits);

// A bit beyond the end of the set is not in it.
inline bool test_bit(const BitSet &set, std::size_t bit) {
  const std::size_t word = 1 + bit / 32;
  return word < set.words.size() && (set.words[word] >> (bit % 32) & 1U) != 0;
}
// The set must be long enough for the bit.
inline void set_bit(BitSet &set, std::size_t bit) { set.words[1 + bit / 32] |= 1U << (bit % 32); }
inline void flip_bit(BitSet &set, std::size_t bit) { set.words[1 + bit / 32] ^= 1U << (bit % 32); }

} // namespace cubenet
