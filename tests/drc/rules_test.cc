// The rules for one signal: each list entry by itself, then combinations.
#include <string>

#include <gtest/gtest.h>

#include "drc/cases.h"
#include "drc/list_rules.h"
#include "drc/signal_rules.h"
#include "model/names.h"
#include "model/run_settings.h"
#include "support/capture.h"

namespace cubenet {
namespace {

// "P1 - OE < PIN": a pin (N: node, I: inverted pin) on series 1 whose output-list extensions are none (the
// plain name) and OE, and which is read as PIN.
std::string judge(const std::string &signal) {
  CapturedMessages captured;
  SignalFlags flags;
  const bool is_pin = signal[0] != 'N';
  int failed = 0;
  bool is_output = true;
  for (const std::string &word : split(signal.substr(2))) {
    const std::string extension = word == "-" ? "" : word;
    if (is_pin) flags.use_flags |= F_NOD;
    if (word == "<") {
      is_output = false;
    } else if (is_output) {
      if (check_output_entry(flags, extension, "q") != 0)
        failed = 1;
      else if (is_pin)
        flags.use_flags |= F_IO;
    } else {
      failed |= check_input_entry(flags, extension, "q");
    }
  }
  failed |= check_signal_rules(flags, signal[0] == 'I', "q", signal[1] - '0');
  EXPECT_EQ(failed, captured.text().find("ERROR") != std::string::npos ? 1 : 0) << signal;
  return captured.take_unwrapped();
}

TEST(SignalRules, EveryCombinationDrawsItsMessages) {
  for (const Case &each : read_cases("signals.txt")) {
    run_settings.debug_level = each.settings == "V" ? 1 : 0;
    EXPECT_EQ(judge(each.signal), each.messages) << each.signal;
  }
  reset_run_settings();
}

TEST(SignalRules, AnAcceptedEntrySetsTheFlagOfItsExtensionAndARejectedOneNone) {
  const auto legal = [](int (*rule)(SignalFlags &, std::string_view, std::string_view), std::uint32_t accepted) {
    std::string found;
    for (const std::string extension :
         {"",   "X1", "X2", "D.X1", "D.X2", "REG.X1", "REG.X2", "T.X1", "T.X2", "D",  "REG",
          "T",  "J",  "K",  "R",    "S",    "C",      "LH",     "LE",   "CE",   "SP", "SR",
          "AR", "RE", "Q",  "FB",   "OE",   "PIN",    "AP",     "PR",   "CLK",  "FC"}) {
      CapturedMessages captured;
      SignalFlags flags;
      const bool is_accepted = rule(flags, extension, "q") == 0;
      EXPECT_EQ(captured.text().empty(), is_accepted);
      EXPECT_EQ(flags.use_flags & (F_OB | F_ILB), is_accepted ? accepted : 0) << extension;
      if (is_accepted) found += " " + extension;
      if (flags.role_flags != 0)
        EXPECT_EQ(flags.role_flags, 1U << extension_code(extension)) << extension;
      else if (is_accepted)
        found += "=" + std::to_string(flags.use_flags & ~accepted);
    }
    return found;
  };
  EXPECT_EQ(legal(check_output_entry, F_OB), "  X1 X2 D.X1 D.X2 REG.X1 REG.X2 T.X1 T.X2 D REG T J K R S C LH LE CE SP "
                                             "SR AR RE OE AP PR");
  EXPECT_EQ(legal(check_input_entry, F_ILB), " =2 D=4 REG=16 T=8 Q FB PIN");
}

} // namespace
} // namespace cubenet
