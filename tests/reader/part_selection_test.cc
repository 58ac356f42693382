// What DEVICE, PART and the command line select together.
#include "reader/part_selection.h"

#include <gtest/gtest.h>

#include "model/run_settings.h"
#include "reader/reading.h"
#include "support/capture.h"

namespace cubenet {
namespace {

constexpr const char *kDefault = "Tarvex Tarvex7710K-100XQ64";

TEST(PartSelection, EveryCombinationOfNamesIsSettled) {
  struct Row {
    const char *device, *part; // nullptr: no part
    bool is_from_command_line;
    const char *settled, *message;
  };
  const Row rows[] = {
      {"", nullptr, false, kDefault, ""},
      // only a part, or from the command line
      {"", "mirn5512-a", false, "Mirn Mirn5512-A", ""},
      {"mirn", "tarvex7710k-x", true, "Tarvex Tarvex7710K-X", ""},
      {"", "other", true, "Tarvex other", ""},
      {"", "", true, "Tarvex ", ""},
      {"", "i5512v80", false, "Tarvex Tarvex5512-800LV", ""},
      {"", "other", false, "", "31361 ERROR: Part 'other' is not recognized\n"},
      // only a device
      {"mIRN", nullptr, false, "Mirn Mirn7710K-100XQ64",
       "31633 WARNING: Device is declared as 'Mirn', part 'Mirn7710K-100XQ64' is used\n"},
      {"tarvex", nullptr, false, kDefault,
       "31634 WARNING: Device is declared as 'Tarvex', part 'Tarvex7710K-100XQ64' is used\n"},
      {"P7710k10;x", nullptr, false, "Mirn Mirn7710-100LK", ""},
      {"I7710k,", nullptr, false, kDefault,
       "31632 WARNING: Device 'I7710k,' is not recognized, part 'Tarvex7710K-100XQ64' is used\n"},
      {"I7710k,x", nullptr, false, "Tarvex Tarvex7710-0LK", ""},
      {"i7710K007", nullptr, false, "Tarvex Tarvex7710-70LK", ""},
      {"i7710K2147483647", nullptr, false, "Tarvex Tarvex7710-21474836470LK", ""},
      {"i7710K2147483648", nullptr, false, kDefault,
       "31632 WARNING: Device 'i7710K2147483648' is not recognized, part 'Tarvex7710K-100XQ64' is used\n"},
      {"i77x0K80", nullptr, false, kDefault,
       "31632 WARNING: Device 'i77x0K80' is not recognized, part 'Tarvex7710K-100XQ64' is used\n"},
      {"i7710K8a", nullptr, false, kDefault,
       "31632 WARNING: Device 'i7710K8a' is not recognized, part 'Tarvex7710K-100XQ64' is used\n"},
      {"q7710K80", nullptr, false, kDefault,
       "31632 WARNING: Device 'q7710K80' is not recognized, part 'Tarvex7710K-100XQ64' is used\n"},
      {"mirn7", nullptr, false, kDefault,
       "31632 WARNING: Device 'mirn7' is not recognized, part 'Tarvex7710K-100XQ64' is used\n"},
      // both
      {"mirn", "Mirn7710-x", false, "Mirn Mirn7710-X", ""},
      {"tarvex", "Mirn7710-x", false, "Mirn Mirn7710-X",
       "31631 WARNING: Part 'Mirn7710-X' and device 'Tarvex' do not match; part 'Mirn7710-X' is used\n"},
      {"p7710x80", "mirn7710-800lxq44", false, "Mirn Mirn7710-800LXQ44", ""},
      {"p7710x70", "mirn7710-800lxq44", false, "Mirn Mirn7710-800LXQ44",
       "31631 WARNING: Part 'Mirn7710-800LXQ44' and device 'p7710x70' do not match; part 'Mirn7710-800LXQ44' is "
       "used\n"},
      {"i7710x80", "mirn7710-800lx", false, "Mirn Mirn7710-800LX",
       "31631 WARNING: Part 'Mirn7710-800LX' and device 'i7710x80' do not match; part 'Mirn7710-800LX' is used\n"},
      {"odd", "Tarvex1", false, "Tarvex Tarvex1",
       "31632 WARNING: Device 'odd' is not recognized, part 'Tarvex1' is used\n"},
      {"MIRN", "i7710x80", false, "Tarvex Tarvex7710-800LX",
       "31631 WARNING: Part 'Tarvex7710-800LX' and device 'Mirn' do not match; part 'Tarvex7710-800LX' is used\n"},
      {"mirn", "other", false, "", "31361 ERROR: Part 'other' is not recognized\n"},
  };
  for (const Row &row : rows) {
    CapturedMessages captured;
    DesignHeader header;
    const PartRequest request{row.device, row.part != nullptr ? row.part : "", row.part != nullptr,
                              row.is_from_command_line};
    const bool is_settled = select_part(request, header);
    EXPECT_EQ(is_settled ? header.family + " " + header.part : "", row.settled) << row.device;
    EXPECT_EQ(captured.take_unwrapped(), row.message) << row.device;
  }
}

TEST(PartSelection, APartOf255CharactersIsRefusedWhereverItCameFrom) {
  for (const bool is_from_command_line : {false, true}) {
    CapturedMessages captured;
    DesignHeader header;
    EXPECT_FALSE(select_part({"mirn", "Mirn" + std::string(251, '1'), true, is_from_command_line}, header));
    EXPECT_TRUE(select_part({"mirn", "Mirn" + std::string(250, '1'), true, is_from_command_line}, header));
    EXPECT_EQ(message_numbers(captured.take_unwrapped()), "31361 ");
  }
}

TEST(PartSelection, TheCommandLineWinsAndTheLatestAttributeCounts) {
  const std::string text = design_with("#$ PROPERTY corvane PART Mirn1\n#$ PROPERTY corvane part Mirn2 x");
  EXPECT_EQ(Reading(text).design->header.part, "Mirn2");
  run_settings.part_name = "Tarvex8";
  EXPECT_EQ(Reading(text).design->header.part, "Tarvex8");
  reset_run_settings();
  EXPECT_EQ(Reading("#$ DEVICE junk\n1\n").messages,
            "31410 ERROR: PLA size must be declared before product term in file 't'\n"
            "31632 WARNING: Device 'junk' is not recognized, part 'Tarvex7710K-100XQ64' is used\n");
}

} // namespace
} // namespace cubenet
