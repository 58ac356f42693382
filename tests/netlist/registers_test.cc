// The storage element of every register kind on every series, with its helper gates and feedbacks.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "netlist/translate.h"

namespace cubenet {
namespace {

using testing::ElementsAreArray;

// A design of one register q, each of whose equations is an input of its own, and one output per read form.
std::string register_design(bool node, const std::string &sign, const std::vector<std::string> &extensions,
                            const std::vector<std::string> &reads) {
  const std::size_t inputs = extensions.size(), columns = inputs + reads.size();
  std::string pins, ilb, ob, terms;
  for (std::size_t k = 0; k < inputs; k++) pins += " i" + std::to_string(k);
  ilb = pins;
  for (const std::string &read : reads) ilb += " q" + read;
  for (const std::string &extension : extensions) ob += " q." + extension;
  for (std::size_t z = 0; z < reads.size(); z++) pins += " z" + std::to_string(z), ob += " z" + std::to_string(z);
  for (std::size_t k = 0; k < columns; k++) {
    std::string in(columns, '-'), out(columns, '0');
    in[k] = out[k] = '1';
    terms += in + " " + out + "\n";
  }
  const std::size_t pin_count = inputs + reads.size() + (node ? 0 : 1);
  return "#$ PINS " + std::to_string(pin_count) + pins + (node ? "\n#$ NODES 1 q" : " q" + sign) + "\n.i " +
         std::to_string(columns) + "\n.o " + std::to_string(columns) + "\n.ilb" + ilb + "\n.ob" + ob + "\n" + terms +
         ".e\n";
}

struct Row {
  const char *part;
  const char *kind; // "node", "pin", or "pin-" for an inverted pin
  std::vector<std::string> extensions, reads;
  std::vector<std::string> symbols; // of q, without its PLA blocks
};

class Registers : public testing::TestWithParam<Row> {};

TEST_P(Registers, BecomeTheirPrimitivesAndHelperGates) {
  const Row &row = GetParam();
  RunSettings settings;
  settings.part_name = row.part;
  const std::string kind = row.kind;
  const Translation result =
      translate(register_design(kind == "node", kind == "pin-" ? "-" : "", row.extensions, row.reads), settings);
  ASSERT_EQ(result.nxf_status, 0) << result.messages;
  std::vector<std::string> symbols;
  for (const std::string &symbol : symbol_lines_of(result.nxf, "q"))
    if (!symbol.starts_with("PLA ")) symbols.push_back(symbol);
  EXPECT_THAT(symbols, ElementsAreArray(row.symbols));
}

// clang-format off
const Row kRows[] = {
    // The primitives by series and asynchronous inputs.
    {"X1", "pin", {"D", "C"}, {}, {"FD11 q D0=q_D CLK=q_C Q0=q_PIN"}},
    {"X1", "pin", {"D", "C", "AR"}, {}, {"FD21 q D0=q_D CD=q_AR CLK=q_C Q0=q_PIN"}},
    {"X1", "pin", {"D", "C", "AP"}, {},
     {"FD21 q D0=q_BD CD=q_AP CLK=q_C Q0=q_QB", "INV q_BD A0=q_D ZN0=q_BD", "INV q_QB A0=q_QB ZN0=q_PIN"}},
    {"X5", "pin", {"D", "C", "PR"}, {}, {"FDC1 q D0=q_D SD=q_PR CLK=q_C Q0=q_PIN"}},
    {"X5", "pin", {"D", "C", "RE", "AP", "CE"}, {}, {"FDE1E q D0=q_D CD=q_RE SD=q_AP EN=q_CE CLK=q_C Q0=q_PIN"}},
    {"X8", "pin", {"D", "C", "AR", "AP"}, {}, {"FDE1 q D0=q_D CD=q_AR SD=q_AP CLK=q_C Q0=q_PIN"}},
    {"X8", "pin", {"D", "C", "CE"}, {}, {"FD11E q D0=q_D EN=q_CE CLK=q_C Q0=q_PIN"}},
    {"X8", "pin", {"D", "C", "CE", "AR"}, {}, {"FD21E q D0=q_D CD=q_AR EN=q_CE CLK=q_C Q0=q_PIN"}},
    {"X8", "pin", {"D", "C", "CE", "AP"}, {}, {"FDC1E q D0=q_D SD=q_AP EN=q_CE CLK=q_C Q0=q_PIN"}},
    // Toggle registers: a primitive of their own on series 5 with an asynchronous input and no enable.
    {"X5", "pin", {"T", "C", "AR"}, {}, {"FTI21 q T0=q_T CD=q_AR CLK=q_C Q0=q_PIN"}},
    {"X5", "pin", {"T", "C", "AP"}, {}, {"FTI31 q T0=q_T SD=q_AP CLK=q_C Q0=q_PIN"}},
    {"X5", "pin", {"T.X1", "T.X2", "C", "AR", "AP"}, {},
     {"LXOR2 q_T A0=q_TX1 A1=q_TX2 Z0=q_T", "FTI41 q T0=q_T CD=q_AR SD=q_AP CLK=q_C Q0=q_PIN"}},
    {"X5", "pin", {"T", "C", "AR", "CE"}, {},
     {"LXOR2 q_1 A0=q_T A1=q_PIN Z0=q_1", "FD21E q D0=q_1 CD=q_AR EN=q_CE CLK=q_C Q0=q_PIN"}},
    {"X5", "pin", {"T", "C", "AR", "SR"}, {},
     {"LXOR2 q_1 A0=q_T A1=q_PIN Z0=q_1", "INV q_6 A0=q_SR ZN0=q_6", "AND2 q_3 A0=q_1 A1=q_6 Z0=q_3",
      "LXOR2 q_8 A0=q_3 A1=q_PIN Z0=q_8", "FTI21 q T0=q_8 CD=q_AR CLK=q_C Q0=q_PIN"}},
    {"X1", "node", {"T", "C"}, {".Q"}, {"LXOR2 q_1 A0=q_T A1=q_Q Z0=q_1", "FD11 q D0=q_1 CLK=q_C Q0=q_Q"}},
    // Emulated controls below series 2, and those that remain above.
    {"X1", "pin", {"D", "C", "CE"}, {},
     {"INV q_7 A0=q_CE ZN0=q_7", "AND2 q_8 A0=q_7 A1=q_PIN Z0=q_8", "AND2 q_3 A0=q_D A1=q_CE Z0=q_3",
      "OR2 q_5 A0=q_3 A1=q_8 Z0=q_5", "FD11 q D0=q_5 CLK=q_C Q0=q_PIN"}},
    {"X1", "pin", {"D", "C", "CE", "SP", "AP"}, {},
     {"INV q_7 A0=q_CE ZN0=q_7", "AND2 q_8 A0=q_7 A1=q_PIN Z0=q_8", "AND2 q_9 A0=q_SP A1=q_CE Z0=q_9",
      "AND2 q_3 A0=q_D A1=q_CE Z0=q_3", "OR3 q_5 A0=q_3 A1=q_9 A2=q_8 Z0=q_5",
      "FD21 q D0=q_BD CD=q_AP CLK=q_C Q0=q_QB", "INV q_BD A0=q_5 ZN0=q_BD", "INV q_QB A0=q_QB ZN0=q_PIN"}},
    {"X1", "pin", {"J", "K", "C", "SR", "CE", "SP"}, {},
     {"INV q_7 A0=q_CE ZN0=q_7", "AND2 q_8 A0=q_7 A1=q_PIN Z0=q_8", "AND2 q_9 A0=q_SP A1=q_CE Z0=q_9",
      "INV q_6 A0=q_SR ZN0=q_6", "INV q_2 A0=q_K ZN0=q_2", "INV q_1 A0=q_PIN ZN0=q_1",
      "AND4 q_3 A0=q_J A1=q_1 A2=q_6 A3=q_CE Z0=q_3", "AND4 q_4 A0=q_2 A1=q_PIN A2=q_6 A3=q_CE Z0=q_4",
      "OR4 q_5 A0=q_3 A1=q_4 A2=q_9 A3=q_8 Z0=q_5", "FD11 q D0=q_5 CLK=q_C Q0=q_PIN"}},
    {"X8", "pin", {"S", "R", "C", "CE"}, {},
     {"INV q_2 A0=q_R ZN0=q_2", "AND2 q_4 A0=q_2 A1=q_PIN Z0=q_4", "OR2 q_5 A0=q_S A1=q_4 Z0=q_5",
      "FD11E q D0=q_5 EN=q_CE CLK=q_C Q0=q_PIN"}},
    {"X8", "pin", {"D", "C", "SP"}, {}, {"OR2 q_5 A0=q_D A1=q_SP Z0=q_5", "FD11 q D0=q_5 CLK=q_C Q0=q_PIN"}},
    // Generic registers on inverted pins store the complement of their equation; D registers do not.
    {"X1", "pin-", {"D", "C"}, {}, {"FD11 q D0=q_D CLK=q_C Q0=q_Q", "INV q_PIN A0=q_Q ZN0=q_PIN"}},
    {"X1", "pin-", {"REG", "C"}, {},
     {"INV q_D A0=q_REG ZN0=q_D", "FD11 q D0=q_D CLK=q_C Q0=q_Q", "INV q_PIN A0=q_Q ZN0=q_PIN"}},
    {"X1", "pin-", {"REG.X1", "REG.X2", "C", "AR"}, {},
     {"INV q_REGB A0=q_GX1 ZN0=q_REGB", "LXOR2 q_REG A0=q_REGB A1=q_GX2 Z0=q_REG",
      "FD21 q D0=q_REG CD=q_AR CLK=q_C Q0=q_Q", "INV q_PIN A0=q_Q ZN0=q_PIN"}},
    {"X1", "pin-", {"REG.X1", "REG.X2", "C"}, {".REG"},
     {"LXOR2 q_REG A0=q_GX1 A1=q_GX2 Z0=q_REG", "INV q_D A0=q_REG ZN0=q_D", "FD11 q D0=q_D CLK=q_C Q0=q_Q",
      "INV q_PIN A0=q_Q ZN0=q_PIN"}},
    // Feedbacks and pads.
    {"X1", "pin", {"D", "C"}, {".Q", ".FB", ".PIN"},
     {"FD11 q D0=q_D CLK=q_C Q0=q_PIN", "BUF q_Q A0=q_PIN Z0=q_Q", "BUF q_FB A0=q_PIN Z0=q_FB"}},
    {"X1", "pin-", {"D", "C", "OE"}, {".Q", ".FB"},
     {"FD11 q D0=q_D CLK=q_C Q0=q_Q", "INV q_FB A0=q_Q ZN0=q_FB", "XTRI1 q_Z A0=q_FB OE=q_OE XO0=q"}},
    {"X1", "pin", {"D", "C", "OE"}, {".FB", ".Q", ""},
     {"FD11 q D0=q_D CLK=q_C Q0=q_FB", "BUF q_Q A0=q_FB Z0=q_Q", "XBIDI1 q_Z A0=q_FB OE=q_OE XB0=q Z0=q_PIN"}},
    {"X8", "node", {"D", "C", "OE"}, {""}, {"FD11 q D0=q_D CLK=q_C Q0=q_Q", "IT11 q_Z A0=q_Q OE=q_OE O0=q_Z"}},
    {"X1", "node", {"D", "C"}, {".Q", ".FB", ""}, {"FD11 q D0=q_D CLK=q_C Q0=q_Q", "BUF q_FB A0=q_Q Z0=q_FB"}},
    {"X1", "node", {"D", "C"}, {".FB"}, {"FD11 q D0=q_D CLK=q_C Q0=q_FB"}},
    // Latches.
    {"X1", "pin", {"D", "LH"}, {}, {"XDL1 q G=q_LH D0=q_D Q0=q_PIN"}},
    {"X5", "pin", {"D.X1", "D.X2", "LE", "AR", "AP"}, {},
     {"LXOR2 q_D A0=q_DX1 A1=q_DX2 Z0=q_D", "INV q_LH A0=q_LE ZN0=q_LH",
      "XDL4 q CD=q_AR SD=q_AP G=q_LH D0=q_D Q0=q_PIN"}},
    {"X5", "pin", {"D", "LH", "RE"}, {}, {"XDL2 q CD=q_RE G=q_LH D0=q_D Q0=q_PIN"}},
    {"X5", "pin", {"D", "LH", "AP"}, {}, {"XDL3 q SD=q_AP G=q_LH D0=q_D Q0=q_PIN"}},
    {"X1", "pin", {"D", "LE", "AR"}, {},
     {"INV q_1 A0=q_LE ZN0=q_1", "INV q_6 A0=q_AR ZN0=q_6", "AND3 q_3 A0=q_D A1=q_1 A2=q_6 Z0=q_3",
      "AND3 q_4 A0=q_LE A1=q_PIN A2=q_6 Z0=q_4", "AND3 q_8 A0=q_D A1=q_PIN A2=q_6 Z0=q_8",
      "OR3 q_5 A0=q_3 A1=q_4 A2=q_8 Z0=q_PIN"}},
    {"X1", "pin", {"D", "LH", "PR"}, {},
     {"INV q_2 A0=q_LH ZN0=q_2", "AND2 q_3 A0=q_D A1=q_LH Z0=q_3", "AND2 q_4 A0=q_2 A1=q_PIN Z0=q_4",
      "OR3 q_5 A0=q_3 A1=q_4 A2=q_PR Z0=q_PIN"}},
};
// clang-format on
INSTANTIATE_TEST_SUITE_P(EverySeries, Registers, testing::ValuesIn(kRows));

} // namespace
} // namespace cubenet
