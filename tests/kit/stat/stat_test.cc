// The numbers of small netlists, counted by hand.
#include "kit/netlist/check_netlist.h"
#include "kit/stat/stat.h"

#include <nlohmann/json.hpp>

#include "kit/support/export_tools.h"

namespace cubekit {
namespace {

Statistics statistics_of(const std::string &name, const std::string &mode) {
  TempDir dir;
  Netlist netlist;
  std::ostringstream errors;
  EXPECT_TRUE(translate_example(dir, name, mode));
  EXPECT_TRUE(load_design(dir.file(name), netlist, errors)) << errors.str();
  return collect_statistics(netlist);
}

TEST(StatTest, CountsTermsLiteralsAndFanOutOfPlaBlocks) {
  const Statistics counter = statistics_of("counter", "-pla");
  EXPECT_EQ(counter.symbols, (std::map<std::string, std::size_t>{{"BUF", 2}, {"FD11", 2}, {"PLA", 4}}));
  EXPECT_EQ(counter.nets, 9U); // clk, and _C, _D, _PIN and _Q of both
  EXPECT_EQ(counter.terms, 5U);
  EXPECT_EQ(counter.literals, 7U);
  EXPECT_EQ(counter.depth, 2U); // a register's output buffer, and the block after it
  EXPECT_EQ(counter.storages, 2U);
}

TEST(StatTest, DepthEndsAtRegistersAndLoopsOfGatesAreCutOnce) {
  const Statistics adder = statistics_of("adder", "-and 2 -or 2");
  EXPECT_EQ(adder.loops, 0U);
  EXPECT_EQ(adder.storages, 0U);
  const Statistics latch = statistics_of("latch_lh", "-pla");
  EXPECT_EQ(latch.loops, 2U);
  EXPECT_EQ(latch.storages, 0U);
  EXPECT_EQ(latch.gate_inputs, 2U * (3U * 3U + 3U));
  const Statistics library_latch = statistics_of("latch_lh", "-pla -p Tarvex5128K");
  EXPECT_EQ(library_latch.loops, 0U);
  EXPECT_EQ(library_latch.storages, 2U);
}

TEST(StatTest, JsonHoldsWhatTheTextShows) {
  TempDir dir;
  ASSERT_TRUE(translate_example(dir, "bus", "-pla"));
  const nlohmann::json json = nlohmann::json::parse(run_kit("stat --json " + dir.file("bus")).text);
  EXPECT_EQ(json["pins"], (nlohmann::json{{"input", 3}, {"output", 1}, {"bidirectional", 2}}));
  EXPECT_EQ(json["symbols"]["by_primitive"]["XBIDI1"], 2);
  const std::string text = run_kit("stat " + dir.file("bus")).text;
  EXPECT_NE(text.find("nets          " + json["nets"].dump() + "\n"), std::string::npos) << text;
  EXPECT_NE(text.find("max " + json["fan_out"]["max"].dump() + " ("), std::string::npos) << text;
}

} // namespace
} // namespace cubekit
