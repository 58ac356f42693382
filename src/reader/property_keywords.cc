// The table of attribute keywords.
#include "reader/property_keywords.h"

#include <algorithm>
#include <array>

#include "model/names.h"

namespace cubenet {

namespace {

// One function per kind of row; other fields keep their defaults.
constexpr KeywordRow attribute(std::string_view keyword, AttributeCode code, KeywordOperand operand = OPERAND_NONE) {
  return {.keyword = keyword, .handler = HANDLE_SIGNAL, .operand = operand, .code = code};
}
constexpr KeywordRow voltage(std::string_view keyword) {
  return {.keyword = keyword, .handler = HANDLE_VOLTAGE, .code = CODE_VOLTAGE};
}
constexpr KeywordRow device_switch(std::string_view keyword, std::size_t option, std::string_view spelling = {}) {
  return {
      .keyword = keyword, .handler = HANDLE_SWITCH, .slot = option, .spelling = spelling.empty() ? keyword : spelling};
}
constexpr KeywordRow either(std::string_view keyword, std::size_t option, AttributeCode code, KeywordSetting setting,
                            std::string_view spelling = {}) {
  return {.keyword = keyword,
          .handler = HANDLE_EITHER,
          .code = code,
          .setting = setting,
          .slot = option,
          .spelling = spelling.empty() ? keyword : spelling};
}
constexpr KeywordRow parameter(std::string_view keyword, std::size_t par, KeywordOperand value) {
  return {.keyword = keyword, .handler = HANDLE_PARAMETER, .operand = value, .slot = par, .spelling = keyword};
}
constexpr KeywordRow part(std::string_view keyword) { return {.keyword = keyword, .handler = HANDLE_PART}; }

// clang-format off
constexpr auto kKeywords = std::to_array<KeywordRow>({
    attribute("BI_Z", CODE_RESERVE_PIN),
    parameter("CARRY_PIN_DIRECTION", 0, VALUE_ON_OFF),
    parameter("CASE_SENSITIVE", 13, VALUE_ON_OFF),
    attribute("CLK", CODE_CLK, OPERAND_CLOCK),
    attribute("CRIT", CODE_CRIT),
    attribute("EAP", CODE_EAP, OPERAND_PATHS),
    attribute("ECP", CODE_ECP, OPERAND_PATHS),
    parameter("EFFORT", 1, VALUE_EFFORT),
    attribute("ELP", CODE_ELP, OPERAND_PATHS),
    attribute("ENP", CODE_ENP, OPERAND_PATHS),
    attribute("ETP", CODE_ETP, OPERAND_PATHS),
    parameter("EXTENDED_ROUTE", 7, VALUE_ON_OFF),
    parameter("FIX_TO_ASSIGNED_PIN", 3, VALUE_ON_OFF),
    attribute("GROUP", CODE_GROUP, OPERAND_VALUE),
    parameter("IGNORE_FIXED_PIN", 2, VALUE_ON_OFF),
    device_switch("ISP", 13),
    device_switch("ISP_EXCEPT_Y2", 14),
    attribute("LOC", CODE_LOCK, OPERAND_VALUE),
    attribute("LOCK", CODE_LOCK, OPERAND_VALUE),
    device_switch("LOWPOWER", 6, "POWER"),
    attribute("LXOR2", CODE_LXOR2),
    parameter("MAX_GLB_IN", 5, VALUE_FAN_IN),
    parameter("MAX_GLB_OUT", 6, VALUE_FAN_OUT),
    either("OPENDRAIN", 1, CODE_OPENDRAIN, SETTING_ON_OFF),
    attribute("OPENDRAIN=OFF", CODE_OPENDRAIN_OFF),
    attribute("OPENDRAIN=ON", CODE_OPENDRAIN_ON),
    attribute("OSMBYPASS", CODE_CRIT), // shares CRIT's code
    either("OUTDELAY", 5, CODE_OUTDELAY, SETTING_ON_OFF),
    attribute("OUTDELAY=OFF", CODE_OUTDELAY_OFF),
    attribute("OUTDELAY=ON", CODE_OUTDELAY_ON),
    parameter("OUTPUT_FORM", 0, VALUE_FORMS),
    parameter("PARAM_FILE", 8, VALUE_FILE),
    part("PART"),
    parameter("PIN_FILE", 11, VALUE_FILE),
    device_switch("POWER", 6),
    device_switch("POWER_DOWN", 10),
    attribute("PRESERVE", CODE_PRESERVE),
    attribute("PROTECT", CODE_PROTECT),
    attribute("PTSABYPASS", CODE_ECP, OPERAND_PATHS), // shares ECP's code
    either("PULL", 4, CODE_PULL, SETTING_UP_OFF_HOLD),
    attribute("PULL=HOLD", CODE_PULL_HOLD),
    attribute("PULL=OFF", CODE_PULL_OFF),
    attribute("PULL=UP", CODE_PULL_UP),
    either("PULLUP", 3, CODE_PULLUP, SETTING_ON_OFF),
    attribute("PULLUP=OFF", CODE_PULLUP_OFF),
    attribute("PULLUP=ON", CODE_PULLUP_ON),
    either("PULL_UP", 3, CODE_PULLUP, SETTING_ON_OFF, "PULLUP"),
    parameter("REDUCE_LEVEL", 14, VALUE_ON_OFF),
    attribute("REGTYPE", CODE_REGTYPE, OPERAND_VALUE),
    attribute("RESERVE_PIN", CODE_RESERVE_PIN),
    parameter("ROUTING_PIN_FILE", 4, VALUE_FILE),
    attribute("SAP", CODE_SAP, OPERAND_PATHS),
    attribute("SCP", CODE_SCP, OPERAND_PATHS),
    device_switch("SECURITY", 0),
    either("SLEWRATE", 2, CODE_SLOWSLEW, SETTING_NONE),
    attribute("SLEWRATE=OFF", CODE_SLEW_FAST),
    attribute("SLEWRATE=ON", CODE_SLEW_SLOW),
    either("SLOWSLEW", 2, CODE_SLOWSLEW, SETTING_ON_OFF),
    attribute("SLOWSLEW=OFF", CODE_SLEW_FAST),
    attribute("SLOWSLEW=ON", CODE_SLEW_SLOW),
    attribute("SLP", CODE_SLP, OPERAND_PATHS),
    attribute("SNP", CODE_SNP, OPERAND_PATHS),
    attribute("STP", CODE_STP, OPERAND_PATHS),
    parameter("STRATEGY", 9, VALUE_STRATEGY),
    parameter("TIMING_ANALYZER", 15, VALUE_ON_OFF_VERBOSE),
    parameter("TIMING_FILE", 10, VALUE_FILE),
    device_switch("TOE_AS_IO", 12),
    parameter("USE_GLOBAL_RESET", 12, VALUE_ON_OFF),
    voltage("VOLTAGE"),
    attribute("VOLTAGE=VCC", CODE_VOLTAGE_VCC),
    attribute("VOLTAGE=VVCIO", CODE_VOLTAGE_VVCIO),
    device_switch("Y1_AS_RESET", 11),
    attribute("ZDOT", CODE_ZDOT),
});
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

} // namespace cubenet
