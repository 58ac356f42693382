// Spelling and comparison of signal names.
#include "model/names.h"

#include <algorithm>
#include <array>

namespace cubenet {

namespace {

struct ExtensionRow {
  std::string_view text;
  ExtensionCode code;
  std::string_view netlist; // empty: as the text
};

// clang-format off
constexpr std::array<ExtensionRow, 33> kExtensions{{
    // text      code             netlist
    {"FC",       EXT_UNSUPPORTED, ""},
    {"LD",       EXT_UNSUPPORTED, ""},
    {"X1",       EXT_X1,          ""},
    {"X2",       EXT_X2,          ""},
    {"D.X1",     EXT_DX1,         "DX1"},
    {"D.X2",     EXT_DX2,         "DX2"},
    {"REG.X1",   EXT_GX1,         "GX1"},
    {"REG.X2",   EXT_GX2,         "GX2"},
    {"T.X1",     EXT_TX1,         "TX1"},
    {"T.X2",     EXT_TX2,         "TX2"},
    {"D",        EXT_D,           ""},
    {"REG",      EXT_REG,         ""},
    {"T",        EXT_T,           ""},
    {"J",        EXT_J,           ""},
    {"K",        EXT_K,           ""},
    {"R",        EXT_R,           ""},
    {"S",        EXT_S,           ""},
    {"C",        EXT_C,           ""},
    {"CLK",      EXT_C,           ""},
    {"LH",       EXT_LH,          ""},
    {"LE",       EXT_LE,          ""},
    {"CE",       EXT_CE,          ""},
    {"OE",       EXT_OE,          ""},
    {"SP",       EXT_SP,          ""},
    {"SR",       EXT_SR,          ""},
    {"AR",       EXT_AR,          ""},
    {"RE",       EXT_RE,          ""},
    {"AP",       EXT_AP,          ""},
    {"PR",       EXT_PR,          ""},
    {"Q",        EXT_Q,           ""},
    {"FB",       EXT_FB,          ""},
    {"PIN",      EXT_PIN,         ""},
    {"",         EXT_NONE,        ""},
}};
// clang-format on

const ExtensionRow *find_extension(std::string_view extension) {
  const auto *row = std::find_if(kExtensions.begin(), kExtensions.end(),
                                 [&](const ExtensionRow &each) { return each.text == extension; });
  return row == kExtensions.end() ? nullptr : row;
}

constexpr char to_upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

} // namespace

ExtensionCode extension_code(std::string_view extension) {
  const ExtensionRow *row = find_extension(extension);
  return row != nullptr ? row->code : EXT_UNKNOWN;
}

std::string display_name(std::string_view base, std::string_view extension) {
  std::string name(base);
  if (!extension.empty()) name.append(".").append(extension);
  return name;
}

std::string netlist_name(std::string_view base, std::string_view extension) {
  std::string name(base);
  if (extension.empty()) return name;
  const ExtensionRow *row = find_extension(extension);
  return name.append("_").append(row != nullptr && !row->netlist.empty() ? row->netlist : extension);
}

bool equal_ignoring_case(std::string_view a, std::string_view b) {
  return a.size() == b.size() &&
         std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) { return to_upper(x) == to_upper(y); });
}

bool equal_names(std::string_view a, std::string_view b, bool case_sensitive) {
  return case_sensitive ? a == b : equal_ignoring_case(a, b);
}

std::string upper_case(std::string_view text) {
  std::string result(text);
  for (char &c : result) c = to_upper(c);
  return result;
}

} // namespace cubenet
