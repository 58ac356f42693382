// Product terms as PLA blocks and as gates, names that collide, and faults of the files.
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "netlist/pla_rows.h"
#include "netlist/translate.h"
#include "netlist/writers.h"
#include "support/capture.h"
#include "support/temp_dir.h"

namespace cubenet {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

RunSettings gates(int and_width, int or_width) {
  RunSettings settings;
  settings.expand = true;
  settings.and_width = and_width;
  settings.or_width = or_width;
  return settings;
}

// n terms of two literals each, all in the one output y.
std::string wide_or(std::size_t n) {
  std::string text = "#$ PINS " + std::to_string(n + 2) + " e y", ilb = ".ilb e", terms;
  for (std::size_t k = 0; k < n; k++) text += " a" + std::to_string(k), ilb += " a" + std::to_string(k);
  for (std::size_t k = 0; k < n; k++) {
    std::string row(n + 1, '-');
    row[0] = row[k + 1] = '1';
    terms += row + " 1\n";
  }
  return text + "\n.i " + std::to_string(n + 1) + "\n.o 1\n" + ilb + "\n.ob y\n" + terms + ".e\n";
}

std::vector<std::string> or_gates(std::size_t n, int width) {
  std::vector<std::string> found;
  for (const std::string &symbol : symbol_lines(translate(wide_or(n), gates(12, width)).nxf))
    if (!symbol.starts_with("AND"))
      found.push_back(symbol.substr(0, symbol.find(" A")) + symbol.substr(symbol.rfind(' ')));
  return found;
}

TEST(GateTrees, KeepTheWidestGateAndPassLeftOversOn) {
  EXPECT_THAT(or_gates(12, 12), ElementsAre("OR12 y Z0=y_PIN"));
  EXPECT_THAT(or_gates(13, 12),
              ElementsAre("OR12 _PLO_0_0_0 Z0=_PLO_0_0_0", "BUF _PLO_0_0_1 Z0=_PLO_0_0_1", "OR2 y Z0=y_PIN"));
  EXPECT_THAT(or_gates(25, 12), ElementsAre("OR12 _PLO_0_0_0 Z0=_PLO_0_0_0", "OR12 _PLO_0_0_1 Z0=_PLO_0_0_1",
                                            "BUF _PLO_0_0_2 Z0=_PLO_0_0_2", "OR3 y Z0=y_PIN"));
  EXPECT_THAT(or_gates(5, 2), ElementsAre("OR2 _PLO_0_0_0 Z0=_PLO_0_0_0", "OR2 _PLO_0_0_1 Z0=_PLO_0_0_1",
                                          "BUF _PLO_0_0_2 Z0=_PLO_0_0_2", "OR2 _PLO_0_1_0 Z0=_PLO_0_1_0",
                                          "BUF _PLO_0_1_1 Z0=_PLO_0_1_1", "OR2 y Z0=y_PIN"));
}

TEST(GateTrees, NetsJoinTheRanks) {
  const std::vector<std::string> nets = net_lines(translate(wide_or(5), gates(12, 2)).nxf);
  EXPECT_THAT(nets, Contains("NET _PLN_4 SRC _PLN_4.Z0 DST _PLO_0_0_2.A0;"));
  EXPECT_THAT(nets, Contains("NET _PLO_0_0_1 SRC _PLO_0_0_1.Z0 DST _PLO_0_1_0.A1;"));
  EXPECT_THAT(nets, Contains("NET _PLO_0_0_2 SRC _PLO_0_0_2.Z0 DST _PLO_0_1_1.A0;"));
  EXPECT_THAT(nets, Contains("NET _PLO_0_1_1 SRC _PLO_0_1_1.Z0 DST y.A1;"));
  EXPECT_THAT(nets, Contains("NET e EXT DST _PLN_0.A0 _PLN_1.A0 _PLN_2.A0 _PLN_3.A0 _PLN_4.A0;"));
}

constexpr const char *kShared = R"(#$ PINS 9 a b c x y z k l m
.i 3
.o 6
.ilb a b c
.ob x y z- k l- m
1-- 110000
0-0 001000
-11 010000
--- 000100
1-1 000011
.e
)";

