// The product terms of a design: one row ("cube") per term, all rows in one block that grows as it fills.
//
// Row layout (32-bit words): word 0 has the number of data words in its low 10 bits; data bit b is in word 1
// + b/32 at position b mod 32. Input k owns bits 2k ("the input may be 0") and 2k+1 ("the input may be 1");
// both set: the term does not depend on the input; exactly one set: a literal. Output j owns bit 2*NI + j:
// the term drives the output.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

namespace cubenet {

// One input in a row: its two bits as a number.
enum Literal : std::uint32_t { LITERAL_EMPTY = 0, LITERAL_COMPLEMENT = 1, LITERAL_TRUE = 2, LITERAL_ABSENT = 3 };

struct CubeTable {
  std::size_t inputs = 0;        // NI
  std::size_t outputs = 0;       // NO; 0: the layout is not known yet
  std::size_t words_per_row = 0; // count word included
  std::size_t capacity = 0;      // rows; starts at 10, grows to capacity + capacity/2 + 1
  std::size_t NUM_CUBES = 0;     // rows in use
  std::uint32_t *rows = nullptr; // owned; capacity * words_per_row words (untouched ones take no memory)

  CubeTable() = default;
  CubeTable(const CubeTable &) = delete;
  CubeTable &operator=(const CubeTable &) = delete;
  ~CubeTable();
};

// Gives the table its layout; takes no memory for rows. The table must hold no rows.
void set_cube_layout(CubeTable &table, std::size_t inputs, std::size_t outputs);

[[nodiscard]] inline bool has_layout(const CubeTable &table) { return table.outputs > 0; }

void grow_cubes(CubeTable &table);

// Makes room for one more row and returns it with its count word set and its data words uninitialised. The
// row is in the table once the caller has incremented NUM_CUBES; an invalid term is dropped by not doing so.
inline std::uint32_t *next_raw_cube(CubeTable &table) {
  if (table.NUM_CUBES == table.capacity) grow_cubes(table);
  std::uint32_t *row = table.rows + table.NUM_CUBES * table.words_per_row;
  row[0] = static_cast<std::uint32_t>(table.words_per_row - 1) & 0x3ffU;
  return row;
}

// The same with data words cleared.
std::uint32_t *next_cube(CubeTable &table);

void release_cubes(CubeTable &table);

inline const std::uint32_t *cube(const CubeTable &table, std::size_t index) {
  return table.rows + index * table.words_per_row;
}

inline Literal literal_at(const std::uint32_t *row, std::size_t input) {
  return static_cast<Literal>(row[1 + input / 16] >> (2 * (input % 16)) & 3U);
}

// The literals of 16 inputs as a mask: bit 2k is set when input k of the word has exactly one of its two bits
// set. The last input word may hold output bits; `mask` (from input_word_mask) cuts them off.
inline std::uint32_t literal_mask(std::uint32_t word, std::uint32_t mask) { return (word ^ (word >> 1)) & mask; }

constexpr std::uint32_t kAllInputs = 0x55555555U; // of a word

constexpr std::size_t input_words(const CubeTable &table) { return (table.inputs + 15) / 16; }
constexpr std::uint32_t input_word_mask(const CubeTable &table, std::size_t word) {
  const std::size_t left = table.inputs - word * 16;
  return left >= 16 ? kAllInputs : kAllInputs & ((1U << (2 * left)) - 1);
}

std::size_t count_literals(const CubeTable &table, const std::uint32_t *row);

// Calls visit(word, mask) for every input word of the row with literals, in order; mask as from literal_mask.
template <typename Visit> void for_each_literal_word(const CubeTable &table, const std::uint32_t *row, Visit visit) {
  const auto look_at = [&](std::size_t word, std::uint32_t all) {
    const std::uint32_t mask = literal_mask(row[1 + word], all);
    if (mask != 0) visit(static_cast<std::uint32_t>(word), mask);
  };
  const std::size_t whole = table.inputs / 16;
  for (std::size_t word = 0; word < whole; word++) look_at(word, kAllInputs);
  if (table.inputs % 16 != 0) look_at(whole, input_word_mask(table, whole));
}

// Calls visit(input, is_true) for every literal of an input word, in input order.
template <typename Visit>
void for_each_literal_of(const std::uint32_t *row, std::uint32_t word, std::uint32_t mask, Visit visit) {
  for (; mask != 0; mask &= mask - 1) {
    const auto bit = static_cast<std::uint32_t>(std::countr_zero(mask));
    visit(word * 16 + bit / 2, (row[1 + word] >> bit & 1U) == 0);
  }
}

// The same for the whole row.
template <typename Visit> void for_each_literal(const CubeTable &table, const std::uint32_t *row, Visit visit) {
  for_each_literal_word(table, row,
                        [&](std::uint32_t word, std::uint32_t mask) { for_each_literal_of(row, word, mask, visit); });
}

// Calls visit(output) for every output that the row drives, in output order.
template <typename Visit> void for_each_output(const CubeTable &table, const std::uint32_t *row, Visit visit) {
  const std::size_t first = 2 * table.inputs;
  for (std::size_t w = first / 32; w + 1 < table.words_per_row; w++) {
    std::uint32_t left = row[1 + w];
    if (w == first / 32) left &= ~0U << (first % 32);
    for (; left != 0; left &= left - 1) visit(w * 32 + static_cast<std::size_t>(std::countr_zero(left)) - first);
  }
}

} // namespace cubenet
