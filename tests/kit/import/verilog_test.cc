// Verilog modules become tables whose netlists show at their pins what the modules show in Icarus Verilog.
#include "kit/import/random_sources.h"

#include "kit/support/export_tools.h"

namespace cubekit {
namespace {

bool has_yosys() { return run("yosys -V").status == 0; }

Imported import_verilog(const std::string &text, ImportOptions options = {}) {
  write_file("source.v", text);
  options.path = "source.v";
  return import_text(text, SourceKind::VERILOG, options);
}

// At power-up an unknown clock becomes 0, which is an edge in Verilog: registers are then set to what a
// netlist starts with. Ports of the module in terms of the netlist's pins: a bit w<pin> for each, and an open
// one for those that the netlist lacks.
std::string bench_of(const Netlist &netlist, const std::vector<std::vector<Value>> &rows, const std::string &start) {
  std::map<std::string, std::map<int, std::string>> ports;
  std::string declarations, targets, shown, format, steps;
  for (std::size_t i = 0; i < netlist.external_pins.size(); i++) {
    const ExternalPin &pin = netlist.external_pins[i];
    const std::string name(pin.pin), number = std::to_string(i);
    const std::size_t bracket = name.find('[');
    const int bit = bracket == std::string::npos ? 0 : std::atoi(name.c_str() + bracket + 1);
    ports[name.substr(0, bracket)][bit] = "w" + number;
    declarations += "  wire w" + number + "; reg r" + number + ";\n";
    if (pin.direction != Direction::OUT) declarations += "  assign (pull1, pull0) w" + number + " = r" + number + ";\n";
    targets += (i == 0 ? "r" : ", r") + number;
    if (pin.direction == Direction::IN) continue;
    shown += ", w" + number;
    format += "%b";
  }
  std::string connections;
  for (const auto &[name, bits] : ports) {
    std::string text;
    for (int bit = bits.rbegin()->first; bit >= 0; bit--)
      text += (text.empty() ? "" : ", ") + (bits.contains(bit) ? bits.at(bit) : "open_" + name + std::to_string(bit));
    connections += (connections.empty() ? "." : ", .") + name + "({" + text + "})";
  }
  for (const std::vector<Value> &row : rows) {
    steps += "    {" + targets + "} = " + std::to_string(row.size()) + "'b";
    for (const Value value : row) steps += value_char(value);
    steps += "; #1 " + (&row == rows.data() ? start : "") + "#1 $display(\"" + format + "\"" + shown + ");\n";
  }
  return "module bench;\n" + declarations + "  dut dut (" + connections + ");\n  initial begin\n" + steps +
         "  end\nendmodule\n";
}

std::string simulate(const Netlist &netlist, const std::vector<std::vector<Value>> &rows) {
  Simulator simulator = make_simulator(netlist, Value::LOW);
  std::string text, restless;
  for (const std::vector<Value> &row : rows) {
    EXPECT_TRUE(step(simulator, row, restless)) << restless;
    for (std::size_t i = 0; i < row.size(); i++)
      if (netlist.external_pins[i].direction != Direction::IN) text += value_char(pin_value(simulator, i));
    text += '\n';
  }
  return text;
}

// No row drives a pin against the device.
void give_way(const Netlist &netlist, std::vector<std::vector<Value>> &rows) {
  auto simulator = std::make_unique<Simulator>(make_simulator(netlist, Value::LOW));
  std::string restless;
  for (std::vector<Value> &row : rows) {
    const Simulator before = *simulator;
    for (;;) {
      EXPECT_TRUE(step(*simulator, row, restless)) << restless;
      const std::vector<std::uint32_t> pins = contested_pins(*simulator);
      if (pins.empty()) break;
      for (const std::uint32_t pin : pins) row[pin] = Value::OPEN;
      simulator = std::make_unique<Simulator>(before);
    }
  }
}

// What the source leaves open may be anything.
void expect_alike(const std::string &source, std::string netlist) {
  ASSERT_EQ(source.size(), netlist.size()) << source.substr(0, 1000);
  for (std::size_t i = 0; i < source.size(); i++)
    if (source[i] == 'x') netlist[i] = 'x';
  ASSERT_EQ(source, netlist);
}

TEST(ImportVerilog, ShowsAtThePinsWhatTheModuleShows) {
  if (!has_yosys() || run("iverilog -V").status != 0) GTEST_SKIP();
  const cubenet::WorkingDir directory;
  for (std::uint64_t seed = 1; seed <= source_count(6); seed++) {
    const RandomModule module = random_module(seed);
    SCOPED_TRACE(module.text);
    // A register with a preset starts inverted on the other series.
    const std::string part = seed % 2 == 0 ? "Tarvex8840K-100XQ64" : "Tarvex5128K-100XQ64";
    const Imported imported = import_verilog(module.text, {.part = part, .flatten = seed % 3 * 4});
    ASSERT_TRUE(imported.is_done) << imported.told;
    SCOPED_TRACE(imported.table);
    ASSERT_EQ(translate_and_prove(imported.table), "");
    Netlist netlist;
    std::ostringstream errors;
    ASSERT_TRUE(load_nxf("d.nxf", netlist, errors)) << errors.str();
    auto rows = random_rows(netlist, 300);
    for (std::vector<Value> &row : rows) // a bus never floats, and nothing else drives an output
      for (std::size_t i = 0; i < row.size(); i++) {
        if (row[i] == Value::OPEN) row[i] = Value::LOW;
        if (netlist.external_pins[i].direction == Direction::OUT) row[i] = Value::OPEN;
      }
    give_way(netlist, rows);
    write_file("bench.v", bench_of(netlist, rows, module.start));
    ASSERT_EQ(run("iverilog -g2005 -o bench.vvp bench.v source.v").status, 0);
    ASSERT_NO_FATAL_FAILURE(expect_alike(run("vvp -n bench.vvp").text, simulate(netlist, rows)));
  }
}

TEST(ImportExamples, AreWhatTheirSourcesGive) {
  const cubenet::WorkingDir directory;
  std::size_t count = 0;
  for (const std::string &name : example_names())
    for (const std::string extension : {".v", ".blif", ".pla"}) {
      const std::string source = example_path(name).substr(0, example_path(name).size() - 4) + extension;
      if (!std::filesystem::exists(source) || (extension == ".v" && !has_yosys())) continue;
      const Outcome import = run_kit("import " + source);
      EXPECT_EQ(import.text, read_file(example_path(name)));
      EXPECT_EQ(translate_and_prove(import.text), "");
      count++;
    }
  EXPECT_GE(count, has_yosys() ? 4U : 2U);
}

TEST(ImportVerilog, GivesEachKindOfRegisterItsExtensions) {
  if (!has_yosys()) GTEST_SKIP();
  const cubenet::WorkingDir directory;
  const std::string head = "module m(input c, input r, input s, input e, input d, output reg q);\n  always @";
  const std::pair<std::string, std::string> cases[] = {
      {"(posedge c) q <= d;", ".ob q.D q.C\n"},
      {"(negedge c) if (e) q <= d;", ".ob q.D q.C q.CE\n"},
      {"(posedge c) if (e) begin if (r) q <= 0; else q <= d; end", ".ob q.D q.C q.CE q.SR\n"},
      {"(posedge c) if (s) q <= 1; else q <= d;", ".ob q.D q.C q.SP\n"},
      {"(posedge c or negedge r) if (!r) q <= 0; else if (e) q <= d;", ".ob q.D q.C q.CE q.AR\n"},
      {"(posedge c or posedge s) if (s) q <= 1; else q <= d;", ".ob q.D q.C q.AP\n"},
      {"(posedge c or posedge r or posedge s) if (r) q <= 0; else if (s) q <= 1; else if (e) q <= d;",
       ".ob q.D q.C q.CE q.AP q.AR\n"},
      {"* if (e) q = d;", ".ob q.D q.LH\n"},
      {"* if (!e) q = d;", ".ob q.D q.LE\n"},
  };
  for (const auto &[body, list] : cases) {
    const Imported imported = import_verilog(head + body + "\nendmodule\n", {.part = "Tarvex8840K-100XQ64"});
    EXPECT_NE(imported.table.find(list), std::string::npos) << body << '\n' << imported.told << imported.table;
    EXPECT_EQ(translate_and_prove(imported.table), "");
  }
}

TEST(ImportVerilog, MakesTogglesWhereThePartHasThem) {
  if (!has_yosys()) GTEST_SKIP();
  const cubenet::WorkingDir directory;
  const std::string head = "module m(input c, r, e, output reg [1:0] q);\nalways @(posedge c or posedge r) ";
  const std::string text = head + "if (r) q <= 3; else q <= q + e;\nendmodule\n";
  const Imported toggles = import_verilog(text, {.part = "Tarvex5128K-100XQ64"});
  EXPECT_NE(toggles.table.find(".ob q[1].T- q[0].T q[1].C"), std::string::npos) << toggles.table;
  EXPECT_EQ(translate_and_prove(toggles.table), "");
  EXPECT_NE(read_file("d.nxf").find("SYM FTI31 q[1];"), std::string::npos);
  for (const auto &[other, part] : {std::pair{text, "Tarvex8840K-100XQ64"},
                                    {head + "if (r) q <= 3; else if (e) q <= q + 1;\nendmodule\n", "Tarvex5128K"},
                                    {head + "if (r) q <= 3; else q <= q & {q[0] ^ e, e};\nendmodule\n", "Tarvex5128K"}})
    EXPECT_EQ(import_verilog(other, {.part = part}).table.find(".T"), std::string::npos) << other;
}

TEST(ImportVerilog, MakesOutputsOfTheirPortsInAnyOrder) {
  if (!has_yosys()) GTEST_SKIP();
  const cubenet::WorkingDir directory;
  const Imported imported = import_verilog("module m(output y, z, one, inout io, input a, e);\n"
                                           "assign y = a, z = io, one = 1, io = e ? a : 1'bz;\nendmodule\n");
  EXPECT_NE(imported.table.find("#$ PINS 6 y z one io a e\n"), std::string::npos) << imported.told;
  EXPECT_NE(imported.table.find(".p 4\n-1- 10010\n1-- 01000\n--- 00100\n--1 00001\n"), std::string::npos)
      << imported.table;
}

TEST(ImportVerilog, RefusesWhatATableCanNotSayWithItsLine) {
  if (!has_yosys()) GTEST_SKIP();
  const cubenet::WorkingDir directory;
  const std::string head = "module m(input c, input [9:0] a, input d, output y, output reg q, inout io);\n";
  const std::pair<std::string, std::string> cases[] = {
      {"assign y = ;", "source.v:2: yosys: syntax error, unexpected ';'\n"},
      {"assign y = a[0];\nalways @(posedge c) q <= d;\nalways @(negedge c) q <= !d;",
       "source.v:3: 'q' is driven more than once, see line 4\n"},
      {"assign y = c;\nassign y = d;\nalways @* q = c;", "source.v:1: 'c' is driven more than once\n"},
      {"reg [15:0] ram[1023:0];\nalways @(posedge c) begin ram[a] <= {16{d}}; q <= ^ram[a]; end\nassign y = 0;",
       "source.v:2: a memory of 1024 words of 16 bits is too large for a table, which makes registers of it: at most "
       "1024 bits\n"},
      {"wire w;\nassign w = ~(y & d);\nassign y = w ^ c;\nalways @* q = c;",
       "source.v:2: a loop of logic without a register: 'w'\n"},
      {"assign y = c; wire w = io & d;\nassign io = c ? w : 1'bz; always @* q = io;",
       "source.v:3: a loop of logic without a register, through the pin 'io'\n"},
      {"wire w;\nassign y = w;\nalways @* q = c;", "source.v:1: 'y' is driven by nothing\n"},
      {"always @* q = c;", "source.v:1: 'y' is driven by nothing\n"},
      {"other o(c, y);\nalways @* q = c;",
       "source.v: yosys: Module `\\other' referenced in module `\\m' in cell `\\o' is not part of the design.\n"},
      {"assign y = 0;\nalways @(posedge c or posedge d or posedge a[0]) if (d) q <= 0; else if (a[0]) q <= 1; else q "
       "<= a[1];",
       "source.v:3: register 'q' has both reset and preset: only parts of series 5 and 8 have that, see --part\n"},
  };
  for (const auto &[body, told] : cases) {
    const Imported imported = import_verilog(head + body + "\nendmodule\n");
    EXPECT_FALSE(imported.is_done) << body;
    EXPECT_EQ(imported.told, told) << body;
  }
}

} // namespace
} // namespace cubekit
