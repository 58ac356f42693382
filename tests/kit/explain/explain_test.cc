// Every number that the translator's sources can report must have its explanation.
#include <filesystem>
#include <regex>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "kit/explain/explain.h"
#include "support/temp_dir.h"

namespace cubekit {
namespace {

TEST(Explain, KnowsEveryNumberThatTheSourcesReportAndNoOther) {
  std::set<long> reported;
  const std::regex number("\\b(3[13]\\d{3}|312290|\\d{1,3}31270)\\b");
  for (const auto &entry : std::filesystem::recursive_directory_iterator(PROJECT_DIR "/src")) {
    if (!entry.is_regular_file()) continue;
    const std::string text = cubenet::read_file(entry.path());
    for (std::sregex_iterator at(text.begin(), text.end(), number), end; at != end; ++at)
      reported.insert(std::stol(at->str()));
  }
  EXPECT_GT(reported.size(), 190U);
  for (const long each : reported) {
    const std::string text = explain(each);
    EXPECT_EQ(text.rfind(std::to_string(each) + ": ", 0), 0U) << each;
    EXPECT_NE(text.find("\n  Why: "), std::string::npos) << each;
    EXPECT_NE(text.find("\n  What to do: "), std::string::npos) << each;
  }
  for (const auto &rows : {reader_explanations(), attribute_explanations(), checker_explanations()})
    for (const Explanation &row : rows)
      EXPECT_TRUE(reported.count(row.number) != 0) << row.number << " is never reported";
  EXPECT_EQ(explain(31270), "");
}

} // namespace
} // namespace cubekit
