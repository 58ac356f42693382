// Minimized tables as files: what stays unchanged, and that the translator reads the same function.
#include <cstdlib>
#include <sstream>
#include <string>

#include <gtest/gtest.h>
#include <sys/wait.h>

#include "support/temp_dir.h"

namespace cubekit {
namespace {

int run(const std::string &line) { return WEXITSTATUS(std::system(line.c_str())); }

TEST(MinimizedTable, KeepsEveryByteThatIsNoTerm) {
  const cubenet::WorkingDir directory;
  cubenet::write_file("d.tt2", "# in front\r\n#$ PINS 5 a b c y z\r\n.TYPE fd\r\n.i 3\n.o 2\n.ilb a b c\n.ob y- z\n"
                               ".p\t 7 # announced\n"
                               "\t11 0 | 1 0 \r\n# between\n\n 11 1|1  0\n 01 0  - 0\n011 2 0\n 1 0 1 0 1\n1 0 0 ~4\n"
                               "  --0 0-\n \t\n.unknown .p 3\n.e\n000 11\n.p 3");
  ASSERT_EQ(run(CUBEKIT_PROGRAM " minimize d -o out.tt2 >said"), 0);
  EXPECT_EQ(cubenet::read_file("said"), "4 terms, now 2\n");
  EXPECT_EQ(cubenet::read_file("out.tt2"),
            "# in front\r\n#$ PINS 5 a b c y z\r\n.TYPE fd\r\n.i 3\n.o 2\n.ilb a b c\n.ob y- z\n"
            ".p\t 2 # announced\n"
            "\t-1 - | 1 0 \r\n\t10 - | 0 1 \r\n# between\n\n \t\n.unknown .p 3\n.e\n000 11\n.p 3");
  ASSERT_EQ(run(CUBEKIT_PROGRAM " minimize -i out.tt2 d >again"), 0);
  EXPECT_EQ(cubenet::read_file("again"), cubenet::read_file("out.tt2"));
}

// Without '.type fd' what isn't 1 is 0.
TEST(MinimizedTable, TakesFreePointsOnlyFromATableThatMarksThem) {
  const cubenet::WorkingDir directory;
  const std::string rest = ".i 2\n.o 1\n.ilb a b\n.ob y\n11 1\n01 -\n.end\n", pins = "#$ PINS 3 a b y\n";
  cubenet::write_file("f.tt2", pins + rest);
  cubenet::write_file("fd.tt2", pins + ".type fd\n" + rest);
  ASSERT_EQ(run(CUBEKIT_PROGRAM " minimize f >f.out && " CUBEKIT_PROGRAM " minimize fd >fd.out"), 0);
  EXPECT_EQ(cubenet::read_file("f.out"), pins + rest);
  EXPECT_NE(cubenet::read_file("fd.out").find("\n-1 1\n.end"), std::string::npos);
}

// The netlist of the minimized table is proved against the original table.
TEST(MinimizedTable, IsTranslatedToTheSameFunction) {
  const cubenet::WorkingDir directory;
  for (int seed = 1; seed <= 25; seed++) {
    std::ostringstream line;
    line << CUBEKIT_PROGRAM " random " << seed << " >r.tt2 && " CUBEKIT_PROGRAM " minimize "
         << (seed % 2 ? "" : "--each ")
         << "r -o m.tt2 >said && " CUBENET_PROGRAM " -b m >said && " CUBEKIT_PROGRAM " prove -i r.tt2 m >said";
    EXPECT_EQ(run(line.str()), 0) << seed << ": " << cubenet::read_file("said");
  }
}

TEST(MinimizedTable, IsTheBestSoFarAfterAnInterrupt) {
  const cubenet::WorkingDir directory;
  std::ostringstream text;
  text << "#$ PINS 40\n.i 24\n.o 2\n.ilb";
  for (int k = 0; k < 24; k++) text << " a" << k;
  text << "\n.ob y z\n";
  std::string pins = "#$ PINS 26 y z";
  for (int k = 0; k < 24; k++) pins += " a" + std::to_string(k);
  unsigned state = 1;
  for (int c = 0; c < 4000; c++) {
    for (int k = 0; k < 24; k++) text << "01-"[(state = state * 1103515245 + 12345) >> 16 & 1 ? 2 : state >> 18 & 1];
    text << (c % 2 == 0 ? " 10\n" : " 01\n");
  }
  std::string table = text.str();
  table.replace(0, table.find('\n'), pins);
  cubenet::write_file("d.tt2", table);
  const int status = run("timeout --preserve-status -s INT 1 " CUBEKIT_PROGRAM " minimize d -o out.tt2 >said 2>err");
  EXPECT_EQ(status, 0);
  EXPECT_EQ(cubenet::read_file("err"), "interrupted: this is the best so far\n");
  EXPECT_EQ(cubenet::read_file("said").find("4000 terms, now "), 0U);
  EXPECT_EQ(run(CUBEKIT_PROGRAM " minimize nothing 2>err"), 2);
  EXPECT_EQ(run(CUBEKIT_PROGRAM " minimize -i said d 2>err"), 2);
}

} // namespace
} // namespace cubekit
