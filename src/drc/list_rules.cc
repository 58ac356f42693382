// The dot extensions that are legal on each side of an equation, and the flag that each sets. An entry causes
// at most one message. CLK is not an extension here: on the lists only C is the clock.
#include "drc/list_rules.h"

#include <algorithm>
#include <array>
#include <span>
#include <string>

#include "report/messages.h"

namespace cubenet {

namespace {

// Either a flag is set (a second entry is a repeat), or the extension is legal only on the other side.
struct EntryRow {
  std::string_view extension;
  std::uint32_t role_flag, use_flag; // both 0: rejected
  int number;                        // of the repeat, or of the rejection
  const char *legal_as;              // rejected: the purpose of the extension
};

struct Side {
  std::span<const EntryRow> rows;
  const char *list;
  const char *hand, *other_hand; // of the equation
  UseFlag accepted;
};

constexpr const char *kRegisterOutput = "feedback from register output";
constexpr const char *kClock = "register clock input";
constexpr const char *kData = "register data input";
constexpr const char *kEnable = "3-state output enable";
constexpr const char *kClockEnable = "register clock enable";
constexpr const char *kSyncPreset = "register synchronous preset";
constexpr const char *kSyncReset = "register synchronous reset";
constexpr const char *kReset = "register reset";
constexpr const char *kPreset = "register preset";
constexpr const char *kXor = "input to XOR gate";

// Each repeat has its own number; downstream tools distinguish the repeats by it.
// clang-format off
constexpr std::array<EntryRow, 30> kOutputRows{{
    // extension role  use number    legal as
    {"",       F_OUT, 0, 9931270,  nullptr},
    {"PIN",    0,     0, 31260,    "pin feedback"},
    {"C",      F_C,   0, 131270,   nullptr},
    {"LH",     F_LH,  0, 231270,   nullptr},
    {"LE",     F_LE,  0, 331270,   nullptr},
    {"D",      F_D,   0, 431270,   nullptr},
    {"D.X1",   F_DX1, 0, 531270,   nullptr},
    {"D.X2",   F_DX2, 0, 631270,   nullptr},
    {"T",      F_T,   0, 731270,   nullptr},
    {"T.X1",   F_TX1, 0, 831270,   nullptr},
    {"T.X2",   F_TX2, 0, 931270,   nullptr},
    {"J",      F_J,   0, 1031270,  nullptr},
    {"K",      F_K,   0, 1131270,  nullptr},
    {"R",      F_R,   0, 1231270,  nullptr},
    {"S",      F_S,   0, 1331270,  nullptr},
    {"REG",    F_REG, 0, 1431270,  nullptr},
    {"REG.X1", F_GX1, 0, 1531270,  nullptr},
    {"REG.X2", F_GX2, 0, 1631270,  nullptr},
    {"Q",      0,     0, 31260,    kRegisterOutput},
    {"FB",     0,     0, 31260,    kRegisterOutput},
    {"OE",     F_OE,  0, 10031270, nullptr},
    {"CE",     F_CE,  0, 20031270, nullptr},
    {"SP",     F_SP,  0, 30031270, nullptr},
    {"SR",     F_SR,  0, 40031270, nullptr},
    {"AR",     F_AR,  0, 50031270, nullptr},
    {"RE",     F_RE,  0, 60031270, nullptr},
    {"AP",     F_AP,  0, 70031270, nullptr},
    {"PR",     F_PR,  0, 80031270, nullptr},
    {"X1",     F_X1,  0, 90031270, nullptr},
    {"X2",     F_X2,  0, 10131270, nullptr},
}};

// Preset and reset share a number.
constexpr std::array<EntryRow, 30> kInputRows{{
    // extension  role   use    number  legal as
    {"",         0,     F_IN,  31250,  nullptr},
    {"PIN",      F_PIN, 0,     31250,  nullptr},
    {"C",        0,     0,     31240,  kClock},
    {"LE",       0,     0,     31240,  kClock},
    {"LH",       0,     0,     31240,  kClock},
    {"D",        0,     F_DIN, 31250,  nullptr},
    {"D.X1",     0,     0,     31241,  kData},
    {"D.X2",     0,     0,     31241,  kData},
    {"T",        0,     F_TIN, 31250,  nullptr},
    {"T.X1",     0,     0,     31241,  kData},
    {"T.X2",     0,     0,     31241,  kData},
    {"J",        0,     0,     31241,  kData},
    {"K",        0,     0,     31241,  kData},
    {"R",        0,     0,     31241,  kData},
    {"S",        0,     0,     31241,  kData},
    {"REG",      0,     F_RIN, 31250,  nullptr},
    {"REG.X1",   0,     0,     31241,  kData},
    {"REG.X2",   0,     0,     31241,  kData},
    {"Q",        F_Q,   0,     31250,  nullptr},
    {"FB",       F_FB,  0,     31250,  nullptr},
    {"OE",       0,     0,     31242,  kEnable},
    {"CE",       0,     0,     31243,  kClockEnable},
    {"SP",       0,     0,     31244,  kSyncPreset},
    {"SR",       0,     0,     31245,  kSyncReset},
    {"AR",       0,     0,     31246,  kReset},
    {"RE",       0,     0,     31246,  kReset},
    {"AP",       0,     0,     31246,  kPreset},
    {"PR",       0,     0,     31246,  kPreset},
    {"X1",       0,     0,     31247,  kXor},
    {"X2",       0,     0,     31247,  kXor},
}};
// clang-format on

constexpr Side kOutputSide{kOutputRows, "output", "left", "right", F_OB};
constexpr Side kInputSide{kInputRows, "input", "right", "left", F_ILB};

// Both lists refuse unknown extensions, and the two that no device supports.
void report_unusable(const std::string &extension, const std::string &name) {
  if (extension == "FC" || extension == "LD")
    report_error(31248, "Dot extension '.%s' is not supported, signal '%s.%s' is invalid", extension.c_str(),
                 name.c_str(), extension.c_str());
  else
    report_error(31249, "Dot extension '.%s' is not recognized, signal '%s.%s' is invalid", extension.c_str(),
                 name.c_str(), extension.c_str());
}

void report_repeat(int number, const std::string &name, const std::string &extension, const char *list) {
  if (extension.empty())
    report_error(number, "Signal '%s' is repeated on %s list", name.c_str(), list);
  else
    report_error(number, "Signal '%s.%s' is repeated on %s list", name.c_str(), extension.c_str(), list);
}

int check_entry(const Side &side, SignalFlags &flags, std::string_view extension, std::string_view name) {
  const std::string base(name);
  const std::string suffix(extension);
  const auto row = std::find_if(side.rows.begin(), side.rows.end(),
                                [&](const EntryRow &each) { return each.extension == extension; });
  if (row == side.rows.end()) {
    report_unusable(suffix, base);
    return 1;
  }
  if (row->legal_as != nullptr) {
    report_error(row->number,
                 "Signal '%s.%s' occurs in %s hand side of equation; signal '%s.%s' is only legal as %s, in %s hand "
                 "side of equation",
                 base.c_str(), suffix.c_str(), side.hand, base.c_str(), suffix.c_str(), row->legal_as, side.other_hand);
    return 1;
  }
  const bool is_repeat = (flags.role_flags & row->role_flag) != 0 || (flags.use_flags & row->use_flag) != 0;
  if (is_repeat) {
    report_repeat(row->number, base, suffix, side.list);
    return 1;
  }
  flags.role_flags |= row->role_flag;
  flags.use_flags |= row->use_flag | side.accepted;
  return 0;
}

} // namespace

int check_output_entry(SignalFlags &flags, std::string_view extension, std::string_view name) {
  return check_entry(kOutputSide, flags, extension, name);
}

int check_input_entry(SignalFlags &flags, std::string_view extension, std::string_view name) {
  return check_entry(kInputSide, flags, extension, name);
}

} // namespace cubenet
