// Whole designs: declarations, locks, attributes and paths; and what can't come from a file.
#include <string>

#include <gtest/gtest.h>

#include "drc/cases.h"
#include "drc/checking.h"
#include "model/run_settings.h"

namespace cubenet {
namespace {

// "pins | nodes | inputs | outputs"
Sketch sketch_of(const Case &given) {
  std::string parts[4], rest = given.design;
  for (std::string &part : parts) {
    part = rest.substr(0, rest.find('|'));
    rest.erase(0, part.size() + 1);
  }
  return {.pins = parts[0],
          .nodes = parts[1],
          .ilb = parts[2],
          .ob = parts[3],
          .statements = given.statements,
          .terms = given.terms};
}

TEST(CheckDesign, JudgesWholeDesigns) {
  for (const Case &each : read_cases("designs.txt")) {
    run_settings.case_sensitive = each.settings == "C";
    run_settings.debug_level = each.settings == "V" ? 1 : 0;
    run_settings.part_flag = each.settings == "8" ? 8 : each.settings == "5" ? 5 : 0;
    const Checking checking(sketch_of(each));
    reset_run_settings();
    EXPECT_EQ(checking.messages, each.messages) << each.design << '\n' << each.statements;
    EXPECT_EQ(describe_stored(*checking.design), each.stored) << each.design << '\n' << each.statements;
  }
}

// The reader refuses such path names earlier, and fills no numeric location.
TEST(CheckDesign, JudgesWhatNoFileBringsIn) {
  Checking checking({.pins = "a b y", .nodes = "", .ilb = "a b", .ob = "y"});
  EXPECT_EQ(checking.messages, "");
  Design &design = *checking.design;
  const std::string longest(255, 'n');
  for (const std::string &names : {std::string("p.1"), std::string("ok p:1"), std::string("\x01"), std::string("1p ok"),
                                   longest, longest + "x", longest + "y"})
    design.properties.push_back({.attr_name = 40, .pin_node_name = "A", .pi_node_ext = "", .attribute_value = names});
  design.properties.push_back({.attr_name = 45, .pin_node_name = "y", .pi_node_ext = "", .attribute_value = longest});
  design.properties.push_back({.attr_name = 99, .pin_node_name = "?", .pi_node_ext = "", .attribute_value = ""});
  design.pin_locations[1] = 17;
  checking.check();
  std::string expected;
  const auto refuse = [&](const std::string &fault, const std::string &name, const std::string &value) {
    expected += "31588 WARNING: " + fault + "; path name '" + name + "' is invalid; attribute 'SCP a " + value +
                "' is ignored\n";
  };
  refuse("Path name 'p.1' contains illegal character '.'", "p.1", "p.1");
  refuse("Path name 'p:1' contains illegal character ':'", "p:1", "ok p:1");
  refuse("Path name '\x01' contains illegal character '^A'", "\x01", "\x01");
  refuse("The first character of path name '1p' is a digit", "1p", "1p ok");
  EXPECT_EQ(checking.messages.substr(0, expected.size()), expected);
  std::size_t cut = 0;
  for (std::size_t at = 0; (at = checking.messages.find("31581 WARNING: Path name", at)) != std::string::npos; at++)
    cut++;
  EXPECT_EQ(cut, 2U) << checking.messages;
  EXPECT_EQ(design.ilb_attributes[0].names->SCP, longest);
  EXPECT_EQ(design.olb_attributes[0].names->ECP, longest);
  EXPECT_EQ(design.paths.size(), 3U);
  EXPECT_EQ(*design.xpins[1].xpin_num, "17");
}

} // namespace
} // namespace cubenet
