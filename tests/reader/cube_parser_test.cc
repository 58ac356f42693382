// Product terms: what each character means, and that the fast path agrees with the plain one.
#include "reader/cube_parser.h"

#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "model/bit_set.h"
#include "model/cube_table.h"

namespace cubenet {
namespace {

std::string show_row(const CubeTable &table, const std::uint32_t *row) {
  std::string text;
  for (std::size_t k = 0; k < table.inputs; k++) text += "?01-"[literal_at(row, k)];
  text += ' ';
  text += std::string(table.outputs, '0');
  for_each_output(table, row, [&](std::size_t j) { text[text.size() - table.outputs + j] = '1'; });
  return text;
}

TEST(CubeParser, EveryCharacterHasItsMeaning) {
  struct Row {
    const char *line;
    TermStatus status;
    const char *cube; // or the text from the illegal character on
  };
  const Row rows[] = {
      {"1-0 | 01", TERM_DRIVES, "1-0 01"}, {"|\t2 0 1 4|~ \t|", TERM_DRIVES, "-01 10"},
      {"1-000", TERM_EMPTY, "1-0 00"},     {"1112-", TERM_EMPTY, "111 00"},
      {"111 3~", TERM_EMPTY, "111 00"},    {"1-", TERM_SHORT, ""},
      {"1-0 1", TERM_SHORT, ""},           {"1-0 1|", TERM_SHORT, ""},
      {"1-0 01 1", TERM_LONG, ""},         {"1-0 01x", TERM_LONG, ""},
      {"1~0 01", TERM_ILLEGAL, "~0 01"},   {"130 01", TERM_ILLEGAL, "30 01"},
      {"1-0 5", TERM_ILLEGAL, "5"},        {"1\xff", TERM_ILLEGAL, "\xff"},
      {"1-0\x80", TERM_ILLEGAL, "\x80"},   {"x", TERM_ILLEGAL, "x"},
  };
  for (const Row &row : rows) {
    CubeTable table;
    set_cube_layout(table, 3, 2);
    std::uint32_t *data = next_cube(table);
    const TermResult result = parse_term(row.line, 3, 2, data);
    EXPECT_EQ(result.status, row.status) << row.line;
    EXPECT_EQ(parse_term(row.line, 3, 2, nullptr).status, row.status) << row.line;
    const std::string shown = result.status == TERM_ILLEGAL ? row.line + result.at
                              : *row.cube != 0              ? show_row(table, data)
                                                            : "";
    EXPECT_EQ(shown, row.cube) << row.line;
  }
}

// The parts of one random term, sometimes with a character that the fast path must leave to the plain one.
std::string random_term(std::mt19937 &random, std::size_t inputs, std::size_t outputs) {
  const auto pick = [&](std::string_view characters) { return characters[random() % characters.size()]; };
  const bool is_sparse = random() % 3 == 0;
  std::string line;
  for (std::size_t k = 0; k < inputs; k++) line += pick("01-2");
  for (const char *separator : {"", " ", " | ", "\t|"})
    if (random() % 2 == 0) line += separator;
  for (std::size_t j = 0; j < outputs; j++) line += is_sparse ? '0' : pick("01423~-");
  for (std::size_t fault = random() % 8; fault > 5; fault--)
    line[random() % line.size()] = static_cast<char>(random() % 256);
  if (random() % 16 == 0) line.resize(random() % line.size());
  if (random() % 16 == 0) line += pick(" |01x");
  return line;
}

TEST(CubeParser, TheFastWayAgreesWithThePlainOne) {
  std::mt19937 random(11);
  std::size_t taken = 0;
  for (int round = 0; round < 40'000; round++) {
    const std::size_t inputs = 1 + random() % 70, outputs = 1 + random() % 70;
    const std::string line = random_term(random, inputs, outputs);
    const std::size_t words = bit_set_words(2 * inputs + outputs);
    // After the row comes a word that neither may touch.
    std::vector<std::uint32_t> fast(words + 1, 0xdeadbeef), plain(words + 1, 0);
    bool drives = false;
    if (!parse_packed_term({line.data(), line.size()}, inputs, outputs, fast.data(), drives)) continue;
    taken++;
    const TermResult result = parse_term(line, inputs, outputs, plain.data());
    ASSERT_EQ(result.status, drives ? TERM_DRIVES : TERM_EMPTY) << line;
    fast[0] = plain[0];
    ASSERT_EQ(fast.back(), 0xdeadbeef);
    plain.back() = fast.back();
    ASSERT_EQ(fast, plain) << inputs << "x" << outputs << " " << line;
  }
#if defined(__SSE2__)
  EXPECT_GT(taken, 15'000U);
#endif
}

} // namespace
} // namespace cubenet
