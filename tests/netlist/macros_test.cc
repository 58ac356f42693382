// Placed macros: what their connections read and drive, and that no name of theirs clashes with another.
// (Every translation is checked for its wiring; see translate.)
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "netlist/translate.h"

namespace cubenet {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

TEST(Macros, ReadAndDriveSignalsInTheFormTheyName) {
  const std::string text = R"(#$ EXTERNAL m 2 in'i out'o
#$ PINS 5 a c y t k
#$ NODES 2 q n
#$ INSTANCE u1 m 2 q.Q y
#$ INSTANCE u2 m 2 t.PIN n
#$ INSTANCE u3 m 2 free t
.i 3
.o 5
.ilb a c n
.ob q.D q.C t.OE k q.AR
1-- 10100
-1- 01000
--1 00010
-01 00001
.e
)";
  const Translation result = translate(text);
  ASSERT_EQ(result.nxf_status, 0) << result.messages;
  EXPECT_THAT(symbol_lines_of(result.nxf, "u"),
              ElementsAre("m u3 HARD in=free out=t_H", "m u2 HARD in=t_PIN out=n", "m u1 HARD in=q_Q out=y_H"));
  EXPECT_THAT(symbol_lines_of(result.nxf, "y"), ElementsAre("BUF y_D A0=y_H Z0=y_PIN"));
  EXPECT_THAT(symbol_lines_of(result.nxf, "t_"), ElementsAre("PLA t_OE A0=a Z0=t_OE 1", "BUF t_D A0=t_H Z0=t_D",
                                                             "XBIDI1 t_Z A0=t_D OE=t_OE XB0=t Z0=t_PIN"));
  EXPECT_THAT(symbol_lines_of(result.nxf, "free"), ElementsAre("BUF free A0=GND Z0=free"));
}

TEST(Macros, NeverMeetNamesThatOthersHave) {
  RunSettings gates;
  gates.expand = true;
  gates.and_width = gates.or_width = 2;
  const char *const designs[] = {
      // a part of a signal that no equation makes, beside a pin of that name
      "#$ PINS 4 a y y_FOO k\n#$ INSTANCE u1 m 2 y.FOO k\n.i 2\n.o 1\n.ilb a y_FOO\n.ob y\n11 1\n.e\n",
      // two, four macros on one net
      "#$ PINS 3 a n_H y\n#$ INSTANCE u1 m 2 a n\n#$ INSTANCE u2 m 2 a n\n.i 2\n.o 1\n.ilb a n_H\n.ob y\n11 1\n.e\n",
      "#$ PINS 3 a y y_H\n#$ INSTANCE u1 m 2 a y\n#$ INSTANCE u2 m 2 a y\n#$ INSTANCE u3 m 2 a y.PIN\n#$ INSTANCE u4 m "
      "2 "
      "a y\n.i 1\n.o 1\n.ilb a\n.ob y_H\n1 1\n.e\n",
      // an equation already has the net
      "#$ PINS 4 a c y y_D_H\n#$ INSTANCE u1 m 2 a y.D\n#$ INSTANCE u2 m 2 a y\n.i 3\n.o 2\n.ilb a c y_D_H\n.ob y.D "
      "y.C\n1-1 10\n-1- 01\n.e\n",
      // instances named as gates, nets and each other
      "#$ PINS 3 a b cmp\n#$ INSTANCE cmp m 2 a k\n#$ INSTANCE cmp m 2 b j\n.i 2\n.o 1\n.ilb a b\n.ob cmp\n11 1\n.e\n",
      "#$ PINS 6 a b c y z _PLI_\n#$ INSTANCE _PLN_0 m 2 a _PLO_0_0_0\n#$ INSTANCE x m 2 x k\n.i 3\n.o 2\n.ilb a b "
      "c\n.ob y z\n110 11\n011 10\n001 10\n.e\n",
      // constants
      "#$ PINS 2 a y\n#$ INSTANCE u1 m 2 GND VCC\n#$ INSTANCE u2 m 2 VCC k\n.i 1\n.o 1\n.ilb a\n.ob y\n1 1\n.e\n",
  };
  for (const std::string design : designs) {
    for (const RunSettings &settings : {RunSettings{}, gates}) {
      const Translation result = translate("#$ EXTERNAL m 2 in'i out'o\n" + design, settings);
      EXPECT_EQ(result.nxf_status, 0) << design << result.messages;
      EXPECT_THAT(symbol_lines(result.nxf), Contains(StartsWith("m "))) << design;
    }
  }
}

// B and B_D make B the pin _PLA0_B of the first netlist and _RES_PLA0_B of the second.
TEST(Macros, MakeSignalsGiveWayWhereTheyMeetAndLeaveTheOthers) {
  struct Row {
    const char *instance, *in, *out;
    const char *ddf, *nxf; // the names of B
  };
  const Row rows[] = {
      {"_PLA0_C", "a", "_PLA00_B", "_PLA0_B", "_RES_PLA0_B"},
      {"_PLA0_B", "a", "k", "_PLA1_B", "_RES_PLA1_B"},
      {"_PLA1_B", "a", "_PLA0_B_C", "_PLA2_B", "_RES_PLA2_B"},
      {"_PLA0_B_C", "_PLA0_B_AR", "_PLA0_B_K", "_PLA1_B", "_RES_PLA1_B"}, // of those, B generates only B_C
      {"_RES_PLA0_B", "a", "k", "_PLA0_B", "_PLA0__RES_PLA0_B"},
      {"u", "a", "_RES_PLA0_B_PIN", "_PLA0_B", "_PLA0__RES_PLA0_B"},
      {"u", "_PLA0_B.C", "k", "_PLA1_B", "_RES_PLA1_B"},
  };
  for (const Row &row : rows) {
    const Translation result =
        translate(std::string("#$ EXTERNAL m 2 in'i out'o\n#$ PINS 3 a B_D B\n#$ INSTANCE ") + row.instance + " m 2 " +
                  row.in + ' ' + row.out + "\n.i 2\n.o 2\n.ilb a B_D\n.ob B.D B.C\n1- 10\n-1 01\n.e\n");
    EXPECT_THAT(result.ddf, HasSubstr(std::string("OUTPUTS: ") + row.ddf + ";\n")) << row.instance;
    EXPECT_THAT(result.nxf, HasSubstr(std::string("XPIN ") + row.nxf + " OUT ")) << row.instance;
  }
}

TEST(Macros, SharedNetsGetNumberedNames) {
  std::string text = "#$ EXTERNAL m 2 in'i out'o\n#$ PINS 2 a y\n";
  for (int i = 0; i < 400; i++) text += "#$ INSTANCE u" + std::to_string(i) + " m 2 a n\n";
  const Translation result = translate(text + ".i 1\n.o 1\n.ilb a\n.ob y\n1 1\n.e\n");
  EXPECT_THAT(symbol_lines_of(result.nxf, "u399"), ElementsAre("m u399 HARD in=a out=n"));
  EXPECT_THAT(symbol_lines_of(result.nxf, "u0"), ElementsAre("m u0 HARD in=a out=n_H_399"));
}

} // namespace
} // namespace cubenet
