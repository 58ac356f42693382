// What the cases must reach: every message number that the sources can report, and every keyword of an
// attribute statement, accepted.
#include <algorithm>
#include <filesystem>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "drc/check_design.h"
#include "model/names.h"
#include "reader/property_keywords.h"
#include "reader/reading.h"
#include "reader/switches.h"
#include "support/capture.h"
#include "support/temp_dir.h"

namespace cubenet {
namespace {

namespace fs = std::filesystem;
using Texts = std::set<std::string>;

bool is_number(char c) { return c >= '0' && c <= '9'; }
bool is_word(char c) {
  return is_number(c) || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || c == '\'' || c == '.';
}

// The end of the literal that the quote at `at` opens.
std::size_t skip_literal(std::string_view source, std::size_t at) {
  const char quote = source[at++];
  while (at < source.size() && source[at] != quote) at += source[at] == '\\' ? 2 : 1;
  return at + 1;
}

// Numbers of five digits or more outside of comments and literals: those of messages, since other constants
// of that size are written with digit separators.
void collect_reported(std::string_view source, Texts &numbers) {
  for (std::size_t at = 0; at < source.size();) {
    if (source.substr(at, 2) == "//") {
      at = std::min(source.find('\n', at), source.size());
    } else if (source[at] == '"' || source[at] == '\'') {
      at = skip_literal(source, at);
    } else if (is_word(source[at])) {
      const std::size_t start = at;
      while (at < source.size() && is_word(source[at])) at++;
      const std::string_view word = source.substr(start, at - start);
      if (word.size() >= 5 && std::all_of(word.begin(), word.end(), is_number)) numbers.emplace(word);
    } else {
      at++;
    }
  }
}

// Expected messages: "<number> <label>: " at the start of a line, after the mark of a case file, or at the
// start of a literal.
void collect_expected(const std::string &content, Texts &numbers) {
  const std::string text = "\n" + content;
  for (const std::string label : {" ERROR: ", " WARNING: ", " SYSTEM ERROR: "})
    for (std::size_t end = 0; (end = text.find(label, end)) != std::string::npos; end++) {
      std::size_t start = end;
      while (is_number(text[start - 1])) start--;
      const std::string_view before = std::string_view(text).substr(0, start);
      if (before.ends_with("\n") || before.ends_with("\n> ") || before.ends_with("\n! ") || before.ends_with("\""))
        numbers.insert(text.substr(start, end - start));
    }
}

// Files of one folder that are compared with what the stages report, without the sources of tests that make
// reports of their own.
void collect_expected_in(const fs::path &folder, Texts &numbers) {
  for (const auto &entry : fs::recursive_directory_iterator(folder)) {
    if (!entry.is_regular_file()) continue;
    const std::string extension = entry.path().extension(), name = entry.path().filename();
    if (extension != ".txt" && extension != ".cc" && !name.starts_with("console")) continue;
    const std::string text = read_file(entry.path());
    const bool reports = text.find("report_error(") != std::string::npos;
    if (extension != ".cc" || !reports) collect_expected(text, numbers);
  }
}

TEST(Coverage, EveryMessageNumberIsDrawnByACase) {
  const fs::path project = PROJECT_DIR;
  Texts reported, expected, missing;
  for (const auto &entry : fs::recursive_directory_iterator(project / "src"))
    if (entry.is_regular_file()) collect_reported(read_file(entry.path()), reported);
  for (const char *folder : {"end_to_end", "drc", "reader", "frame", "report"})
    collect_expected_in(project / "tests" / folder, expected);
  std::set_difference(reported.begin(), reported.end(), expected.begin(), expected.end(),
                      std::inserter(missing, missing.begin()));
  EXPECT_EQ(missing, Texts());
  EXPECT_GT(reported.size(), 200U);
}

// How a statement uses its keyword: "KEYWORD", "KEYWORD =SETTING", or "KEYWORD of the device".
std::string use_of(const KeywordRow &row, std::string rest) {
  std::string keyword(row.keyword);
  if (row.handler == HANDLE_EITHER && is_switch_value(row, rest)) return keyword + " of the device";
  if (!rest.starts_with("=")) return keyword;
  rest.erase(0, rest.find_first_not_of("= "));
  return keyword + " =" + upper_case(rest.substr(0, rest.find(' ')));
}

void collect_uses(const std::string &text, Texts &uses) {
  const std::string head = "#$ PROPERTY CORVANE ";
  for (std::size_t at = 0, end = 0; at < text.size(); at = end + 1) {
    end = std::min(text.find('\n', at), text.size());
    const std::string line = text.substr(at, end - at);
    if (!upper_case(line).starts_with(head)) continue;
    const std::size_t blank = line.find(' ', head.size());
    const KeywordRow *row = find_keyword(line.substr(head.size(), blank - head.size()));
    ASSERT_NE(row, nullptr) << line;
    uses.insert(use_of(*row, line.substr(blank + 1)));
  }
}

TEST(Coverage, EveryKeywordIsAcceptedInEachOfItsUses) {
  Texts uses;
  for (const auto &entry : fs::directory_iterator(PROJECT_DIR "/tests/end_to_end/cases/accepted_statements")) {
    if (entry.path().extension() != ".tt2") continue;
    const std::string text = read_file(entry.path());
    const Reading reading(text);
    ASSERT_NE(reading.design, nullptr) << entry.path();
    CapturedMessages captured;
    EXPECT_EQ(check_design(*reading.design, reading.cubes), 0);
    EXPECT_EQ(reading.messages + captured.take_unwrapped(), "Checking design rules...\n") << entry.path();
    collect_uses(text, uses);
  }
  for (const KeywordRow &row : keyword_rows()) {
    const std::string keyword(row.keyword);
    EXPECT_TRUE(uses.contains(keyword)) << keyword;
    EXPECT_TRUE(row.handler != HANDLE_EITHER || uses.contains(keyword + " of the device")) << keyword;
    if (row.setting == SETTING_NONE) continue;
    for (const Attribute &attribute : kAttributes) {
      if (attribute.keyword != row.spelling || attribute.setting.empty()) continue;
      EXPECT_TRUE(uses.contains(keyword + " =" + std::string(attribute.setting))) << attribute_name(attribute);
    }
  }
}

} // namespace
} // namespace cubenet
