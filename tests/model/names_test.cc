// Spelling of signals in messages and netlists, and comparison of names.
#include "model/names.h"

#include <string>

#include <gtest/gtest.h>

namespace cubenet {
namespace {

TEST(Names, ExtensionsAreSpelledForMessagesAndForNetlists) {
  const char *const rows[][3] = {{"", "A", "A"},
                                 {"OE", "A.OE", "A_OE"},
                                 {"REG", "A.REG", "A_REG"},
                                 {"D.X1", "A.D.X1", "A_DX1"},
                                 {"REG.X2", "A.REG.X2", "A_GX2"},
                                 {"T.X2", "A.T.X2", "A_TX2"},
                                 {"CLK", "A.CLK", "A_CLK"}};
  for (const auto &[extension, message, netlist] : rows) {
    EXPECT_EQ(display_name("A", extension), message);
    EXPECT_EQ(netlist_name("A", extension), netlist);
  }
}

TEST(Names, ExtensionsAreClassifiedAsTheyStandInUpperCase) {
  EXPECT_EQ(extension_code("CLK"), EXT_C);
  for (const char *extension : {"FC", "LD"}) EXPECT_EQ(extension_code(extension), 61);
  for (const char *extension : {"d", "X3", "D.X3", "D.", ".D", "REG.X", "D "}) EXPECT_EQ(extension_code(extension), 62);
}

TEST(Names, CaseMeansTheLettersOfAsciiAlone) {
  EXPECT_TRUE(equal_names("aZ_9", "Az_9", false));
  EXPECT_FALSE(equal_names("aZ_9", "Az_9", true));
  EXPECT_FALSE(equal_names("a", "ab", false));
  for (const auto &[a, b] : {std::pair("@", "`"), std::pair("[", "{"), std::pair("\xc4", "\xe4"), std::pair("Z", "[")})
    EXPECT_FALSE(equal_names(a, b, false)) << a;
  EXPECT_EQ(upper_case("az{\xe4.d"), "AZ{\xe4.D");
}

} // namespace
} // namespace cubenet
