// BLIF netlists become tables that compute the same, folded or not.
#include "kit/import/random_sources.h"

namespace cubekit {
namespace {

// Every equation of the table against the netlist, for some levels of inputs and latches.
void compare(const RandomBlif &blif, const std::string &table_text, Random &random) {
  const ReadTable table(table_text);
  for (int vector = 0; vector < 32; vector++) {
    Levels levels, found;
    for (const std::string &input : blif.inputs) found[input] = levels[input] = random(2) == 1;
    for (const RandomLatch &latch : blif.latches) found[latch.name + ".Q"] = levels[latch.name] = random(2) == 1;
    for (const auto &[name, cover] : blif.logic) levels[name] = cover.value(levels);
    evaluate_table(table, found);
    for (const auto &[name, cover] : blif.logic)
      ASSERT_TRUE(!found.contains(name) || found[name] == levels[name]) << name;
    for (std::size_t o = 0; o < table.design->OLB.size(); o++) {
      const std::string name = table.design->OLB[o], output = table.output(o);
      for (const RandomLatch &latch : blif.latches) {
        if (latch.name != name) continue;
        const bool is_data = table.design->OB_EXT[o] == "D";
        const std::string wanted = is_data ? "D" : latch.type == "ah" ? "LH" : latch.type == "al" ? "LE" : "C";
        ASSERT_EQ(table.design->OB_EXT[o], wanted);
        ASSERT_EQ(found[output], is_data ? levels[latch.data] : levels[latch.control] == (latch.type != "fe"))
            << output;
      }
    }
  }
}

TEST(ImportBlif, ComputesWhatTheNetlistDoesFoldedOrNot) {
  const cubenet::WorkingDir directory;
  for (std::uint64_t seed = 1; seed <= source_count(150); seed++) {
    const RandomBlif blif = random_blif(seed);
    SCOPED_TRACE(blif.text);
    for (const std::size_t flatten : {0U, 2U, 20U}) {
      const Imported imported = import_text(blif.text, SourceKind::BLIF, {.flatten = flatten});
      ASSERT_TRUE(imported.is_done) << imported.told;
      SCOPED_TRACE(imported.table);
      Random random{seed};
      ASSERT_NO_FATAL_FAILURE(compare(blif, imported.table, random));
      ASSERT_EQ(translate_and_prove(imported.table, seed % 2 == 0 ? "" : "-p Tarvex8840K-100XQ64"), "");
    }
  }
}

TEST(ImportBlif, WritesWhatAPersonWould) {
  const std::string source = ".model light\n.inputs tick go\n.outputs on q idle go\n"
                             ".latch next q fe tick 0\n.latch q held ah go 1\n"
                             ".names q go next\n10 1\n01 1\n.names held on\n0 1\n.names idle\n1\n"
                             ".names q on dead\n11 1\n.end\n";
  const Imported imported = import_text(source, SourceKind::BLIF, {.path = "light.blif"});
  EXPECT_EQ(imported.told, "light.blif:4: the initial values of 2 latches are lost: a table has none\n"
                           "light.blif:1: 'go' is called 'go~2' in the table\n");
  EXPECT_EQ(imported.table, "# Imported from light.blif\n#$ MODULE light\n#$ PINS 6 tick go on q idle go~2\n"
                            "#$ NODES 1 held\n.i 4\n.o 7\n.ilb tick go q.Q held.Q\n"
                            ".ob on q.D idle go~2 held.D q.C held.LH\n.p 7\n"
                            "---0 1000000\n-01- 0100000\n-10- 0100000\n---- 0010000\n-1-- 0001001\n"
                            "--1- 0000100\n0--- 0000010\n.end\n");
}

TEST(ImportBlif, RefusesWhatATableCanNotSayWithItsLine) {
  const std::string head = ".model m\n.inputs a b\n.outputs y\n";
  const std::pair<std::string, std::string> cases[] = {
      {"", "source: no BLIF: there is no model in it\n"},
      {head + ".names a y\n1 1\n0 0\n",
       "source:6: the rows of a cover say either when it is 1 or when it is 0, not both\n"},
      {head + ".names a y\n11 1\n", "source:5: a row of this cover needs 1 inputs and one output\n"},
      {head + ".names a n y\n11 1\n.names y n\n1 1\n", "source:4: a loop of logic without a register: 'y', 'n'\n"},
      {head + ".names a y\n1 1\n.names b y\n1 1\n", "source:6: 'y' is driven a second time\n"},
      {head + ".names a a\n1 1\n", "source:4: 'a' is an input, and driven here\n"},
      {head + ".names c y\n1 1\n", "source:4: 'c' is driven by nothing\n"},
      {head + ".latch a y 0\n", "source:4: latch 'y' names no clock; --clock NAME gives it one\n"},
      {head + ".latch a y as b\n", "source:4: a latch of type 'as' has no clock, and no counterpart in a table\n"},
      {head + ".exdc\n", "source:4: '.exdc' is not supported: import takes .names, .latch and .subckt\n"},
      {head + ".subckt other x=a\n", "source:4: there is no model 'other' in the file\n"},
      {head + ".subckt m a=a b=b y=y\n", "source:1: model 'm' is placed in itself\n"},
  };
  for (const auto &[text, told] : cases) {
    const Imported imported = import_text(text, SourceKind::BLIF);
    EXPECT_FALSE(imported.is_done) << text;
    EXPECT_EQ(imported.told, told);
  }
  // Each model holds ten of the one before: this must be noticed before anything is built.
  std::string deep = ".model m0\n.inputs a\n.outputs y\n.names a y\n1 1\n.end\n";
  for (int level = 1; level < 60; level++) {
    const std::string name = "m" + std::to_string(level);
    deep += ".model " + name + "\n.inputs a\n.outputs y\n";
    for (int i = 0; i < 10; i++)
      deep += ".subckt m" + std::to_string(level - 1) + " a=a y=" + (i == 0 ? "y" : "n" + std::to_string(i)) + '\n';
    deep += ".end\n";
  }
  EXPECT_NE(import_text(deep, SourceKind::BLIF, {.top = "m59"}).told.find("the design is too large"),
            std::string::npos);
}

} // namespace
} // namespace cubekit
