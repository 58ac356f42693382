// Fan-out on tables small enough to see through.
#include <gtest/gtest.h>

#include "drc/checking.h"
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
  EXPECT_EQ(checking.design->pin_names[0], "a"); // only the message says that it is removed
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

} // namespace
} // namespace cubenet
