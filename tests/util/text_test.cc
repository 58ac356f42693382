#include "util/growing_string.h"
#include "util/words.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace cubenet {
namespace {

TEST(Words, EverySingleSpaceSeparatesTwoWords) {
  const struct {
    std::string text;
    std::vector<std::string> words;
  } rows[] = {
      {"", {""}},
      {" ", {"", ""}},
      {"one", {"one"}},
      {" a  b ", {"", "a", "", "b", ""}},
      {"0 1 2 3 4 5 6 7 8 9 10\t11", {"0", "1", "2", "3", "4", "5", "6", "7", "8", "9", "10\t11"}},
  };
  std::vector<char *> words;
  for (const auto &row : rows) {
    std::string text = row.text;
    EXPECT_EQ(split_words(text.data(), words), row.words.size());
    EXPECT_EQ(std::vector<std::string>(words.begin(), words.end()), row.words) << '"' << row.text << '"';
  }
}

TEST(Words, ANewTextStartsANewScan) {
  std::string first = "a b", second = "c";
  EXPECT_STREQ(next_word(first.data()), "a");
  EXPECT_STREQ(next_word(second.data()), "c");
  EXPECT_EQ(next_word(nullptr), nullptr);
  EXPECT_EQ(next_word(nullptr), nullptr);
}

TEST(GrowingString, GrowsToTwiceTheJoinedLengthAndTwo) {
  GrowingString string(4);
  append(string, "abc");
  EXPECT_EQ(string.capacity, 4U);
  append(string, "");
  append(string, "d");
  EXPECT_EQ(string.capacity, 10U);
  append(string, view(string).substr(0, 2)); // ends at the last free place but one
  append(string, "efg");
  EXPECT_EQ(string.capacity, 10U);
  append(string, "h");
  EXPECT_EQ(string.capacity, 22U);
  EXPECT_STREQ(string.text, "abcdabefgh");
}

} // namespace
} // namespace cubenet
