// Fan-out on tables small enough to see through, and on random ones against the plain walk over terms.
#include <array>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "drc/checking.h"
#include "drc/passes.h"
#include "model/run_settings.h"

namespace cubenet {
namespace {

TEST(FanOut, ConstantOutputsHaveNoReaders) {
  const Sketch sketch{.pins = "a b c y z",
                      .nodes = "n u",
                      .ilb = "a b c n",
                      .ob = "y z n u",
                      .terms = "1--- 1000\n---- 1000\n-1-0 0110\n"};
  const Checking checking(sketch);
  EXPECT_EQ(checking.messages, "31552 WARNING: Pin 'a' does not fan out; pin 'a' is removed\n"
                               "31552 WARNING: Pin 'c' does not fan out; pin 'c' is removed\n");
  const FanOut &fan_out = checking.design->fan_out;
  EXPECT_EQ(fan_out.status, (std::vector<OutputStatus>{OUTPUT_CONSTANT, OUTPUT_LOGIC, OUTPUT_LOGIC, OUTPUT_EMPTY}));
  EXPECT_EQ(fan_out.cubes, (std::vector<std::uint32_t>{2, 1, 1, 0}));
  EXPECT_EQ(fan_out.fans_out, (std::vector<std::uint8_t>{0, 1, 0, 1}));
  EXPECT_EQ(checking.design->pin_names[0], "a"); // only the message speaks of removal
}

TEST(FanOut, UnreadFeedbacksAreTold) {
  const Sketch sketch{.pins = "a c y",
                      .nodes = "n q",
                      .ilb = "a c n q.Q y.PIN",
                      .ob = "y n q.D q.C",
                      .terms = "1---- 1110\n-1--- 0001\n"};
  EXPECT_EQ(Checking(sketch).messages, "");
  run_settings.debug_level = 1;
  EXPECT_EQ(Checking(sketch).messages, "31550 WARNING: Signal 'n' does not fan out\n"
                                       "31550 WARNING: Signal 'q.Q' does not fan out\n"
                                       "31550 WARNING: Signal 'y.PIN' does not fan out\n");
  reset_run_settings();
}

// Term by term and input by input, as one would do it by hand.
struct PlainFanOut {
  FanOut result;
  std::vector<int> literals; // per term; -1 when it drives nothing

  PlainFanOut(const Design &design, const CubeTable &cubes, const std::vector<bool> &tristate_input,
              const std::vector<bool> &tristate_output) {
    const std::size_t inputs = design.ILB.size(), outputs = design.OLB.size(), terms = cubes.NUM_CUBES;
    const auto drives = [&](std::size_t i, std::size_t j) {
      bool found = false;
      for_each_output(cubes, cube(cubes, i), [&](std::size_t output) { found = found || output == j; });
      return found;
    };
    const auto has = [&](std::size_t i, std::size_t k) {
      const Literal literal = literal_at(cube(cubes, i), k);
      return literal == LITERAL_TRUE || literal == LITERAL_COMPLEMENT;
    };
    result = {std::vector<OutputStatus>(outputs, OUTPUT_LOGIC), std::vector<std::uint32_t>(outputs),
              std::vector<std::uint8_t>(outputs), std::vector<std::uint8_t>(inputs)};
    for (std::size_t i = 0; i < terms; i++) {
      literals.push_back(-1);
      for (std::size_t j = 0; j < outputs; j++) literals[i] = drives(i, j) ? 0 : literals[i];
      for (std::size_t k = 0; k < inputs && literals[i] >= 0; k++) literals[i] += has(i, k) ? 1 : 0;
    }
    for (std::size_t j = 0; j < outputs; j++) {
      bool is_constant = false;
      for (std::size_t i = 0; i < terms; i++) {
        if (!drives(i, j)) continue;
        result.cubes[j]++;
        is_constant = is_constant || literals[i] == 0;
      }
      result.status[j] = result.cubes[j] == 0 ? OUTPUT_EMPTY : is_constant ? OUTPUT_CONSTANT : OUTPUT_LOGIC;
      for (std::size_t i = 0; i < terms && result.status[j] == OUTPUT_LOGIC; i++)
        for (std::size_t k = 0; k < inputs && drives(i, j); k++) result.fans_out[k] |= has(i, k);
      if (result.status[j] != OUTPUT_LOGIC || tristate_output[j]) continue;
      for (std::size_t i = 0; i < terms; i++) {
        if (drives(i, j) && literals[i] != 1) {
          result.oe_feed[j] = 0;
          break;
        }
        std::size_t first = 0;
        while (first < inputs && !has(i, first)) first++;
        if (first < inputs && tristate_input[first]) result.oe_feed[j] = 1;
      }
    }
  }
};

TEST(FanOut, EqualsThePlainWalkOnRandomTables) {
  std::mt19937 random(4711);
  int marked = 0, constant = 0, unread = 0;
  for (int round = 0; round < 400; round++) {
    const std::size_t inputs = 1 + random() % 40, outputs = 1 + random() % 40;
    const std::size_t terms = round % 50 == 49 ? 700 : random() % 12;
    Design design;
    CubeTable cubes;
    design.node_names.assign(inputs + outputs, "n");
    design.node_flags.resize(inputs + outputs);
    design.ILB.assign(inputs, "n");
    design.IB_EXT.resize(inputs);
    design.OLB.assign(outputs, "n");
    std::vector<bool> tristate;
    for (std::size_t s = 0; s < inputs + outputs; s++) {
      tristate.push_back(random() % 3 == 0);
      design.node_flags[s].role_flags = tristate[s] ? F_OE : F_OUT;
      (s < inputs ? design.ilb_signals : design.olb_signals).push_back(static_cast<SignalIndex>(s));
    }
    set_cube_layout(cubes, inputs, outputs);
    const std::size_t density = 1 + random() % 3;
    for (std::size_t i = 0; i < terms; i++, cubes.NUM_CUBES++) {
      std::uint32_t *row = next_cube(cubes);
      for (std::size_t k = 0; k < inputs; k++) {
        const std::size_t literal = random() % inputs < density ? random() % 3 : 3;
        row[1 + k / 16] |= static_cast<std::uint32_t>(literal << (2 * (k % 16)));
      }
      for (std::size_t bit = 2 * inputs; bit < 2 * inputs + outputs; bit++)
        row[1 + bit / 32] |= std::uint32_t{random() % 4 == 0} << (bit % 32);
    }
    analyze_fan_out(design, cubes);
    mark_output_enable_feed(design, cubes);
    const auto middle = tristate.begin() + static_cast<std::ptrdiff_t>(inputs);
    const PlainFanOut plain(design, cubes, {tristate.begin(), middle}, {middle, tristate.end()});
    ASSERT_EQ(design.fan_out.status, plain.result.status) << round;
    ASSERT_EQ(design.fan_out.cubes, plain.result.cubes) << round;
    ASSERT_EQ(design.fan_out.fans_out, plain.result.fans_out) << round;
    ASSERT_EQ(design.fan_out.oe_feed, plain.result.oe_feed) << round;
    for (const std::uint8_t mark : plain.result.oe_feed) marked += mark;
    for (const OutputStatus status : plain.result.status) constant += status == OUTPUT_CONSTANT;
    for (const std::uint8_t reads : plain.result.fans_out) unread += reads == 0;
  }
  EXPECT_GT(marked, 100);
  EXPECT_GT(constant, 100);
  EXPECT_GT(unread, 100);
}

} // namespace
} // namespace cubenet
