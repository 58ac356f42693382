// Lines of a file and words of a line.
#include <cstdio>
#include <random>

#include <gtest/gtest.h>

#include "reader/line_reader.h"
#include "reader/tokens.h"
#include "support/temp_dir.h"

namespace cubenet {
namespace {

std::vector<std::string> read_lines(std::string_view text) {
  std::FILE *file = std::tmpfile();
  EXPECT_EQ(std::fwrite(text.data(), 1, text.size(), file), text.size());
  std::rewind(file);
  std::vector<std::string> lines;
  {
    LineReader reader(file);
    for (std::string_view line; read_line(reader, line);) lines.emplace_back(cut_line(line));
    EXPECT_FALSE(reader.failed);
  }
  std::fclose(file);
  return lines;
}

TEST(LineReader, EndsLinesAtLineEndsAndTextsAtNulBytes) {
  const std::vector<std::string> expected{"", "a b", "\x80 c", "x", "", "last"};
  EXPECT_EQ(read_lines({"\na b \t\r\n\x80 c\nx \t\0y \n \0\nlast ", 27}), expected);
  EXPECT_TRUE(read_lines("").empty());
}

TEST(LineReader, LinesOfAnyLengthCrossTheBlocks) {
  std::mt19937 random(7);
  std::vector<std::string> expected;
  std::string text;
  for (int i = 0; i < 60; i++) {
    const std::size_t length = i % 7 == 0 ? 200'000 + random() % 900'000 : random() % 5000;
    std::string line(length, static_cast<char>('a' + i % 26));
    text += line;
    if (i % 5 == 0) text += std::string(1, '\0') + std::string(random() % 600'000, 'z');
    text += '\n';
    expected.push_back(std::move(line));
  }
  EXPECT_EQ(read_lines(text), expected);
}

TEST(LineReader, WhatFollowsANulByteTakesNoMemory) {
  std::FILE *zeros = std::tmpfile();
  std::fseek(zeros, 20'000'000, SEEK_SET);
  std::fputs("\nend", zeros);
  std::rewind(zeros);
  LineReader reader(zeros);
  std::string_view line;
  ASSERT_TRUE(read_line(reader, line));
  EXPECT_EQ(cut_line(line), "");
  ASSERT_TRUE(read_line(reader, line));
  EXPECT_EQ(line, "end");
  EXPECT_LE(reader.capacity, std::size_t{512} * 1024);
  std::fclose(zeros);
}

TEST(LineReader, AFailedReadIsNotTheEndOfTheFile) {
  const TempDir directory;
  std::FILE *file = std::fopen(directory.path.c_str(), "rb");
  ASSERT_NE(file, nullptr);
  LineReader reader(file);
  std::string_view line;
  EXPECT_FALSE(read_line(reader, line));
  EXPECT_TRUE(reader.failed);
  std::fclose(file);
}

TEST(Tokens, CarryTheirKindAndTheirFirstMarks) {
  constexpr auto none = std::string_view::npos;
  struct Row {
    std::string_view word;
    TokenKind kind;
    std::size_t dot, sign;
    std::string_view illegal;
  };
  const Row rows[] = {
      {"@`!#$%&'*/<>?[\\]_|~aZ09", TOKEN_PLAIN, none, none, ""},
      {"a.b.c-:", TOKEN_DOTTED, 1, 5, ""},
      {"9a.(+", TOKEN_DIGIT, 2, 4, "("},
      {"a.(", TOKEN_DOTTED, 1, none, "("},
      {"a;\"=", TOKEN_ILLEGAL, none, none, ";"},
      {"a\x01", TOKEN_ILLEGAL, none, none, "^A"},
      {"\xc3\xa4", TOKEN_ILLEGAL, none, none, "\xc3"},
  };
  for (const Row &row : rows) {
    const std::string line = " \t" + std::string(row.word) + " ,\t, next ,";
    std::string_view text = line;
    Token token;
    ASSERT_TRUE(next_token(text, token));
    EXPECT_EQ(token.text, row.word);
    EXPECT_EQ(token.kind, row.kind) << row.word;
    EXPECT_EQ(token.dot, row.dot) << row.word;
    EXPECT_EQ(token.sign, row.sign) << row.word;
    EXPECT_EQ(std::string_view(token.illegal.data()), row.illegal);
    EXPECT_EQ(count_tokens(text), 1U);
    ASSERT_TRUE(next_token(text, token));
    EXPECT_FALSE(next_token(text, token));
  }
}

TEST(Tokens, NumbersThatDoNotFitAreNone) {
  EXPECT_EQ(scan_decimal(" 12abc"), 12);
  EXPECT_EQ(scan_decimal("+7"), 7);
  EXPECT_EQ(scan_decimal("2147483647"), 2147483647);
  EXPECT_EQ(scan_decimal("-2147483648"), -2147483647 - 1);
  for (const char *text : {"", "x", "+", "- 1", "2147483648", "-2147483649", "99999999999999999999"})
    EXPECT_EQ(scan_decimal(text), std::nullopt) << text;
}

} // namespace
} // namespace cubenet
