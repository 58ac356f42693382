#include "constraints/constraints.h"

#include <gtest/gtest.h>

#include "support/capture.h"
#include "support/temp_dir.h"

namespace cubenet {
namespace {

// A design of four pins (a, b, y, z), a node (n), inputs a, b, n.Q and outputs y, z, n.D, n.C; no attributes.
Design make_design() {
  Design design;
  design.pin_names = {"a", "b", "y", "z"};
  design.node_names = {"n"};
  design.ILB = {"a", "b", "n"};
  design.IB_EXT = {"", "", "Q"};
  design.OLB = {"y", "z", "n", "n"};
  design.OB_EXT = {"", "", "D", "C"};
  design.xpins.resize(4);
  design.node_groups.resize(1);
  design.ilb_attributes.resize(3);
  design.olb_attributes.resize(4);
  design.pin_glb = design.pin_ioc = make_empty_set(4);
  design.node_glb = design.node_ioc = make_empty_set(1);
  return design;
}

std::string constraints_of(const Design &design) {
  const TempDir directory;
  EXPECT_EQ(write_constraints(directory.file("x.tvx"), design), 0);
  return read_file(directory.file("x.tvx"));
}

TEST(Constraints, DesignWithoutAttributesGivesAnEmptyFile) { EXPECT_EQ(constraints_of(make_design()), ""); }

TEST(Constraints, EverySectionStandsInItsPlaceWithItsSeparators) {
  Design d = make_design();
  d.header.option = {"SECURITY ON", "", "slewrate off", "", "PULL hold", "", "", "VOLTAGE INPUT VVCIO"};
  d.par[5] = "MAX_GLB_IN 16", d.par[6] = "MAX_GLB_OUT 4", d.par[8] = "PARAM_FILE Net.par",
  d.par[15] = "TIMING_ANALYZER ON";
  d.ilb_attributes[0].names.writable().ELP = d.ilb_attributes[2].names.writable().ELP = "p1",
  d.ilb_attributes[1].names.writable().ETP = "p2";
  d.olb_attributes[0].names.writable().ELP = "p1"; // outputs have no power mark
  d.xpins[0] = {{}, {}, 34, 27, 30, 33, 23, 22};
  d.xpins[1] = {{}, {}, 0, 28, 30, 32, 24, 22};
  d.xpins[2] = {{}, {}, 34, 29, 31, 33, 23, 21};
  d.xpins[3] = {{}, {}, 0, 54, 0, 32, 0, 21};
  d.name_values = {
      {"SLEW", "SLOW"},          {"SLEW", "SLOW=u,v;w"}, {"PULL", "DOWN=q"},          {"slew", "SLOW=no"},
      {"SLEW", "FAST extra=x;"}, {"PULL", "HOLD=h"},     {"IO_TYPES", "t=LVTTL,PIN"}, {"LOC", "t=pin,9,-,-;"}};
  d.properties = {{53, "z", "", "", -1, -1},
                  {51, "a", "", "A1", -1, -1},
                  {0, "b", "", "2", -1, -1},
                  {53, "b", "", "", -1, -1},
                  {51, "y", "", "14", -1, -1}};
  d.ilb_attributes[1].PROTECT = d.olb_attributes[0].PROTECT = 1;
  set_bit(d.pin_glb, 0), set_bit(d.pin_ioc, 1), set_bit(d.node_ioc, 0);
  d.ilb_attributes[0].names.writable().ECP = "p3", d.olb_attributes[1].names.writable().ECP = "p3";
  d.ilb_attributes[0].CLK0 = d.olb_attributes[3].CLK0 = d.ilb_attributes[1].ICLK1 = d.olb_attributes[0].SLOWCLK = 1;
  d.ilb_attributes[1].CLK1 = d.ilb_attributes[1].CLK2 = d.ilb_attributes[1].ICLK0 = d.ilb_attributes[1].FASTCLK = 1;
  d.ilb_attributes[2].PRESERVE = d.olb_attributes[1].PRESERVE = 1;
  d.ilb_attributes[0].names.writable().GRP = d.olb_attributes[0].names.writable().GRP = "G1",
  d.ilb_attributes[1].names.writable().GRP = "G2", d.olb_attributes[1].names.writable().GRP = "g1";
  // n.C comes after the last input extension and counts as plain; n.D is judged by the extension of input
  // n.Q.
  EXPECT_EQ(constraints_of(d), read_file(PROJECT_DIR "/tests/constraints/every_section.tvx"));
}

TEST(Constraints, OddFormsAreKept) {
  struct Row {
    void (*change)(Design &design);
    const char *text;
  } rows[] = {
      {[](Design &d) { d.header.option[2] = "SLOWSLEW MEDIUM", d.par[1] = "EFFORT 3"; },
       "[GLOBAL CONSTRAINTS]\nSLEWRATE=Tarvex_EFFORT=3;\n\n"},
      {[](Design &d) { d.header.option[2] = "SLOWSLEW on"; }, "[GLOBAL CONSTRAINTS]\nSLEWRATE=FAST;\n\n"},
      {[](Design &d) { d.olb_attributes[0].names.writable().ECP = "p"; }, "[4PTs Bypass]\nBYPASS=y;\n\n"},
      {[](Design &d) { d.xpins[1].outdelay = 30; }, "[OUTDELAY]\nOn=b;\n"}, // no Off list, no blank line
      {[](Design &d) { d.xpins[1].outdelay = 31; }, "[OUTDELAY]\nOff=b;\n\n"},
      {[](Design &d) { d.ilb_attributes[1].names.writable().ETP = "p"; }, "[Power]\nHigh = b;\n"},
      {[](Design &d) { d.xpins[0].opendrain = 22, d.xpins[1].voltage = 33; }, ""},
      {[](Design &d) {
         d.node_ioc = make_empty_set(1);
         set_bit(d.node_ioc, 0);
         d.node_glb = d.node_ioc;
       },
       "[symbol/MODULE attribute]\nn=OFF,GLB;\n\n"},
  };
  for (const Row &row : rows) {
    Design design = make_design();
    row.change(design);
    EXPECT_EQ(constraints_of(design), row.text);
  }
}

TEST(Constraints, FileThatCannotBeWrittenIsNoFailure) {
  EXPECT_EQ(write_constraints(testing::TempDir() + "no/such/directory/x.tvx", make_design()), 0);
}

TEST(Constraints, ProgressIsToldOnlyWhenAskedFor) {
  const CapturedConsole console;
  constraints_of(make_design());
  EXPECT_EQ(console.text(), "");
  show_constraints_progress = true;
  constraints_of(make_design());
  show_constraints_progress = false;
  EXPECT_EQ(console.text(),
            "power\noutdelay\nslewrate\npullup\nosm_bypass\nio_types\nresource reservations\nlocation assignments\n"
            "symbol attributes\nptsa bypass\nclk\npreserve\nkeep xor\ngroup assignemnts\ngroup assignemnts\n");
}

} // namespace
} // namespace cubenet
