// Exports, checked by the tools that they are for.
#include "kit/export/export.h"
#include "kit/netlist/check_netlist.h"

#include <fstream>
#include <set>

#include "kit/netlist/nxf_parser.h"
#include "kit/support/export_tools.h"

namespace cubekit {
namespace {

void write_exports(const TempDir &dir, const Netlist &netlist) {
  std::ofstream blif(dir.file("design.blif")), verilog(dir.file("design.v")), library(dir.file("library.v")),
      json(dir.file("design.json"));
  write_blif(blif, netlist);
  write_verilog(verilog, netlist);
  write_library(library, netlist);
  write_json(json, netlist);
}

// A module that applies the rows and prints the output pins after each. Bidirectional pins may be driven
// against the device.
std::string bench(const Netlist &netlist, const std::vector<std::vector<Value>> &rows) {
  std::string declarations, ports, targets, shown, format;
  for (std::size_t i = 0; i < netlist.external_pins.size(); i++) {
    const ExternalPin &pin = netlist.external_pins[i];
    const std::string number = std::to_string(i), port = verilog_identifier(map_name(pin.pin, NameSet::VISIBLE));
    declarations += "  wire w" + number + "; reg r" + number + ";\n";
    if (pin.direction != Direction::OUT) declarations += "  assign w" + number + " = r" + number + ";\n";
    ports += (i == 0 ? "." : ", .") + port + "(w" + number + ")";
    targets += (i == 0 ? "r" : ", r") + number;
    if (pin.direction == Direction::IN) continue;
    shown += ", w" + number;
    format += "%b";
  }
  std::string steps;
  for (const std::vector<Value> &row : rows) {
    steps += "    {" + targets + "} = " + std::to_string(row.size()) + "'b";
    for (const Value value : row) steps += value_char(value);
    steps += "; #1 $display(\"" + format + "\"" + shown + ");\n";
  }
  return "module bench;\n" + declarations + "  " + verilog_identifier(module_name(netlist, NameSet::VISIBLE)) +
         " dut (" + ports + ");\n  initial begin\n" + steps + "  end\nendmodule\n";
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

std::string run_icarus(const TempDir &dir, const std::string &design) {
  const std::string program = dir.file(design + ".vvp");
  const Outcome built = run("iverilog -g2005 -Wall -Wno-timescale -o " + program + " " + dir.file(design) + " " +
                            dir.file("library.v") + " " + dir.file("bench.v"));
  EXPECT_EQ(built.text, "");
  return run("vvp -n " + program).text;
}

TEST(ExportTest, IcarusComputesWhatTheSimulatorDoes) {
  for_each_translation(kModes, [](const std::string &, const TempDir &dir, const Netlist &netlist) {
    write_exports(dir, netlist);
    const auto rows = random_rows(netlist, 300);
    write_file(dir.file("bench.v"), bench(netlist, rows));
    EXPECT_EQ(run_icarus(dir, "design.v"), simulate(netlist, rows));
  });
}

TEST(ExportTest, YosysReadsVerilogAndJsonAndWritesTheSameNetlistAgain) {
  for_each_translation({kModes[0], kModes[2]}, [](const std::string &, const TempDir &dir, const Netlist &netlist) {
    write_exports(dir, netlist);
    const Outcome yosys =
        run("cd " + dir.path.string() +
            " && yosys -q -p 'read_json design.json; write_verilog -noattr json.v; read_verilog library.v;"
            " hierarchy -check -auto-top; proc; check -assert; stat; design -reset; read_verilog design.v library.v;"
            " hierarchy -check -auto-top; proc; stat'");
    EXPECT_EQ(yosys.status, 0) << yosys.text;
    EXPECT_EQ(yosys.text.find("ERROR"), std::string::npos) << yosys.text;
    const auto rows = random_rows(netlist, 300);
    write_file(dir.file("bench.v"), bench(netlist, rows));
    EXPECT_EQ(run_icarus(dir, "json.v"), simulate(netlist, rows));
  });
}

// The sum of products of a truth table without registers, written from its lines; an X1/X2 pair becomes one
// output.
std::string blif_of_table(const std::string &path) {
  std::istringstream lines(read_file(path));
  std::vector<std::string> inputs, outputs;
  std::string phase, blif = ".model table\n.inputs", functions;
  std::vector<std::pair<std::string, std::string>> rows;
  for (std::string line, word; std::getline(lines, line);) {
    std::istringstream words(line);
    words >> word;
    if (word == ".ilb") inputs.assign(std::istream_iterator<std::string>(words), {});
    if (word == ".ob") outputs.assign(std::istream_iterator<std::string>(words), {});
    if (word == ".phase") words >> phase;
    if (line.empty() || std::string("01-").find(line[0]) == std::string::npos) continue;
    std::erase(line, ' ');
    std::erase(line, '|');
    rows.emplace_back(line.substr(0, inputs.size()), line.substr(inputs.size()));
  }
  std::string ports;
  for (const std::string &input : inputs) ports += " " + input;
  blif += ports + "\n.outputs";
  std::set<std::string> listed;
  for (std::size_t o = 0; o < outputs.size(); o++) {
    const bool low = outputs[o].ends_with('-') != (!phase.empty() && phase[o] == '0');
    if (outputs[o].ends_with('-')) outputs[o].pop_back();
    const std::string base = outputs[o].substr(0, outputs[o].find('.'));
    if (listed.insert(base).second) blif += " " + base;
    if (outputs[o].ends_with(".X2")) functions += ".names " + base + ".X1 " + base + ".X2 " + base + "\n10 1\n01 1\n";
    const bool driven = std::any_of(rows.begin(), rows.end(), [&](const auto &row) { return row.second[o] == '1'; });
    functions += ".names" + (driven ? ports : "") + " " + outputs[o] + ".f\n";
    for (const auto &[literals, marks] : rows)
      if (marks[o] == '1') functions += literals + " 1\n";
    functions += ".names " + outputs[o] + ".f " + outputs[o] + (low ? "\n0 1\n" : "\n1 1\n");
  }
  return blif + "\n" + functions + ".end\n";
}

std::string run_abc(const TempDir &dir, const std::string &commands) {
  return run("cd " + dir.path.string() + " && berkeley-abc -q '" + commands + "'").text;
}

TEST(ExportTest, AbcFindsTheBlifEqualToTheTruthTableAndAChangedOneNot) {
  const std::set<std::string> combinational{"adder", "chip_select", "decoder", "priority", "wide_or"};
  std::size_t compared = 0;
  for_each_translation(kModes, [&](const std::string &name, const TempDir &dir, const Netlist &netlist) {
    write_exports(dir, netlist);
    const std::string stats = run_abc(dir, "read_blif design.blif; strash; print_stats");
    EXPECT_NE(stats.find("i/o ="), std::string::npos) << stats;
    EXPECT_EQ(stats.find("rror"), std::string::npos) << stats;
    if (!combinational.contains(name)) return;
    write_file(dir.file("table.blif"), blif_of_table(example_path(name)));
    const std::string verdict = run_abc(dir, "cec table.blif design.blif");
    EXPECT_NE(verdict.find("Networks are equivalent"), std::string::npos) << verdict;

    std::string changed = read_file(dir.file("design.blif"));
    const std::size_t row = changed.find("1 1\n", changed.find("\n.names"));
    changed[row] = '0';
    write_file(dir.file("design.blif"), changed);
    EXPECT_NE(run_abc(dir, "cec table.blif design.blif").find("NOT EQUIVALENT"), std::string::npos);
    compared++;
  });
  EXPECT_EQ(compared, combinational.size() * kModes.size());
}

// Registers, pads and loops are cut: each of their pins is a port of the model.
TEST(ExportTest, BlifShowsWhereLogicEnds) {
  TempDir dir;
  ASSERT_TRUE(translate_example(dir, "bus", "-pla"));
  const std::string bus = run_kit("export blif " + dir.file("bus")).text;
  for (const std::string port : {"r1.D0", "r1.CLK", "d1_Z.A0", "d1_Z.OE", "busy_Z.OE", "r0_Q"})
    EXPECT_NE(bus.find("\n  " + port), std::string::npos) << port;
  ASSERT_TRUE(translate_example(dir, "latch_lh", "-pla"));
  const std::string latch = run_kit("export blif " + dir.file("latch_lh")).text;
  EXPECT_NE(latch.find(".outputs \\\n  level \\\n  differs \\\n  level_PIN..loop \\\n  shadow..loop\n"),
            std::string::npos)
      << latch;
}

// Every primitive that has CD, SD, EN, T0 or G, fed straight from pins: the exported library against the
// simulator.
TEST(ExportTest, EveryStoragePrimitiveBehavesInIcarusAsInTheSimulator) {
  std::string pins, nets, symbols;
  std::array<std::string, 7> readers;
  constexpr std::array<std::string_view, 7> kInputs{"D0", "T0", "CD", "SD", "EN", "CLK", "G"};
  for (const PrimitiveRow &primitive : kPrimitives) {
    if (!is_storage(primitive.function)) continue;
    const std::string name(primitive.name);
    symbols += "SYM " + name + " s" + name + ";\n";
    for (const PinRow &pin : primitive.pins) {
      if (pin.name.empty()) continue;
      const std::string pin_name(pin.name);
      const auto at = static_cast<std::size_t>(std::find(kInputs.begin(), kInputs.end(), pin.name) - kInputs.begin());
      if (at < kInputs.size()) readers[at] += " s" + name + "." + pin_name;
      symbols += "\tPIN " + pin_name + (at < kInputs.size() ? " IN i" + pin_name : " OUT " + name + "_Q") + ";\n";
    }
    symbols += "END;\n\n";
    pins += "XPIN y" + name + " OUT " + name + "_Q;\n";
    nets += "NET " + name + "_Q EXT SRC s" + name + ".Q0;\n\n";
  }
  for (std::size_t i = 0; i < kInputs.size(); i++) {
    pins += "XPIN i" + std::string(kInputs[i]) + " IN i" + std::string(kInputs[i]) + ";\n";
    nets += "NET i" + std::string(kInputs[i]) + " EXT DST" + readers[i] + ";\n";
  }
  TempDir dir;
  write_file(dir.file("small.nxf"), nxf_text(pins + "\n" + nets + symbols));
  Netlist netlist;
  std::ostringstream errors;
  ASSERT_TRUE(load_design(dir.file("small"), netlist, errors)) << errors.str();
  write_exports(dir, netlist);
  const auto rows = random_rows(netlist, 3000);
  write_file(dir.file("bench.v"), bench(netlist, rows));
  EXPECT_EQ(run_icarus(dir, "design.v"), simulate(netlist, rows));
}

// Names that the formats don't allow, keywords, names that a careless mapping would merge, and a macro: all
// tools still read the file, and distinct nets stay distinct.
TEST(ExportTest, StrangeNamesStayApartInEveryFormat) {
  const std::string strange =
      "XPIN wire IN wire;\nXPIN a.b IN a.b;\nXPIN $24 IN $24;\nXPIN \"q\\ IN \"q\\;\n"
      "XPIN y OUT y_PIN;\nXPIN 1[0] OUT z#;\n\n"
      "NET wire EXT DST y.A0 small.in;\nNET a.b EXT DST y.A1;\nNET $24 EXT DST y.A2;\n"
      "NET \"q\\ EXT DST z#.A0;\nNET y_PIN EXT SRC y.Z0;\n\nNET z# EXT SRC z#.ZN0;\n\n"
      "NET y SRC small.out DST z#.A1;\n\n"
      "SYM AND3 y;\n\tPIN A0 IN wire;\n\tPIN A1 IN a.b;\n\tPIN A2 IN $24;\n\tPIN Z0 OUT y_PIN;\n"
      "END;\n\nSYM NOR2 z#;\n\tPIN A0 IN \"q\\;\n\tPIN A1 IN y;\n\tPIN ZN0 OUT z#;\nEND;\n\n"
      "SYM small small HARD;\n\tPIN in IN wire;\n\tPIN out OUT y;\nEND;\n\n";
  TempDir dir;
  write_file(dir.file("small.nxf"), nxf_text(strange));
  Netlist netlist;
  std::ostringstream errors;
  ASSERT_TRUE(load_design(dir.file("small"), netlist, errors)) << errors.str();
  write_exports(dir, netlist);
  const auto rows = random_rows(netlist, 100);
  write_file(dir.file("bench.v"), bench(netlist, rows));
  const std::string wanted = simulate(netlist, rows);
  EXPECT_NE(wanted.find("1x"), std::string::npos);
  EXPECT_NE(wanted.find("00"), std::string::npos);
  EXPECT_EQ(run_icarus(dir, "design.v"), wanted);
  const Outcome yosys =
      run("cd " + dir.path.string() + " && yosys -q -p 'read_json design.json; write_verilog json.v'");
  EXPECT_EQ(yosys.status, 0) << yosys.text;
  EXPECT_EQ(run_icarus(dir, "json.v"), wanted);
  const std::string stats = run_abc(dir, "read_blif design.blif; strash; print_stats");
  EXPECT_NE(stats.find("i/o =    5/    3"), std::string::npos) << stats;
}

TEST(ExportTest, MappedNamesAreDistinctAndSimpleOnesStay) {
  const std::array<std::string, 10> names{"a", "a.b", "a%2eb", "a b", "a\\", "a%5c", "$", "%24", "\xC3\xA9", "a\tb"};
  for (const NameSet set : {NameSet::WORD, NameSet::VISIBLE}) {
    std::set<std::string> mapped;
    for (const std::string &name : names) mapped.insert(map_name(name, set));
    EXPECT_EQ(mapped.size(), names.size());
  }
  EXPECT_EQ(map_name("q0_PIN", NameSet::WORD), "q0_PIN");
  EXPECT_EQ(verilog_identifier("q0_PIN"), "q0_PIN");
  EXPECT_EQ(verilog_identifier("endmodule"), "\\endmodule ");
}

TEST(ExportTest, WrongUseAndUnsoundNetlistsAreRefused) {
  TempDir dir;
  write_file(dir.file("lacking.nxf"),
             nxf_text("XPIN y OUT y;\n\nNET y EXT SRC r.Q0;\n\nSYM FD11 r;\n\tPIN Q0 OUT y;\nEND;\n\n"));
  for (const std::string &command :
       {std::string("export"), std::string("export edif x"), "export blif " + dir.file("none"),
        "export verilog " + dir.file("lacking"), "sim " + dir.file("lacking") + " --vectors /dev/null",
        "stat " + dir.file("lacking")}) {
    const Outcome refused = run_kit(command + " >" + dir.file("out"));
    EXPECT_EQ(refused.status, 2) << command;
    EXPECT_NE(refused.text, "") << command;
  }
  ASSERT_TRUE(translate_example(dir, "adder", "-pla"));
  EXPECT_EQ(run_kit("export blif " + dir.file("adder") + " -o /dev/full").status, 2);
  EXPECT_EQ(run_kit("export blif " + dir.file("adder") + " > /dev/full").status, 2);
}

// The port "GND" of the netlist is the pin "_RES_GND" of another declaration.
TEST(ExportTest, KeepsPinsThatNothingUsesWhereTheTableIsAtHand) {
  const TempDir dir;
  const std::string in = "cd " + dir.path.string() + " && ", kit = in + CUBEKIT_PROGRAM " export ";
  write_file(dir.file("d.tt2"), "#$ PINS 5 n1 GND n2 y _RES_GND\n.i 1\n.o 1\n.ilb GND\n.ob y\n1 1\n.end\n");
  ASSERT_EQ(run(in + CUBENET_PROGRAM " -b d").status, 0);
  const std::string inputs = ".inputs \\\n  n1 \\\n  _RES_GND \\\n  n2\n.outputs \\\n  y\n";
  EXPECT_NE(run(kit + "blif d").text.find(inputs), std::string::npos) << run(kit + "blif d").text;
  EXPECT_EQ(run(kit + "verilog --library without d | sed '/);/q'").text,
            "module design_name (\n  input wire n1,\n  input wire _RES_GND,\n  input wire n2,\n  output wire y\n);\n");
  EXPECT_EQ(run(kit + "json d | grep -c '\"n[12]\": { \"direction\": \"input\"'").text, "2\n");
  ASSERT_EQ(run(in + "mv d.tt2 t").status, 0);
  EXPECT_EQ(run(kit + "blif d | grep -c n1").text, "0\n");
  EXPECT_EQ(run(kit + "blif -i t d | grep -c n1").text, "1\n");
  ASSERT_EQ(run(in + "sed 's/GND/gnd/g' t >d.tt2").status, 0);
  EXPECT_EQ(run(kit + "blif d >out").text, "d.tt2: is not the truth table of this netlist\n");
  EXPECT_EQ(run(kit + "blif d -i d.tt2 >out").status, 2);
}

} // namespace
} // namespace cubekit
