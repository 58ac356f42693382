// Drawings: dot accepts them, and they show each symbol and each connection once.
#include "kit/draw/graph.h"
#include "kit/netlist/check_netlist.h"

#include "kit/support/export_tools.h"

namespace cubekit {
namespace {

std::size_t count(const std::string &text, const std::string &part) {
  std::size_t found = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) found++;
  return found;
}

TEST(GraphTest, EverySymbolPinAndConnectionIsDrawnOnceAndDotTakesIt) {
  for_each_translation(kModes, [](const std::string &name, const TempDir &dir, const Netlist &netlist) {
    std::ostringstream dot;
    ASSERT_TRUE(write_dot(dot, netlist, ""));
    std::size_t outputs = 0, rails = 0;
    for (const ExternalPin &pin : netlist.external_pins) outputs += pin.direction == Direction::OUT ? 1 : 0;
    for (const Net &net : netlist.nets) rails += net.rail ? 1 : 0;
    EXPECT_EQ(count(dot.str(), "[label="), netlist.symbols.size() + netlist.external_pins.size() + rails);
    EXPECT_EQ(count(dot.str(), " -> "), netlist.destinations.size() + outputs);
    write_file(dir.file("design.dot"), dot.str());
    const Outcome drawn = run("dot -Tplain " + dir.file("design.dot") + " -o " + dir.file("plain"));
    EXPECT_EQ(drawn.text, "");
    EXPECT_EQ(drawn.status, 0);
    EXPECT_EQ(run_kit("graph " + dir.file(name)).text, dot.str());
  });
}

TEST(GraphTest, SymbolsStandInTheBoxOfTheirSignal) {
  TempDir dir;
  Netlist netlist;
  std::ostringstream errors;
  ASSERT_TRUE(translate_example(dir, "latch_lh", "-and 2 -or 2"));
  ASSERT_TRUE(load_design(dir.file("latch_lh"), netlist, errors));
  const auto signals = signals_of_symbols(netlist);
  for (SymbolIndex i = 0; i < netlist.symbols.size(); i++) {
    const std::string_view instance = netlist.symbols[i].instance;
    for (const std::string_view signal : {"level", "shadow", "differs"})
      EXPECT_TRUE(!instance.starts_with(signal) || signals[i] == signal) << instance << " in " << signals[i];
    // An inverter of the plane serves both latches, a term of one output only that one.
    EXPECT_TRUE(!instance.starts_with("_PLN_") || signals[i] == "differs") << instance << " in " << signals[i];
  }
}

TEST(GraphTest, TheConeOfASignalHoldsWhatItDependsOnAndNothingElse) {
  TempDir dir;
  ASSERT_TRUE(translate_example(dir, "latch_lh", "-pla"));
  const std::string level = run_kit("graph --signal level " + dir.file("latch_lh")).text;
  for (const std::string part : {"\"level\"", "\"comparator\"", "nlevel_5\"", "nlevel_AR\""})
    EXPECT_NE(level.find(part), std::string::npos) << part;
  EXPECT_EQ(level.find("shadow"), std::string::npos) << level;
  EXPECT_EQ(level.find("differs"), std::string::npos) << level;
  const std::string differs = run_kit("graph --signal differs " + dir.file("latch_lh")).text;
  EXPECT_NE(differs.find("nshadow_5\""), std::string::npos);
  EXPECT_EQ(count(differs, "shape=cds, style=bold"), 1U) << differs;
  EXPECT_EQ(run_kit("graph --signal nobody " + dir.file("latch_lh")).status, 2);
}

TEST(GraphTest, SvgIsMadeByDot) {
  TempDir dir;
  ASSERT_TRUE(translate_example(dir, "macro", "-pla"));
  const Outcome outcome = run_kit("graph --svg " + dir.file("macro") + " -o " + dir.file("macro.svg"));
  EXPECT_EQ(outcome.text, "");
  const std::string svg = read_file(dir.file("macro.svg"));
  EXPECT_NE(svg.find("<svg"), std::string::npos);
  EXPECT_NE(svg.find(">cmp2</text>"), std::string::npos);
  EXPECT_EQ(run_kit("graph --svg " + dir.file("macro")).text, svg);
  EXPECT_EQ(run("PATH=/nowhere " CUBEKIT_PROGRAM " graph --svg " + dir.file("macro")).status, 2);
}

} // namespace
} // namespace cubekit
