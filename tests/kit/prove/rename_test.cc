// Which names signals have in the netlist, worked out by hand.
#include <string>
#include <vector>

#include "kit/prove/meaning.h"
#include "kit/prove/rename.h"
#include "kit/support/translate.h"

namespace cubekit {
namespace {

struct RenameRow {
  std::vector<std::string> pins; // the last one is driven by the others
  const char *extension;         // of its equation beside .C; empty: it is combinational
  std::vector<std::string> expected;
};

TEST(Renaming, FollowsItsRulesThroughBothNetlists) {
  const cubenet::WorkingDir directory;
  const RenameRow rows[] = {
      {{"a", "b", "y"}, "", {"a", "b", "y"}},
      {{"GND", "b", "y"}, "", {"_RES_GND", "b", "y"}},
      {{"Vcc", "gnd", "y"}, "", {"_RES_Vcc", "_RES_gnd", "y"}},
      {{"a", "a_REG", "y"}, "", {"_RES_PLA0_a", "a_REG", "y"}},
      {{"y_D", "b_x", "y"}, "D", {"y_D", "b_x", "_RES_PLA0_y"}},
      {{"_PLA7", "b", "y"}, "", {"_RES_PLA7", "b", "y"}},
      {{"_RES_q", "b", "y"}, "", {"_RES_q", "b", "y"}},
      {{"_RES_q", "y_Q", "y"}, "", {"_RES_RES_RES_q", "y_Q", "_RES_PLA0_y"}},
      {{"a", "y_CE", "y"}, "D", {"a", "y_CE", "y"}},              // no clock enable, no net of that name
      {{"a", "y_CE", "y"}, "D CE", {"a", "y_CE", "_RES_PLA0_y"}}, // but here there is
      {{"y_CE_8", "y_CE", "y"}, "D", {"y_CE_8", "_RES_PLA0_y_CE", "y"}},
  };
  for (const RenameRow &row : rows) {
    const std::string &y = row.pins[2];
    std::string outputs, ones;
    std::istringstream words(*row.extension == '\0' ? std::string() : std::string(row.extension) + " C");
    for (std::string word; words >> word;) outputs += ' ' + y + '.' + word, ones += '1';
    if (outputs.empty()) outputs = ' ' + y, ones = "1";
    Translation translation;
    translate("#$ PINS 3 " + row.pins[0] + ' ' + row.pins[1] + ' ' + y + "\n.i 2\n.o " + std::to_string(ones.size()) +
                  "\n.ilb " + row.pins[0] + ' ' + row.pins[1] + "\n.ob" + outputs + "\n11 " + ones + "\n.end\n",
              "", translation);
    ASSERT_EQ(translation.status, 0) << translation.console;
    Netlist netlist;
    ASSERT_TRUE(load_nxf("d.nxf", netlist, std::cerr));
    Meaning meaning;
    std::string error;
    ASSERT_TRUE(make_meaning(*translation.design, translation.cubes, meaning, error)) << error;
    EXPECT_EQ(netlist_names(meaning, netlist, false), row.expected);
    std::vector<std::string> in_file;
    for (const ExternalPin &pin : netlist.external_pins) in_file.emplace_back(pin.pin);
    EXPECT_EQ(in_file, row.expected);
  }
}

} // namespace
} // namespace cubekit
