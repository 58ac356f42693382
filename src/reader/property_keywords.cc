// The table of attribute keywords, and the warnings that several handlers share.
#include "reader/property_keywords.h"

#include <algorithm>
#include <array>

#include "model/names.h"
#include "reader/tokens.h"
#include "report/messages.h"

namespace cubenet {

namespace {

// clang-format off
constexpr std::array<KeywordRow, 73> kKeywords{{
    // keyword               handler           operand               code  setting             from  slot  stored as
    {"BI_Z",                HANDLE_SIGNAL,    OPERAND_NONE,          53},
    {"CARRY_PIN_DIRECTION", HANDLE_PARAMETER, VALUE_ON_OFF,           0, SETTING_NONE,          0,   0},
    {"CASE_SENSITIVE",      HANDLE_PARAMETER, VALUE_ON_OFF,           0, SETTING_NONE,          0,  13},
    {"CLK",                 HANDLE_SIGNAL,    OPERAND_CLOCK,         39},
    {"CRIT",                HANDLE_SIGNAL,    OPERAND_NONE,          34},
    {"EAP",                 HANDLE_SIGNAL,    OPERAND_PATHS,         46},
    {"ECP",                 HANDLE_SIGNAL,    OPERAND_PATHS,         45},
    {"EFFORT",              HANDLE_PARAMETER, VALUE_EFFORT,           0, SETTING_NONE,          0,   1},
    {"ELP",                 HANDLE_SIGNAL,    OPERAND_PATHS,         47},
    {"ENP",                 HANDLE_SIGNAL,    OPERAND_PATHS,         49},
    {"ETP",                 HANDLE_SIGNAL,    OPERAND_PATHS,         48},
    {"EXTENDED_ROUTE",      HANDLE_PARAMETER, VALUE_ON_OFF,           0, SETTING_NONE,          0,   7},
    {"FIX_TO_ASSIGNED_PIN", HANDLE_PARAMETER, VALUE_ON_OFF,           0, SETTING_NONE,          0,   3},
    {"GROUP",               HANDLE_SIGNAL,    OPERAND_VALUE,         50},
    {"IGNORE_FIXED_PIN",    HANDLE_PARAMETER, VALUE_ON_OFF,           0, SETTING_NONE,          0,   2},
    {"ISP",                 HANDLE_SWITCH,    OPERAND_NONE,           0, SETTING_NONE,          0,  13},
    {"ISP_EXCEPT_Y2",       HANDLE_SWITCH,    OPERAND_NONE,           0, SETTING_NONE,          0,  14},
    {"LOC",                 HANDLE_SIGNAL,    OPERAND_VALUE,         51},
    {"LOCK",                HANDLE_SIGNAL,    OPERAND_VALUE,         51},
    {"LOWPOWER",            HANDLE_SWITCH,    OPERAND_NONE,           0, SETTING_NONE,          0,   6, "POWER"},
    {"LXOR2",               HANDLE_SIGNAL,    OPERAND_NONE,          35},
    {"MAX_GLB_IN",          HANDLE_PARAMETER, VALUE_FAN_IN,           0, SETTING_NONE,          0,   5},
    {"MAX_GLB_OUT",         HANDLE_PARAMETER, VALUE_FAN_OUT,          0, SETTING_NONE,          0,   6},
    {"OPENDRAIN",           HANDLE_EITHER,    OPERAND_NONE,           1, SETTING_ON_OFF,       21,   1},
    {"OPENDRAIN=OFF",       HANDLE_SIGNAL,    OPERAND_NONE,          22},
    {"OPENDRAIN=ON",        HANDLE_SIGNAL,    OPERAND_NONE,          21},
    {"OSMBYPASS",           HANDLE_SIGNAL,    OPERAND_NONE,          34}, // shares CRIT's code
    {"OUTDELAY",            HANDLE_EITHER,    OPERAND_NONE,           5, SETTING_ON_OFF,       30,   5},
    {"OUTDELAY=OFF",        HANDLE_SIGNAL,    OPERAND_NONE,          31},
    {"OUTDELAY=ON",         HANDLE_SIGNAL,    OPERAND_NONE,          30},
    {"OUTPUT_FORM",         HANDLE_PARAMETER, VALUE_FORMS},
    {"PARAM_FILE",          HANDLE_PARAMETER, VALUE_FILE,             0, SETTING_NONE,          0,   8},
    {"PART",                HANDLE_PART},
    {"PIN_FILE",            HANDLE_PARAMETER, VALUE_FILE,             0, SETTING_NONE,          0,  11},
    {"POWER",               HANDLE_SWITCH,    OPERAND_NONE,           0, SETTING_NONE,          0,   6},
    {"POWER_DOWN",          HANDLE_SWITCH,    OPERAND_NONE,           0, SETTING_NONE,          0,  10},
    {"PRESERVE",            HANDLE_SIGNAL,    OPERAND_NONE,          36},
    {"PROTECT",             HANDLE_SIGNAL,    OPERAND_NONE,          37},
    {"PTSABYPASS",          HANDLE_SIGNAL,    OPERAND_PATHS,         45}, // shares ECP's code
    {"PULL",                HANDLE_EITHER,    OPERAND_NONE,           4, SETTING_UP_OFF_HOLD,  27,   4},
    {"PULL=HOLD",           HANDLE_SIGNAL,    OPERAND_NONE,          29},
    {"PULL=OFF",            HANDLE_SIGNAL,    OPERAND_NONE,          28},
    {"PULL=UP",             HANDLE_SIGNAL,    OPERAND_NONE,          27},
    {"PULLUP",              HANDLE_EITHER,    OPERAND_NONE,           3, SETTING_ON_OFF,       25,   3},
    {"PULLUP=OFF",          HANDLE_SIGNAL,    OPERAND_NONE,          26},
    {"PULLUP=ON",           HANDLE_SIGNAL,    OPERAND_NONE,          25},
    {"PULL_UP",             HANDLE_EITHER,    OPERAND_NONE,           3, SETTING_ON_OFF,       25,   3, "PULLUP"},
    {"REDUCE_LEVEL",        HANDLE_PARAMETER, VALUE_ON_OFF,           0, SETTING_NONE,          0,  14},
    {"REGTYPE",             HANDLE_SIGNAL,    OPERAND_VALUE,         38},
    {"RESERVE_PIN",         HANDLE_SIGNAL,    OPERAND_NONE,          53},
    {"ROUTING_PIN_FILE",    HANDLE_PARAMETER, VALUE_FILE,             0, SETTING_NONE,          0,   4},
    {"SAP",                 HANDLE_SIGNAL,    OPERAND_PATHS,         41},
    {"SCP",                 HANDLE_SIGNAL,    OPERAND_PATHS,         40},
    {"SECURITY",            HANDLE_SWITCH,    OPERAND_NONE,           0, SETTING_NONE,          0,   0},
    {"SLEWRATE",            HANDLE_EITHER,    OPERAND_NONE,           2, SETTING_NONE,          0,   2},
    {"SLEWRATE=OFF",        HANDLE_SIGNAL,    OPERAND_NONE,          24},
    {"SLEWRATE=ON",         HANDLE_SIGNAL,    OPERAND_NONE,          23},
    {"SLOWSLEW",            HANDLE_EITHER,    OPERAND_NONE,           2, SETTING_ON_OFF,       23,   2},
    {"SLOWSLEW=OFF",        HANDLE_SIGNAL,    OPERAND_NONE,          24},
    {"SLOWSLEW=ON",         HANDLE_SIGNAL,    OPERAND_NONE,          23},
    {"SLP",                 HANDLE_SIGNAL,    OPERAND_PATHS,         42},
    {"SNP",                 HANDLE_SIGNAL,    OPERAND_PATHS,         44},
    {"STP",                 HANDLE_SIGNAL,    OPERAND_PATHS,         43},
    {"STRATEGY",            HANDLE_PARAMETER, VALUE_STRATEGY,         0, SETTING_NONE,          0,   9},
    {"TIMING_ANALYZER",     HANDLE_PARAMETER, VALUE_ON_OFF_VERBOSE,   0, SETTING_NONE,          0,  15},
    {"TIMING_FILE",         HANDLE_PARAMETER, VALUE_FILE,             0, SETTING_NONE,          0,  10},
    {"TOE_AS_IO",           HANDLE_SWITCH,    OPERAND_NONE,           0, SETTING_NONE,          0,  12},
    {"USE_GLOBAL_RESET",    HANDLE_PARAMETER, VALUE_ON_OFF,           0, SETTING_NONE,          0,  12},
    {"VOLTAGE",             HANDLE_VOLTAGE,   OPERAND_NONE,          20},
    {"VOLTAGE=VCC",         HANDLE_SIGNAL,    OPERAND_NONE,          33},
    {"VOLTAGE=VVCIO",       HANDLE_SIGNAL,    OPERAND_NONE,          32},
    {"Y1_AS_RESET",         HANDLE_SWITCH,    OPERAND_NONE,           0, SETTING_NONE,          0,  11},
    {"ZDOT",                HANDLE_SIGNAL,    OPERAND_NONE,          52},
}};
// clang-format on

constexpr bool is_before(const KeywordRow &a, const KeywordRow &b) { return a.keyword < b.keyword; }
static_assert(std::is_sorted(kKeywords.begin(), kKeywords.end(), is_before), "looked up by binary search");

} // namespace

std::span<const KeywordRow> keyword_rows() { return kKeywords; }

const KeywordRow *find_keyword(std::string_view keyword) {
  const std::string upper = upper_case(keyword);
  const auto *row = std::lower_bound(kKeywords.begin(), kKeywords.end(), upper,
                                     [](const KeywordRow &each, const std::string &key) { return each.keyword < key; });
  return row != kKeywords.end() && row->keyword == upper ? row : nullptr;
}

std::span<const std::string_view> setting_values(KeywordSetting setting) {
  static constexpr std::array<std::string_view, 2> kOnOff{"ON", "OFF"};
  static constexpr std::array<std::string_view, 3> kUpOffHold{"UP", "OFF", "HOLD"};
  switch (setting) {
  case SETTING_ON_OFF: return kOnOff;
  case SETTING_UP_OFF_HOLD: return kUpOffHold;
  default: return {};
  }
}

void warn_of_extra_words(const PropertyStatement &statement, std::string_view text) {
  if (text.empty()) return;
  report_warning(31530, "Attribute specification '%s' has too many parameters; extra parameter(s) '%s' is ignored",
                 statement.text.c_str(), shown(text).c_str());
}

void warn_of_missing_signal(const PropertyStatement &statement) {
  report_warning(31531, "Pin/node is not specified in attribute specification '%s'; attribute '%s' is ignored",
                 statement.text.c_str(), statement.keyword.c_str());
}

void warn_of_bad_value(const PropertyStatement &statement, std::string_view value) {
  report_warning(31526, "Attribute value '%s' is invalid in attribute '%s'; attribute '%s' is ignored",
                 shown(value).c_str(), statement.keyword.c_str(), statement.keyword.c_str());
}

void warn_of_no_on_off(const PropertyStatement &statement, std::string_view value) {
  report_warning(
      31533,
      "Attribute value '%s' is not recognized in attribute specification '%s', valid value is either 'ON' or "
      "'OFF'; attribute specification '%s' is ignored",
      shown(value).c_str(), statement.text.c_str(), statement.text.c_str());
}

void warn_of_repetition(const PropertyStatement &statement) {
  report_warning(31655, "Attribute '%s' is re-declared; repeated attribute specification '%s' is ignored",
                 statement.keyword.c_str(), statement.text.c_str());
}

} // namespace cubenet