TEST(GatePlanes, ShareTermsAndPassSingleLiterals) {
  const Translation result = translate(kShared, gates(12, 12));
  EXPECT_THAT(symbol_lines(result.nxf),
              ElementsAre("NAND2 z A0=_PLI_0 A1=_PLI_2 ZN0=z_PIN", "AND2 _PLN_2 A0=b A1=c Z0=_PLN_2",
                          "AND2 _PLN_4 A0=a A1=c Z0=_PLN_4", "BUF x A0=a Z0=x_PIN", "OR2 y A0=a A1=_PLN_2 Z0=y_PIN",
                          "INV l A0=_PLN_4 ZN0=l_PIN", "BUF m A0=_PLN_4 Z0=m_PIN", "INV _PLI_0 A0=a ZN0=_PLI_0",
                          "INV _PLI_2 A0=c ZN0=_PLI_2", "BUF k A0=VCC Z0=k_PIN"));
  EXPECT_THAT(net_lines(result.nxf), Contains("NET a EXT DST _PLN_4.A0 x.A0 y.A0 _PLI_0.A0;"));
  EXPECT_THAT(net_lines(result.nxf), Contains("NET VCC DST k.A0;"));
}

TEST(PlaBlocks, PrintTheUsedInputsAndTheirRows) {
  const Translation result = translate(kShared);
  EXPECT_THAT(symbol_lines(result.nxf),
              ElementsAre("PLA x A0=a Z0=x_PIN 1", "PLA y A0=a A1=b A2=c Z0=y_PIN 1-- -11",
                          "PLA z_B A0=a A1=c Z0=z_B 00", "INV z A0=z_B ZN0=z_PIN", "BUF k A0=VCC Z0=k_PIN",
                          "PLA l_B A0=a A1=c Z0=l_B 11", "INV l A0=l_B ZN0=l_PIN", "PLA m A0=a A1=c Z0=m_PIN 11"));
}

TEST(PlaBlocks, RowsOfAllColumnsEqualRowsColumnByColumn) {
  std::mt19937 random(7);
  for (const std::size_t inputs : {1U, 3U, 15U, 16U, 17U, 64U, 100U}) {
    CubeTable cubes;
    set_cube_layout(cubes, inputs, 3);
    std::string expected;
    std::vector<std::uint32_t> terms, columns;
    for (std::uint32_t k = 0; k < inputs; k++) columns.push_back(k);
    for (std::uint32_t i = 0; i < 50; i++, cubes.NUM_CUBES++) {
      std::uint32_t *row = next_cube(cubes);
      expected += '\t';
      for (std::size_t k = 0; k < inputs; k++) {
        const auto literal = static_cast<std::uint32_t>(1 + random() % 3);
        row[1 + k / 16] |= literal << (2 * (k % 16));
        expected += "?01-"[literal];
      }
      row[1 + (2 * inputs) / 32] |= 1U << (2 * inputs % 32);
      expected += " 1\n";
      terms.push_back(i);
    }
    TempDir dir;
    OutputFile file;
    ASSERT_TRUE(open_output(file, dir.file("rows")));
    put_pla_rows(file, cubes, terms.data(), terms.size(), columns);
    ASSERT_TRUE(close_output(file));
    EXPECT_EQ(read_file(dir.file("rows")), expected) << inputs;
  }
}

std::string one_xor(const std::string &terms, const std::string &sign) {
  return "#$ PINS 3 a b y\n#$ PROPERTY corvane LXOR2 y\n.i 2\n.o 1\n.ilb a b\n.ob y" + sign + "\n" + terms + ".e\n";
}

TEST(XorAttribute, TakesTwoInputFunctionsAndReportsOthersOncePerWriter) {
  EXPECT_THAT(symbol_lines(translate(one_xor("10 1\n01 1\n", "")).nxf), ElementsAre("LXOR2 y A0=a A1=b Z0=y_PIN"));
  EXPECT_THAT(symbol_lines(translate(one_xor("11 1\n00 1\n", "")).nxf), ElementsAre("LXOR2 y A0=a A1=b ZN0=y_PIN"));
  EXPECT_THAT(symbol_lines(translate(one_xor("11 1\n00 1\n", "-"), gates(2, 2)).nxf),
              ElementsAre("LXOR2 y A0=a A1=b Z0=y_PIN"));
  for (const char *terms : {"10 1\n01 1\n11 1\n", "10 1\n00 1\n", "1- 1\n-1 1\n", "11 1\n"}) {
    const Translation result = translate(one_xor(terms, ""));
    EXPECT_THAT(symbol_lines(result.nxf), Not(Contains(HasSubstr("LXOR2"))));
    const std::string warning = "31600 WARNING: Signal 'y' is not driven by simple two-input XOR gate; attribute "
                                "'LXOR2 y' is ignored\n";
    const std::size_t ddf = result.messages.find(warning);
    ASSERT_NE(ddf, std::string::npos) << result.messages;
    EXPECT_LT(ddf, result.messages.find("(ddf)..."));
    EXPECT_GT(result.messages.find(warning, ddf + 1), result.messages.find("(ddf)..."));
    EXPECT_LT(result.messages.find(warning, ddf + 1), result.messages.find("(nxf)..."));
  }
  const std::string refused_then_taken = "#$ PINS 4 a b y z\n#$ PROPERTY corvane LXOR2 y\n#$ PROPERTY corvane LXOR2 z\n"
                                         ".i 2\n.o 2\n.ilb a b\n.ob y z\n11 10\n10 01\n01 01\n.e\n";
  EXPECT_THAT(symbol_lines(translate(refused_then_taken).nxf), Contains("LXOR2 z A0=a A1=b Z0=z_PIN"));
}

