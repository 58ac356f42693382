// The limit probe: how fast can one core turn a truth table into two-bit cubes and print netlist text? No translator:
// it takes the generated shapes only, checks nothing beyond the alphabet, reports nothing, and knows no options.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace probe {

[[noreturn]] void die(const char *what);

struct Table {
  std::size_t inputs = 0, outputs = 0;
  std::size_t words = 0, output_word = 0; // outputs start at a fresh word
  std::uint32_t *rows = nullptr;          // never released: the process ends with its table
  std::size_t count = 0, capacity = 0;
  std::string design;
  std::vector<std::string> input_names, output_names;
};

void read_table(int descriptor, Table &table);

inline const std::uint32_t *row_of(const Table &table, std::size_t term) { return table.rows + term * table.words; }

// Calls visit(input, is_complemented) for every literal of the row.
template <typename Visit> void for_each_literal(const Table &table, const std::uint32_t *row, Visit visit) {
  for (std::size_t w = 0; w < table.output_word; w++) {
    for (std::uint32_t left = (row[w] ^ (row[w] >> 1)) & 0x55555555U; left != 0; left &= left - 1) {
      const auto bit = static_cast<std::uint32_t>(std::countr_zero(left));
      visit(static_cast<std::uint32_t>(w * 16) + bit / 2, (row[w] >> bit & 1U) != 0);
    }
  }
}

template <typename Visit> void for_each_output(const Table &table, const std::uint32_t *row, Visit visit) {
  for (std::size_t w = table.output_word; w < table.words; w++)
    for (std::uint32_t left = row[w]; left != 0; left &= left - 1)
      visit(static_cast<std::uint32_t>((w - table.output_word) * 32) +
            static_cast<std::uint32_t>(std::countr_zero(left)));
}

// Numbers grouped into lists: list i is items[starts[i]] .. items[starts[i + 1]].
struct Lists {
  std::vector<std::uint32_t> starts, items;
};
Lists terms_by_output(const Table &table);
// List 2 * input + is_complemented: term << 8 | place of the literal in the term.
Lists literals_by_input(const Table &table);
// Where an input is needed by the terms, ascending.
std::vector<std::uint32_t> used_inputs(const Table &table, const std::uint32_t *terms, std::size_t count);

struct Sink {
  int descriptor;
  char *block = nullptr;
  std::size_t used = 0, capacity = 0;
};

Sink open_sink(const std::string &path);
void close_sink(Sink &sink);
char *grow(Sink &sink, std::size_t bytes);
inline char *room(Sink &sink, std::size_t bytes) {
  return sink.used + bytes <= sink.capacity ? sink.block + sink.used : grow(sink, bytes);
}
inline void commit(Sink &sink, const char *end) { sink.used = static_cast<std::size_t>(end - sink.block); }

inline constexpr std::array<std::array<char, 2>, 100> kPairs = [] {
  std::array<std::array<char, 2>, 100> pairs{};
  for (std::size_t n = 0; n < pairs.size(); n++)
    pairs[n] = {static_cast<char>('0' + n / 10), static_cast<char>('0' + n % 10)};
  return pairs;
}();

inline char *put(char *at, std::string_view text) {
  std::memcpy(at, text.data(), text.size());
  return at + text.size();
}
// Two digits at a time; numbers below ten, the most frequent ones, at once.
inline char *put_number(char *at, std::uint32_t value) {
  if (value < 10) {
    *at = static_cast<char>('0' + value);
    return at + 1;
  }
  char digits[10];
  char *first = digits + sizeof digits;
  for (; value >= 100; value /= 100) std::memcpy(first -= 2, kPairs[value % 100].data(), 2);
  if (value >= 10)
    std::memcpy(first -= 2, kPairs[value].data(), 2);
  else
    *--first = static_cast<char>('0' + value);
  return put(at, {first, static_cast<std::size_t>(digits + sizeof digits - first)});
}
// Pieces in a row: texts and numbers. A short string lies in the sixteen bytes of its own record.
inline char *put_piece(char *at, std::string_view text) { return put(at, text); }
inline char *put_piece(char *at, const char *text) { return put(at, text); }
inline char *put_piece(char *at, const std::string &text) {
  if (text.size() > 15) return put(at, text);
  std::memcpy(at, text.data(), 16);
  return at + text.size();
}
inline char *put_piece(char *at, std::uint32_t number) { return put_number(at, number); }
template <typename... Pieces> char *put_all(char *at, const Pieces &...pieces) {
  ((at = put_piece(at, pieces)), ...);
  return at;
}
template <typename... Pieces> void print(Sink &sink, const Pieces &...pieces) {
  commit(sink, put_all(room(sink, 64 * sizeof...(pieces)), pieces...));
}

// One row per term over the inputs in `used`, each with a tab before it and " 1" behind it.
void print_rows(Sink &sink, const Table &table, const std::uint32_t *terms, std::size_t count,
                const std::vector<std::uint32_t> &used);

// Text that is like a netlist: PLA blocks, or gates with their nets.
void print_pla_blocks(const Table &table, const std::string &path);
void print_gates(const Table &table, const std::string &path);

// The files that the program writes, byte for byte, for a shape whose outputs all have several terms and whose terms
// all have several literals: stem.ddf, stem.tvx and stem.nxf, with PLA blocks or with gates of at most 12 inputs.
void print_same_files(const Table &table, const std::string &stem, bool gates);

} // namespace probe
