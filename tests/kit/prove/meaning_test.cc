// What registers, latches and references mean, written a second time as plain code on bits and compared for
// all inputs: the proofs can't be better than this.
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "kit/prove/equal.h"
#include "kit/prove/meaning.h"
#include "kit/table/read_design.h"
#include "support/temp_dir.h"

namespace cubekit {
namespace {

using Bits = std::map<std::string, bool>; // by extension; "Q" is what is stored

struct StorageRow {
  const char *outputs;  // extensions of signal q, each an equation of its own
  bool inverted;        // pin q is
  bool (*next)(Bits &); // at the clock edge, or while open
};

bool data_under_controls(Bits &b, bool data) { return b["CE"] ? b["SP"] || (data && !b["SR"]) : b["Q"]; }

// clang-format off
const StorageRow kStorageRows[] = {
    {"D C",                false, [](Bits &b) { return b["D"]; }},
    {"D C AR",             true,  [](Bits &b) { return b["D"]; }},
    {"D.X1 D.X2 C AP",     false, [](Bits &b) { return b["D.X1"] != b["D.X2"]; }},
    {"REG C RE PR",        false, [](Bits &b) { return b["REG"]; }},
    {"REG C",              true,  [](Bits &b) { return !b["REG"]; }},
    {"REG.X1 REG.X2 C",    true,  [](Bits &b) { return b["REG.X1"] == b["REG.X2"]; }},
    {"T C AR AP",          false, [](Bits &b) { return b["T"] != b["Q"]; }},
    {"T.X1 T.X2 C",        true,  [](Bits &b) { return (b["T.X1"] != b["T.X2"]) != b["Q"]; }},
    {"J K C",              false, [](Bits &b) { return b["Q"] ? !b["K"] : b["J"]; }},
    {"S R C",              false, [](Bits &b) { return b["S"] || (b["Q"] && !b["R"]); }},
    {"D C CE SP SR",       false, [](Bits &b) { return data_under_controls(b, b["D"]); }},
    {"REG C CE SP SR AR",  true,  [](Bits &b) { return data_under_controls(b, !b["REG"]); }},
    {"T C CE SP SR",       false, [](Bits &b) { return data_under_controls(b, b["T"] != b["Q"]); }},
    {"J K C CE SP SR AP",  false, [](Bits &b) { return data_under_controls(b, b["Q"] ? !b["K"] : b["J"]); }},
    {"D LE",               false, [](Bits &b) { return b["D"]; }},
    {"D LH AR AP",         true,  [](Bits &b) { return b["D"]; }},
    {"REG.X1 REG.X2 LE",   false, [](Bits &b) { return b["REG.X1"] != b["REG.X2"]; }},
};
// clang-format on

// A design whose one signal q has these outputs, with values for all that can be read.
struct Fixture {
  cubenet::CubeTable cubes;
  std::unique_ptr<cubenet::Design> design;
  Meaning meaning;
  Values values;
};

void make_fixture(Fixture &fixture, const std::string &pins, const std::string &columns,
                  const std::vector<std::string> &outputs) {
  std::string list, row(outputs.size(), '1'), messages;
  for (const std::string &output : outputs) list += ' ' + output;
  cubenet::write_file("m.tt2", "#$ PINS " + pins + "\n.i 1\n.o " + std::to_string(outputs.size()) + "\n.ilb " +
                                   columns + "\n.ob" + list + "\n1 " + row + "\n.end\n");
  fixture.design = read_design("m.tt2", false, fixture.cubes, messages);
  ASSERT_NE(fixture.design, nullptr) << messages;
  ASSERT_TRUE(make_meaning(*fixture.design, fixture.cubes, fixture.meaning, messages)) << messages;
  clear_values(fixture.meaning, fixture.values);
  for (std::size_t o = 0; o < outputs.size(); o++)
    fixture.values.equations[o] = make_variable(fixture.values.formulas, outputs[o]);
  for (std::size_t s = 0; s < fixture.meaning.signals.size(); s++) {
    fixture.values.storage[s] = make_variable(fixture.values.formulas, "Q");
    fixture.values.outside[s] = make_variable(fixture.values.formulas, "outside");
  }
}

TEST(Meaning, OfEveryStorageElementIsWhatItsExtensionsSay) {
  const cubenet::WorkingDir directory;
  for (const StorageRow &row : kStorageRows) {
    std::vector<std::string> outputs;
    std::istringstream words(row.outputs);
    for (std::string word; words >> word;) outputs.push_back("q." + word);
    Fixture fixture;
    make_fixture(fixture, row.inverted ? "2 a q-" : "2 a q", "a", outputs);
    constexpr cubenet::SignalIndex kQ = 1;
    const NextValue next = next_value(fixture.meaning, fixture.values, kQ);
    Decider decider{fixture.values.formulas};
    const Literal roots[] = {next.next, next.cleared, next.set, next.event,
                             output_value(fixture.meaning, fixture.values, kQ)};
    for (unsigned vector = 0; vector < 2U << outputs.size(); vector++) {
      Bits bits{{"CE", true}};
      std::vector<std::pair<std::uint32_t, bool>> assignment;
      for (std::size_t o = 0; o < outputs.size(); o++) {
        const bool value = (vector >> o & 1) != 0;
        bits[outputs[o].substr(2)] = value;
        assignment.emplace_back(node_of(fixture.values.equations[o]), value);
      }
      bits["Q"] = (vector >> outputs.size() & 1) != 0;
      assignment.emplace_back(node_of(fixture.values.storage[kQ]), bits["Q"]);
      const bool event = bits.count("LE") != 0 ? !bits["LE"] : bits["LH"] || bits["C"];
      const std::vector<bool> expected{row.next(bits), bits["AR"] || bits["RE"], bits["AP"] || bits["PR"], event,
                                       bits["Q"] != row.inverted};
      ASSERT_EQ(evaluate(decider, roots, assignment), expected) << row.outputs << " at " << vector;
    }
  }
}

struct ReadRow {
  const char *pins, *column;
  std::vector<std::string> outputs;
  const char *value; // name of the variable read; after '!': its complement
};

TEST(Meaning, OfEveryReferenceIsTheValueThatItsFormReads) {
  const cubenet::WorkingDir directory;
  const ReadRow rows[] = {
      {"1 a", "a", {"a.OE"}, "outside"},
      {"2 a b", "a", {"b"}, "outside"},
      {"1 y", "y", {"y"}, "y"},
      {"1 y", "y.D", {"y"}, "y"},
      {"1 y", "y.PIN", {"y", "y.OE"}, "outside"},
      {"1 q", "q.Q", {"q.D", "q.C"}, "Q"},
      {"1 q-", "q.Q", {"q.D", "q.C"}, "Q"},
      {"1 q-", "q.FB", {"q.D", "q.C"}, "!Q"},
      {"1 q-", "q", {"q.D", "q.C"}, "!Q"},
      {"1 q-", "q.PIN", {"q.D", "q.C", "q.OE"}, "outside"},
      {"1 q", "q.D", {"q.D", "q.C", "q.SR"}, "q.D"},
      {"1 q-", "q.REG", {"q.REG", "q.C"}, "q.REG"},
      {"1 q-", "q.D", {"q.REG", "q.LE"}, "!q.REG"},
      {"1 q", "q.T", {"q.T", "q.C"}, "q.T"},
  };
  for (const ReadRow &row : rows) {
    Fixture fixture;
    make_fixture(fixture, row.pins, row.column, row.outputs);
    const Literal read = read_value(fixture.meaning, fixture.values, fixture.meaning.columns[0],
                                    cubenet::extension_code(fixture.design->IB_EXT[0]));
    const Node &node = fixture.values.formulas.nodes[node_of(read)];
    ASSERT_EQ(node.kind, NodeKind::VARIABLE) << row.column;
    EXPECT_EQ((is_inverted(read) ? "!" : "") + fixture.values.formulas.variable_names[node.first], row.value)
        << row.pins << ' ' << row.column;
  }
}

} // namespace
} // namespace cubekit