// Every name is an output of its own but the first, which they all read.
std::string named_design(const std::vector<std::string> &names) {
  std::string pins, ob, terms;
  for (const std::string &name : names) {
    pins += " " + name, ob += " " + name;
    std::string out(names.size(), '0');
    out[terms.size() / (names.size() + 3)] = '1';
    terms += "1 " + out + "\n";
  }
  return "#$ PINS " + std::to_string(names.size() + 1) + " first" + pins + "\n.i 1\n.o " +
         std::to_string(names.size()) + "\n.ilb first\n.ob" + ob + "\n" + terms + ".e\n";
}

struct RenameRow {
  std::vector<std::string> names;
  std::vector<std::string> ddf, nxf; // output names of the two files
  bool case_sensitive = false;
};

TEST(Renaming, RunsOncePerWriterAndGuardsReservedNames) {
  // clang-format off
  const RenameRow rows[] = {
      {{"A", "A_REG"}, {"_PLA0_A", "A_REG"}, {"_RES_PLA0_A", "A_REG"}},
      {{"A", "A_REG", "B", "B_9"}, {"_PLA0_A", "A_REG", "_PLA1_B", "B_9"}, {"_RES_PLA0_A", "A_REG", "_RES_PLA1_B", "B_9"}},
      {{"A", "A_reg", "A_REGX", "B_D"}, {"A", "A_reg", "A_REGX", "B_D"}, {"A", "A_reg", "A_REGX", "B_D"}},
      {{"GND", "x"}, {"_RES_GND", "x"}, {"_RES_GND", "x"}},
      {{"vcc", "x"}, {"vcc", "x"}, {"vcc", "x"}, true},
      {{"_PLA7", "_RES_x"}, {"_RES_PLA7", "_RES_RES_x"}, {"_RES_PLA7", "_RES_RES_x"}},
      {{"_PLA7", "_PLA7_PIN"}, {"_PLA0__RES_PLA7", "_RES_PLA7_PIN"}, {"_RES_PLA0__RES_PLA7", "_RES_RES_PLA7_PIN"}},
      {{"_PLA7", "_PLA7_D"}, {"_RES_PLA7", "_RES_PLA7_D"}, {"_PLA0__RES_RES_PLA7", "_RES_RES_PLA7_D"}},
      {{"_RES_x", "_PLA"}, {"_RES_x", "_PLA"}, {"_RES_x", "_PLA"}},
      {{"_PLA", "_PLA_PIN"}, {"_PLA", "_RES_PLA_PIN"}, {"_PLA", "_RES_PLA_PIN"}},
      {{"GND", "GND_D"}, {"_PLA0__RES_GND", "GND_D"}, {"_RES_PLA0__RES_GND", "GND_D"}},
  };
  // clang-format on
  for (const RenameRow &row : rows) {
    RunSettings settings;
    settings.case_sensitive = row.case_sensitive;
    const Translation result = translate(named_design(row.names), settings);
    std::string outputs = "OUTPUTS: ";
    for (const std::string &name : row.ddf) outputs += (outputs.back() == ' ' ? "" : ", ") + name;
    EXPECT_THAT(result.ddf, HasSubstr(outputs + ";\n"));
    for (const std::string &name : row.nxf)
      EXPECT_THAT(result.nxf, HasSubstr("XPIN " + name + " OUT " + name + "_PIN;\n"));
  }
}

TEST(Renaming, ReportsOldAndNewNamesBeforeTheFilesLine) {
  EXPECT_THAT(translate(named_design({"A", "A_REG"})).messages,
              HasSubstr("31620 WARNING: Pin 'A' is renamed to '_PLA0_A'\n\nWriting output files(ddf)...\n"
                        "31620 WARNING: Pin '_PLA0_A' is renamed to '_RES_PLA0_A'\n\nWriting output files(nxf)...\n"));
}

