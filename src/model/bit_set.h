// Bit sets in the row layout of the cube table: word 0 has the number of data words in its low 10 bits, bit b
// is in word 1 + b/32 at position b mod 32.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace cubenet {

// The number of words of a set of `bits` bits, including the count word; an empty set still has one data
// word. 64 bits, because the input may claim rows of more than 2^32 bits.
constexpr std::size_t bit_set_words(std::uint64_t bits) {
  return bits > 0 ? static_cast<std::size_t>((bits - 1) / 32 + 2) : 2;
}

struct BitSet {
  std::vector<std::uint32_t> words; // empty: the set was never made and has no members
};

BitSet make_empty_set(std::size_t bits);

// Bits beyond the end of the set are not in it.
inline bool test_bit(const BitSet &set, std::size_t bit) {
  const std::size_t word = 1 + bit / 32;
  return word < set.words.size() && (set.words[word] >> (bit % 32) & 1U) != 0;
}
// The set must be long enough for the bit.
inline void set_bit(BitSet &set, std::size_t bit) { set.words[1 + bit / 32] |= 1U << (bit % 32); }
inline void flip_bit(BitSet &set, std::size_t bit) { set.words[1 + bit / 32] ^= 1U << (bit % 32); }

} // namespace cubenet
