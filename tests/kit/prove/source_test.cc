// Netlists of imported tables are proved against the sources, and damaged tables are found that way.
#include <functional>

#include "kit/import/random_sources.h"
#include "kit/prove/abc.h"
#include "kit/prove/settle.h"
#include "kit/prove/source.h"
#include "kit/support/export_tools.h"

namespace cubekit {
namespace {

bool has_tools() { return run("yosys -V").status == 0 && run("berkeley-abc -q quit").status == 0; }

// A source, read once for many netlists.
struct Read {
  Formulas formulas;
  Source source;

  Read(const std::string &text, const ImportOptions &options) {
    Draft draft;
    Remark fault;
    EXPECT_TRUE(read_source(text, options, formulas, source, draft, fault)) << remark_text(draft, fault);
  }
};

// The netlist in d.nxf against the source; an empty text when they agree.
std::string hold_against(Read read, const NewNames &names = {}) {
  Netlist netlist;
  std::ostringstream text;
  if (!load_nxf("d.nxf", netlist, text)) return text.str();
  const Meaning meaning;
  Circuit circuit = make_circuit(netlist, meaning, read.formulas);
  Claims claims;
  std::vector<std::string> lacking;
  collect_source_claims(read.source, names, circuit, claims, lacking);
  ProofReport report;
  std::string verdict;
  if (settle_claims(claims, circuit, {.other = "the source"}, report) && ask_abc(read.formulas, claims.list, verdict))
    return {};
  text << "not proved\n" << verdict;
  for (const std::string &each : report.texts) text << each;
  return text.str();
}

struct Form {
  const char *options, *part;
};
constexpr Form kForms[]{{"-pla", "Mirn"},
                        {"-and 12", "Tarvex7710K-100XQ64"},
                        {"-pla", "Tarvex5128K-100XQ64"},
                        {"-and 12", "Tarvex8840K-100XQ64"},
                        {"-and 12", "Mirn"},
                        {"-pla", "Tarvex7710K-100XQ64"},
                        {"-and 12", "Tarvex5128K-100XQ64"},
                        {"-pla", "Tarvex8840K-100XQ64"}};

// Imports, translates and proves; in one form, or in all when more sources are requested. Returns the number
// of netlists.
std::size_t prove_text(const std::string &text, SourceKind kind, std::uint64_t seed) {
  const std::string path = kind == SourceKind::VERILOG ? "source.v" : "source";
  write_file(path, text);
  const Read read(text, {.path = path, .kind = kind});
  std::size_t proved = 0;
  const bool is_long = std::getenv("CUBEKIT_SOURCES") != nullptr;
  for (std::size_t f = 0; f < std::size(kForms); f++) {
    const Form &form = kForms[f];
    if (!is_long && f != seed % std::size(kForms)) continue;
    SCOPED_TRACE(text + form.options + ' ' + form.part);
    const Imported imported =
        import_text(text, kind, {.path = path, .part = form.part, .flatten = seed % 3 * 4, .limit = 1 << 30});
    EXPECT_TRUE(imported.is_done) << imported.told;
    Translation translation;
    translate(imported.table, form.options, translation);
    EXPECT_EQ(translation.status, 0) << imported.table << translation.console;
    NewNames names;
    if (imported.told.find(" is called ") != std::string::npos)
      names = import_names(text, {.path = path, .kind = kind, .part = form.part, .flatten = seed % 3 * 4});
    const std::string told = hold_against(read, names);
    EXPECT_EQ(told, "") << imported.table;
    proved += told.empty() ? 1 : 0;
  }
  return proved;
}

void prove_many(SourceKind kind, std::uint64_t usual, const std::function<std::string(std::uint64_t)> &make) {
  if (!has_tools()) GTEST_SKIP();
  const cubenet::WorkingDir directory;
  std::size_t proved = 0;
  for (std::uint64_t seed = 1; seed <= source_count(usual); seed++) proved += prove_text(make(seed), kind, seed);
  if (source_count(0) > 0) std::cout << proved << " netlists proved\n";
}

TEST(ProveSource, ProvesWhatIsMadeOfRandomPlas) {
  prove_many(SourceKind::PLA, 40, [](std::uint64_t seed) { return random_pla(seed).text; });
}
TEST(ProveSource, ProvesWhatIsMadeOfRandomBlifs) {
  prove_many(SourceKind::BLIF, 24, [](std::uint64_t seed) { return random_blif(seed).text; });
}
TEST(ProveSource, ProvesWhatIsMadeOfRandomModules) {
  prove_many(SourceKind::VERILOG, 8, [](std::uint64_t seed) { return random_module(seed).text; });
}

// The values of outputs and registers over some hundred steps.
std::string simulate(const Netlist &netlist) {
  Simulator simulator = make_simulator(netlist, Value::LOW);
  std::string text, restless;
  for (const std::vector<Value> &row : random_rows(netlist, 300)) {
    if (!step(simulator, row, restless)) text += restless;
    for (std::size_t i = 0; i < row.size(); i++) text += value_char(pin_value(simulator, i));
  }
  return text;
}

// Every row of the table with one character changed: what is visible at a pin is found, and what equals the
// imported table is proved.
void damage_everywhere(const std::string &text, SourceKind kind, const std::string &options) {
  const std::string path = kind == SourceKind::VERILOG ? "source.v" : "source";
  write_file(path, text);
  const Imported imported = import_text(text, kind, {.path = path});
  ASSERT_TRUE(imported.is_done) << imported.told;
  const Read read(text, {.path = path, .kind = kind});
  Translation whole;
  translate(imported.table, options, whole);
  ASSERT_EQ(prove_translation(whole) + hold_against(read), "") << imported.table;
  const auto load = [](Netlist &netlist) {
    std::ostringstream errors;
    EXPECT_TRUE(load_nxf("d.nxf", netlist, errors)) << errors.str();
  };
  Netlist first;
  load(first);
  const std::string shown = simulate(first);
  std::size_t found = 0;
  for (std::size_t at = imported.table.find("\n.p "); at < imported.table.size(); at++) {
    std::string table = imported.table;
    if (table[at - 1] != '\n' && table[at - 1] != '0' && table[at - 1] != '1' && table[at - 1] != '-') continue;
    if (table[at] != '0' && table[at] != '1' && table[at] != '-') continue;
    const bool is_output = table.find(' ', at) > table.find('\n', at);
    table[at] = table[at] == '1' ? '0' : is_output || table[at] == '0' ? '1' : '0';
    Translation damaged;
    translate(table, options, damaged);
    if (damaged.status != 0) continue;
    Netlist netlist;
    load(netlist);
    ProofReport report;
    const bool is_proved = hold_against(read).empty();
    const bool has_pins = netlist.external_pins.size() == first.external_pins.size();
    const bool shows = has_pins && simulate(netlist) != shown;
    const bool is_same = prove_netlist(*whole.design, whole.cubes, netlist, {}, report);
    EXPECT_TRUE(is_proved ? !shows : !is_same) << table;
    found += is_proved ? 0 : 1;
  }
  EXPECT_GT(found, 20U);
}

TEST(ProveSource, FindsEveryDamageOfTheImportedTable) {
  if (!has_tools()) GTEST_SKIP();
  const cubenet::WorkingDir directory;
  damage_everywhere("module m(input c, g, d, r, e, output reg p, q, l, output t, inout io);\n"
                    "always @(negedge c or posedge r) if (r) p <= 1; else if (e) p <= d ^ p;\n"
                    "always @(posedge c) if (g) q <= 0; else if (e) q <= io;\n"
                    "always @* if (!g) l = d;\nassign t = r ? q & l : 1'bz, io = e ? d | p : 1'bz;\nendmodule\n",
                    SourceKind::VERILOG, "-pla");
  damage_everywhere(".model m\n.inputs a b\n.outputs y z\n.clock c\n.latch d q\n.latch q r fe c\n.latch d s al b\n"
                    ".names a q d\n10 1\n01 1\n.names r s a y\n11- 0\n--1 0\n.subckt i x=s z=z\n.end\n"
                    ".model i\n.inputs x\n.outputs z\n.names x z\n0 1\n.end\n",
                    SourceKind::BLIF, "-and 2");
}

// Free points may be anything, and all others must stay as they are.
TEST(ProveSource, LeavesFreePointsOfAPlaOpenAndNoOthers) {
  if (!has_tools()) GTEST_SKIP();
  const cubenet::WorkingDir directory;
  const std::string table = "#$ MODULE m\n#$ PINS 3 in0 in1 out0\n.i 2\n.o 1\n.ilb in0 in1\n.ob out0\n.p 2\n";
  // Of the points 00 01 10 11 the source lists 11 as on, 01 as off and 10 as free.
  const std::pair<std::string, std::string> cases[] = {{"f", "0001"},   {"fd", "00-1"}, {"fr", "-0-1"},
                                                       {"fdr", "-0-1"}, {"r", "1011"},  {"dr", "10-1"}};
  for (const auto &[type, meant] : cases) {
    const Read read(".i 2\n.o 1\n.type " + type + "\n11 1\n01 0\n10 -\n.e\n", {.path = "s", .kind = SourceKind::PLA});
    for (unsigned ones = 1; ones < 16; ones++) {
      std::string rows;
      bool is_allowed = true;
      for (unsigned point = 0; point < 4; point++) {
        const bool is_one = (ones >> point & 1U) != 0;
        if (is_one) rows += std::string{"01"[point >> 1], "01"[point & 1U]} + " 1\n";
        is_allowed &= meant[point] == '-' || (meant[point] == '1') == is_one;
      }
      Translation translation;
      translate(table + rows + ".end\n", "", translation);
      ASSERT_EQ(translation.status, 0) << translation.console;
      EXPECT_EQ(hold_against(read).empty(), is_allowed) << type << '\n' << rows;
    }
  }
}

TEST(ProveSourceCommand, MatchesNamesAndTellsWhatIsWrong) {
  if (!has_tools()) GTEST_SKIP();
  const cubenet::WorkingDir directory;
  write_file("s.blif", ".model top\n.inputs a.x A.x\n.outputs q GND a.x\n.latch a.x q re A.x 0\n"
                       ".names q A.x GND\n11 1\n.end\n");
  ASSERT_EQ(run_kit("import s.blif --names names.txt -o d.tt2").status, 0);
  ASSERT_EQ(run(CUBENET_PROGRAM " -b d").status, 0);
  const std::string proved = "proved: 7 claims, 7 by structure, 0 by all input vectors, 0 by SAT; abc agrees\n";
  EXPECT_EQ(run_kit("prove --source s.blif d").text, proved);
  EXPECT_EQ(run_kit("prove --source s.blif --from blif --top top d").text, proved);
  write_file("s.pla", ".i 2\n.o 1\n.ilb a b\n.ob a\n11 1\n.e\n"); // one name for an input and an output
  ASSERT_EQ(run_kit("import s.pla -o p.tt2").status + run(CUBENET_PROGRAM " -b p").status, 0);
  EXPECT_EQ(run_kit("prove --source s.pla p").status, 0);
  write_file("s.blif", ".model top\n.inputs a.x A.x\n.outputs q GND a.x\n.latch a.x q fe A.x 0\n"
                       ".names q A.x GND\n11 1\n.end\n");
  const Outcome wrong = run_kit("prove --source s.blif d");
  EXPECT_EQ(wrong.status, 1);
  EXPECT_EQ(wrong.text.substr(0, wrong.text.find("\n  net")),
            "q: clock: the netlist gives 0, the source 1\n  for A.x=0");
  const std::pair<std::string, std::string> cases[] = {
      {"PATH=/nowhere " CUBEKIT_PROGRAM " prove --source s.blif d",
       "this needs berkeley-abc, which can't be started; Debian has it in the package berkeley-abc\n"},
      {CUBEKIT_PROGRAM " prove --source none.blif d", "none.blif: "},
      {CUBEKIT_PROGRAM " prove --source names.txt d",
       "names.txt: the extension doesn't tell the format; add --from pla, blif, verilog or json\n"},
      {CUBEKIT_PROGRAM " prove --source s.blif --names s.blif d", "s.blif:1: no tab between two names\n"},
      {CUBEKIT_PROGRAM " prove --source s.blif --top none d", "s.blif: "}};
  for (const auto &[command, text] : cases) {
    const Outcome outcome = run(command);
    EXPECT_EQ(outcome.status, 2) << command;
    EXPECT_EQ(outcome.text.substr(0, text.size()), text);
  }
}

} // namespace
} // namespace cubekit