TEST(Renaming, MovesABaseOnlyWhereItMakesTheUnlistedName) {
  const std::string plain = named_design({"q", "q_OE"});
  EXPECT_THAT(translate(plain).ddf, HasSubstr("OUTPUTS: q, q_OE;\n"));
  const Translation tristate =
      translate("#$ PINS 4 a e q q_OE\n.i 2\n.o 3\n.ilb a e\n.ob q q.OE q_OE\n1- 101\n-1 010\n.e\n");
  EXPECT_THAT(tristate.ddf, HasSubstr("OUTPUTS: _PLA0_q, q_OE;\n"));
}

TEST(Prefixes, GiveWayToUsersNames) {
  const std::string nxf = translate(named_design({"_plo_x", "_PLN_y", "_PLI_z"}), gates(2, 2)).nxf;
  EXPECT_THAT(nxf, Not(HasSubstr("SYM INV _PLI_")));
  const std::string wide =
      translate("#$ PINS 6 _PLO_a b c d e y\n.i 5\n.o 1\n.ilb _PLO_a b c d e\n.ob y\n0---- 1\n-1--- "
                "1\n--1-- 1\n---11 1\n.e\n",
                gates(2, 2))
          .nxf;
  EXPECT_THAT(wide, HasSubstr("SYM OR2 _PLA_OR_0_0_0;"));
  EXPECT_THAT(wide, HasSubstr("SYM INV _PLI_0;"));
  // Names not of pins or nodes, or too short to be judged by their prefix, count only if they clash with a
  // gate.
  const auto with_instance = [](const std::string &instances) {
    return translate("#$ EXTERNAL m 2 in'i out'o\n#$ PINS 4 a c y z\n#$ NODES 1 _PLI\n" + instances +
                         ".i 3\n.o 5\n.ilb a c _PLI.Q\n.ob _PLI.J _PLI.K _PLI.C y z\n11- 10111\n0-1 01011\n.e\n",
                     gates(2, 2))
        .nxf;
  };
  for (const auto &[instances, gate] : std::initializer_list<std::pair<std::string, std::string>>{
           {"#$ INSTANCE _PLN_x m 2 a k\n", "_PLN_0"},
           {"#$ INSTANCE _PLN_9_9 m 2 a k\n", "_PLN_0"},
           {"#$ INSTANCE _PLN_0 m 2 a k\n", "_PLA_AND_0"},
           {"#$ INSTANCE i m 2 a _PLN_0\n", "_PLA_AND_0"},
           {"#$ INSTANCE _PLN_1 m 2 a _PLA_AND_0\n", "_PLA_AND2_0"}}) {
    EXPECT_THAT(with_instance(instances), HasSubstr("SYM AND2 " + gate + ";"));
    EXPECT_THAT(with_instance(instances), HasSubstr("SYM INV _PLA_INV_0;"));
  }
}

TEST(Writers, ReportFilesThatCanNotBeOpenedOrWritten) {
  WorkingDir dir;
  CapturedMessages messages;
  CubeTable cubes;
  Design design;
  design.par[1] = "EFFORT 2";
  design.reserve_pins = true;
  EXPECT_EQ(write_nxf(cubes, "x.nxf", "x.par", "x.rsp", nullptr), 2);
  EXPECT_EQ(write_ddf(cubes, "x.ddf", nullptr), 2);
  EXPECT_EQ(messages.text(), "");
  EXPECT_EQ(write_nxf(cubes, "no/x.nxf", "x.par", "x.rsp", &design), 2);
  EXPECT_THAT(messages.take_unwrapped(), EndsWith("31103 ERROR: Unable to open file 'no/x.nxf' for writing\n"));
  EXPECT_EQ(read_file("x.par"), "EFFORT 2\nRESERVE_PIN_FILE x.rsp\nEND\n");
  EXPECT_EQ(write_nxf(cubes, "x.nxf", "no/x.par", "x.rsp", &design), 2);
  EXPECT_FALSE(std::filesystem::exists("x.nxf"));
  EXPECT_EQ(write_ddf(cubes, "no/x.ddf", &design), 2);
  EXPECT_THAT(messages.take_unwrapped(), EndsWith("31103 ERROR: 1 Unable to open file 'no/x.ddf' for writing\n"));
  EXPECT_EQ(write_ddf(cubes, "/dev/full", &design), 2);
  EXPECT_THAT(messages.take_unwrapped(), EndsWith("31103 ERROR: 1 Unable to write file '/dev/full'\n"));
  EXPECT_EQ(write_nxf(cubes, "/dev/full", "x.par", "x.rsp", &design), 2);
  EXPECT_THAT(messages.take_unwrapped(), EndsWith("31103 ERROR: Unable to write file '/dev/full'\n"));
}

} // namespace
} // namespace cubenet
