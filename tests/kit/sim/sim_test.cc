// The simulator as its users see it; the tests of the exports compare its gates and registers with Icarus
// Verilog.
#include <map>

#include "kit/support/export_tools.h"

namespace cubekit {
namespace {

// Output and exit status of a simulation in the directory.
Outcome simulate(const TempDir &dir, const std::string &design, const std::string &vectors,
                 const std::string &options = "") {
  write_file(dir.file("in.txt"), vectors);
  return run("cd " + dir.path.string() + " && " CUBEKIT_PROGRAM " sim " + design + " --vectors in.txt " + options);
}

TEST(SimTest, RegistersCountEdgesAndTakeDataFromBeforeThem) {
  TempDir dir;
  ASSERT_TRUE(translate_example(dir, "counter", "-pla"));
  const Outcome counter =
      simulate(dir, "counter", "# two edges, with comments\n\nclk\n0\n1 # rises\n\n1\n0\n1\nx\n0\n");
  EXPECT_EQ(counter.text, "clk | q0 q1\n"
                          "0   | 0  0\n"
                          "1   | 1  0\n"
                          "1   | 1  0\n"
                          "0   | 1  0\n"
                          "1   | 0  1\n"
                          "x   | 0  1\n"
                          "0   | 0  1\n");
  EXPECT_EQ(counter.status, 0);
  EXPECT_EQ(simulate(dir, "counter", "clk\n0\n1\n", "--power-up x").text, "clk | q0 q1\n"
                                                                          "0   | x  x\n"
                                                                          "1   | x  x\n");
  // There may have been an edge, or not.
  EXPECT_EQ(simulate(dir, "counter", "clk\n0\nx\n").text, "clk | q0 q1\n"
                                                          "0   | 0  0\n"
                                                          "x   | x  0\n");
  ASSERT_TRUE(translate_example(dir, "bus", "-pla"));
  EXPECT_EQ(simulate(dir, "bus", "clk wr d1 d0 rd\n01000\n11110\n01110\n11110\n").text, "clk wr d1 d0 rd | d1 d0 busy\n"
                                                                                        "0   1  0  0  0  | 0  0  z\n"
                                                                                        "1   1  1  1  0  | 1  1  z\n"
                                                                                        "0   1  1  1  0  | 1  1  z\n"
                                                                                        "1   1  1  1  0  | 1  1  z\n");
}

TEST(SimTest, BidirectionalPinsAreDrivenFromOutsideWhileTheDeviceLeavesThem) {
  TempDir dir;
  for (const std::string &mode : kModes) {
    ASSERT_TRUE(translate_example(dir, "bus", mode));
    EXPECT_EQ(simulate(dir, "bus", "clk rd wr d1 d0\n0010-\n0011 0\n10110\n0100-\n01000\n0x000\n00000\n").text,
              "clk rd wr d1 d0 | d1 d0 busy\n"
              "0   0  1  0  -  | 0  z  z\n"
              "0   0  1  1  0  | 1  0  z\n"
              "1   0  1  1  0  | 1  0  z\n"
              "0   1  0  0  -  | x  0  0\n"
              "in.txt:5: pin 'd1' is driven by the device too, to the other value\n"
              "0   1  0  0  0  | x  0  0\n"
              "0   x  0  0  0  | x  x  x\n"
              "0   0  0  0  0  | 0  0  z\n")
        << mode;
  }
}

// Latches made of gates, and those of the library: open, closed, and closing while the data changes.
TEST(SimTest, LatchesHoldWhatStoodBeforeTheyClosed) {
  TempDir dir;
  for (const std::string &mode : kModes) {
    ASSERT_TRUE(translate_example(dir, "latch_lh", mode));
    EXPECT_EQ(simulate(dir, "latch_lh", "sample clear comparator\n101\n001\n000\n100\n001\n011\n").text,
              "sample clear comparator | level differs\n"
              "1      0     1          | 1     1\n"
              "0      0     1          | 1     1\n"
              "0      0     0          | 1     1\n"
              "1      0     0          | 0     1\n"
              "0      0     1          | 0     1\n"
              "0      1     1          | 0     0\n")
        << mode;
  }
}

TEST(SimTest, WhatNeverSettlesIsReportedWithItsRow) {
  const std::string ring = "XPIN run IN run;\nXPIN y OUT y_PIN;\n\nNET run EXT DST y.A0;\n"
                           "NET y_PIN EXT SRC y.ZN0 DST y.A1;\n\n"
                           "SYM NAND2 y;\n\tPIN A0 IN run;\n\tPIN A1 IN y_PIN;\n\tPIN ZN0 OUT y_PIN;\nEND;\n\n";
  // A latch that is fed its own complement while it is open.
  const std::string latch = "XPIN run IN run;\nXPIN y OUT y_PIN;\n\nNET run EXT DST q.G;\n"
                            "NET q SRC q.Q0 DST y.A0;\n\nNET y_PIN EXT SRC y.ZN0 DST q.D0;\n\n"
                            "SYM INV y;\n\tPIN A0 IN q;\n\tPIN ZN0 OUT y_PIN;\nEND;\n\n"
                            "SYM XDL1 q;\n\tPIN G IN run;\n\tPIN D0 IN y_PIN;\n\tPIN Q0 OUT q;\nEND;\n\n";
  for (const std::string &netlist : {ring, latch}) {
    TempDir dir;
    write_file(dir.file("small.nxf"), nxf_text(netlist));
    const Outcome outcome = simulate(dir, "small", "run\n0\n1\n0\n");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.text.find("run | y\n0   | 1\n"), std::string::npos) << outcome.text;
    EXPECT_NE(outcome.text.find("in.txt:3: this row never settles: y_PIN\n"), std::string::npos) << outcome.text;
  }
}

TEST(SimTest, WrongVectorFilesAreRefusedWithTheirLine) {
  TempDir dir;
  ASSERT_TRUE(translate_example(dir, "counter", "-pla"));
  const std::array<std::array<std::string, 2>, 7> cases{{
      {"", "in.txt: a line with the names"},
      {"# nothing\n", "names of input pins"},
      {"clk reset\n", "in.txt:1: the design has no pin 'reset'"},
      {"clk q0\n", "in.txt:1: pin 'q0' is an output"},
      {"clk clk\n", "in.txt:1: pin 'clk' has a column already"},
      {"\nclk\n0\n2\n", "in.txt:4: a value must be 0, 1, x or -"},
      {"clk\n01\n", "in.txt:2: the row has 2 values for 1 columns"},
  }};
  for (const auto &[vectors, message] : cases) {
    const Outcome outcome = simulate(dir, "counter", vectors);
    EXPECT_EQ(outcome.status, 2) << vectors;
    EXPECT_NE(outcome.text.find(message), std::string::npos) << outcome.text;
  }
  EXPECT_EQ(run_kit("sim " + dir.file("counter") + " --vectors " + dir.file("none")).status, 2);
}

// The values of each step in a value change dump, by the names of the pins and, after "nets/", of the nets.
std::vector<std::map<std::string, char>> read_waves(const std::string &text) {
  std::map<std::string, std::vector<std::string>> names;
  std::vector<std::map<std::string, char>> steps;
  std::istringstream lines(text);
  std::size_t scopes = 0;
  for (std::string line; std::getline(lines, line);) {
    std::istringstream words(line);
    std::array<std::string, 5> word;
    for (std::string &w : word) words >> w;
    scopes += word[0] == "$scope" ? 1 : 0;
    if (word[0] == "$var") names[word[3]].push_back((scopes > 1 ? "nets/" : "") + word[4]);
    if (line[0] == '#') steps.push_back(steps.empty() ? std::map<std::string, char>() : steps.back());
    if (!steps.empty() && std::string("01xz").find(line[0]) != std::string::npos) {
      EXPECT_TRUE(names.contains(line.substr(1))) << line;
      for (const std::string &name : names[line.substr(1)]) steps.back()[name] = line[0];
    }
  }
  return steps;
}

TEST(SimTest, WaveformsShowWhatIsPrintedAndAreTheSameOnEveryRun) {
  TempDir dir;
  ASSERT_TRUE(translate_example(dir, "bus", "-pla"));
  const std::string vectors = "clk rd wr d1 d0\n0010-\n00110\n10110\n0100-\n";
  const Outcome outcome = simulate(dir, "bus", vectors, "--vcd waves.vcd");
  const std::string waves = read_file(dir.file("waves.vcd"));
  simulate(dir, "bus", vectors, "--vcd again.vcd");
  EXPECT_EQ(read_file(dir.file("again.vcd")), waves);

  const auto steps = read_waves(waves);
  ASSERT_EQ(steps.size(), 4U);
  std::istringstream lines(outcome.text);
  std::string line, name;
  std::getline(lines, line);
  std::istringstream header(line.substr(line.find('|') + 1));
  const std::vector<std::string> pins(std::istream_iterator<std::string>(header), {});
  for (const auto &step : steps) {
    std::getline(lines, line);
    std::istringstream values(line.substr(line.find('|') + 1));
    for (const std::string &pin : pins) {
      char value = 0;
      values >> value;
      EXPECT_EQ(step.at(pin), value) << pin << "\n" << waves;
    }
  }
  EXPECT_EQ(steps[3].at("nets/r1_Q"), '1');
  EXPECT_EQ(steps[0].at("nets/d0_PIN"), 'x');
  EXPECT_EQ(simulate(dir, "bus", vectors, "--vcd /dev/full").status, 2);
}

TEST(SimTest, WaveformsAreReadByTheToolsOfAViewer) {
  TempDir dir;
  ASSERT_TRUE(translate_example(dir, "bus", "-pla"));
  simulate(dir, "bus", "clk rd wr d1 d0\n0010-\n00110\n101x0\n0100-\n", "--vcd waves.vcd");
  const Outcome there_and_back =
      run("cd " + dir.path.string() + " && vcd2fst waves.vcd waves.fst && fst2vcd waves.fst > back.vcd");
  ASSERT_EQ(there_and_back.status, 0) << there_and_back.text;
  EXPECT_EQ(read_waves(read_file(dir.file("back.vcd"))), read_waves(read_file(dir.file("waves.vcd"))));
}

} // namespace
} // namespace cubekit
