#include "debug/dump.h"

#include <gtest/gtest.h>

#include "model/run_settings.h"
#include "support/temp_dir.h"

namespace cubenet {
namespace {

std::string dump_of(const Design &design, const CubeTable &cubes) {
  const TempDir directory;
  EXPECT_EQ(dump_design(directory.file("listing"), design, cubes), 0);
  return read_file(directory.file("listing"));
}

TEST(Dump, EveryFieldIsListedUnderItsLabel) {
  Design d;
  d.header.design = "demo", d.header.desc = "A title", d.header.family = "Tarvex", d.header.part = "Tarvex5128K";
  d.header.option[14] = "ISP_EXCEPT_Y2 ON", d.par[23] = "OUTPUT_FORM VHDL";
  run_settings.part_name = "Tarvex5128K", run_settings.part_flag = 5;
  d.properties = {{}, {51, "a", "X", "12", 2, 3}};
  d.pin_names = {"a", ""}, d.node_names = {"n"}, d.node_groups = {"G"};
  d.xpins = {{Rare<std::string>("12"), Rare<std::string>("G1"), 1, 2, 3, 4, 5, 6}, {}};
  d.ILB = {"a"}, d.IB_EXT = {"PIN"}, d.OLB = {"n"}, d.OB_EXT = {""};
  const SignalNames names{"scp", "sap", "snp", "slp", "stp", "ecp", "eap", "enp", "elp", "etp", "grp"};
  d.ilb_attributes = {{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, Rare(names)}};
  d.olb_attributes.resize(1), d.olb_attributes[0].ZDOT = 1;
  d.pin_glb = d.node_ioc = make_empty_set(1);
  set_bit(d.pin_glb, 0);
  set_bit(d.node_ioc, 0);
  d.paths = {{"path", {"a.PIN", 40}, {"n", 45}}};
  const std::uint32_t all_roles = (F_PR << 1) - 1;
  const std::uint32_t all_uses = F_IN | F_DIN | F_TIN | F_RIN | F_IO | F_NOD | F_FF | F_ILB | F_OB | F_NS | F_NR;
  d.pin_flags = {{true, all_roles, ~all_uses}, {}}, d.node_flags = {{true, F_REG, all_uses}};
  CubeTable cubes;
  set_cube_layout(cubes, 16, 1);
  for (const std::uint32_t word : {0x80000001U, 7U, 0U}) next_cube(cubes)[1] = word, cubes.NUM_CUBES++;

  EXPECT_EQ(dump_of(d, cubes), read_file(PROJECT_DIR "/tests/debug/every_field.txt"));
  reset_run_settings();
}

TEST(Dump, EmptyDesignIsSeparatorsAndCounts) {
  const std::string text = dump_of({}, {});
  EXPECT_NE(text.find("part_name: \npart_flag = 0\n"), std::string::npos);
  EXPECT_NE(text.find("num_property = 0\n===========================\nNUM_PIN = 0\n"), std::string::npos);
  EXPECT_TRUE(text.ends_with("NUM_CUBES = 0\n------------------------\n=========================\n"));
  EXPECT_EQ(dump_design(testing::TempDir() + "no/such/directory/x", {}, {}), 2);
}

} // namespace
} // namespace cubenet
