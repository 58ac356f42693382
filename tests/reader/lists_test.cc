// The four lists: what is stored of good items, and the message for each bad one.
#include <gtest/gtest.h>

#include "reader/reading.h"

namespace cubenet {
namespace {

std::string inverted(const BitSet &set, std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; i++) text += test_bit(set, i) ? '-' : '+';
  return text;
}

TEST(Lists, GoodItemsAreStored) {
  const std::string name(50, 'n');
  const Reading reading("#$ PINS 5 a+ b-:12 d-+:7 " + name + " f-\n#$ NODES 3 y:12,z+ " + name + "\n.i 3\n.o 3\n" +
                        ".ilb a.pin b a.d.x1-\n.ob d.reg.x1- c+-- e--\n111 111\n");
  ASSERT_NE(reading.design, nullptr);
  const Design &design = *reading.design;
  EXPECT_EQ(join(design.pin_names), "a b d " + name + " f ");
  EXPECT_EQ(inverted(design.pin_inversion, 5), "+--+-");
  EXPECT_EQ(join(design.node_names), "y z " + name + " ");
  EXPECT_EQ(join(design.ILB) + join(design.IB_EXT), "a b a PIN  D.X1 ");
  EXPECT_EQ(join(design.OLB) + join(design.OB_EXT), "d c e REG.X1   ");
  EXPECT_EQ(inverted(design.output_inversion, 3), "-+-");
}

TEST(Lists, EachFaultOfAnItemHasItsMessage) {
  check_case_file("lists.txt", [](std::string_view text) { return std::string(text); });
}

TEST(Lists, NamesEndAtFiftyCharacters) {
  const auto numbers = [](const std::string &name) {
    const Reading reading("#$ PINS 2 " + name + ":9 b\n#$ NODES 1 " + name + ":9\n.i 2\n.o 1\n.ilb " + name + " " +
                          name.substr(2) + ".Q\n.ob " + name + "\n11 1\n");
    return message_numbers(reading.messages);
  };
  EXPECT_EQ(numbers(std::string(50, 'a')), "31527 ");
  EXPECT_EQ(numbers(std::string(51, 'a')), "31218 31527 31219 31228 31228 31228 ");
  EXPECT_EQ(numbers(std::string(300, 'a')), "31218 31219 31228 31228 31228 "); // cut before its ':'
}

} // namespace
} // namespace cubenet
