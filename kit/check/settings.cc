// The tables of switches and parameters, and the form of a parameter file: a line for each parameter, the file of the
// reserved pins, END.
#include "kit/check/settings.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <climits>

#include "model/names.h"

namespace cubekit {

// clang-format off
const SwitchRow kSwitches[15] = {
    {"SECURITY",   "ON|OFF"},
    {"OPENDRAIN",  "ON|OFF"},
    {"SLEWRATE",   "FAST|"}, // nothing is slow
    {"PULLUP",     "ON|OFF"},
    {"PULL",       "UP|OFF|HOLD"},
    {"OUTDELAY",   "ON|OFF"},
    {"POWER",      "ON|OFF"},
    {"VOLTAGE",    "VCC|VVCIO"}, // of inputs, of outputs, of bidirectional pins: the line doesn't tell
    {"VOLTAGE",    "VCC|VVCIO"},
    {"VOLTAGE",    "VCC|VVCIO"},
    {"POWER_DOWN", "ON|OFF"},
    {"Y1_AS_RESET", "ON|OFF"},
    {"TOE_AS_IO",  "ON|OFF"},
    {"ISP",        "ON|OFF"},
    {"ISP_EXCEPT_Y2", "ON|OFF"},
};

namespace {

struct ParameterRow {
  std::string_view keyword, constraints_key;
  std::string_view values;      // separated by '|'; empty: a number or, where there is no highest, the name of a file
  int lowest = 0, highest = -1;
};

constexpr std::string_view kStrategies =
    "UTILIZATION|PERFORMANCE|NO_SYNTHESIS|SOME_SYNTHESIS|AREA|DELAY|LOCAL_OPTIMIZATION|NO_OPTIMIZATION";
constexpr auto kParameters = std::to_array<ParameterRow>({
    {"CARRY_PIN_DIRECTION", "CARRY_PIN_DIRECTION", "ON|OFF"},
    {"EFFORT",              "EFFORT",              "", 0, INT_MAX},
    {"IGNORE_FIXED_PIN",    "IGNORE_FIXED_PIN",    "ON|OFF"},
    {"FIX_TO_ASSIGNED_PIN", "FIX_TO_ASSIGNED_PIN", "ON|OFF"},
    {"ROUTING_PIN_FILE",    "ROUTING_PIN_FILE",    ""},
    {"MAX_GLB_IN",          "Max_GLB_Inputs",      "", 2, 24},
    {"MAX_GLB_OUT",         "GLB_Outputs",         "", 1, 4},
    {"EXTENDED_ROUTE",      "EXTENDED_ROUTE",      "ON|OFF"},
    {"PARAM_FILE",          "PARAM_FILE",          ""},
    {"STRATEGY",            "STRATEGY",            kStrategies},
    {"TIMING_FILE",         "TIMING_FILE",         ""},
    {"PIN_FILE",            "PIN_FILE",            ""},
    {"USE_GLOBAL_RESET",    "USE_GLOBAL_RESET",    "ON|OFF"},
    {"CASE_SENSITIVE",      "CASE_SENSITIVE",      "ON|OFF"},
    {"REDUCE_LEVEL",        "REDUCE_LEVEL",        "ON|OFF"},
    {"TIMING_ANALYZER",     "Timing_Analysis",     "ON|OFF|VERBOSE"},
    {"OUTPUT_FORM",         "OUTPUT_FORM",         "EDIF"},
    {"OUTPUT_FORM",         "OUTPUT_FORM",         "ORCAD"},
    {"OUTPUT_FORM",         "OUTPUT_FORM",         "LDF"},
    {"OUTPUT_FORM",         "OUTPUT_FORM",         "PREROUTE_LDF"},
    {"OUTPUT_FORM",         "OUTPUT_FORM",         "SIM"},
    {"OUTPUT_FORM",         "OUTPUT_FORM",         "VERILOG"},
    {"OUTPUT_FORM",         "OUTPUT_FORM",         "VIEWLOGIC"},
    {"OUTPUT_FORM",         "OUTPUT_FORM",         "VHDL"},
});
// clang-format on

bool is_number(std::string_view text, int lowest, int highest) {
  if (text.find_first_not_of("0123456789") != std::string_view::npos) return false;
  int value = 0;
  const auto [stop, fault] = std::from_chars(text.data(), text.data() + text.size(), value);
  return fault == std::errc() && value >= lowest && value <= highest;
}

// Words are in upper case, names of files as they were given.
bool is_value_of(std::string_view value, const ParameterRow &row) {
  if (!row.values.empty()) return is_one_of(value, row.values) && value == cubenet::upper_case(value);
  if (row.highest >= 0) return is_number(value, row.lowest, row.highest);
  return !value.empty() && value.find_first_of(" \t,") == std::string_view::npos;
}

struct Reader {
  std::string_view left, name;
  const ParameterSet &wanted;
  std::vector<Finding> &findings;
  ParameterSet found{};
  std::size_t line = 0;
};

bool fail(Reader &reader, std::string text) {
  reader.findings.push_back({reader.line, std::move(text)});
  return false;
}

bool take_line(Reader &reader, std::string_view &line) {
  reader.line++;
  const std::size_t end = reader.left.find('\n');
  if (end == std::string_view::npos) return fail(reader, "a line must stand here");
  line = reader.left.substr(0, end);
  reader.left.remove_prefix(end + 1);
  return true;
}

bool is_reserve_file(std::string_view file, std::string_view name) {
  const std::size_t at = file.find_last_of("/\\");
  return file.substr(at == std::string_view::npos ? 0 : at + 1) == std::string(name) + ".rsp";
}

bool take_parameter(Reader &reader, std::string_view line) {
  const std::size_t blank = std::min(line.find(' '), line.size());
  const std::string_view key = line.substr(0, blank), value = line.substr(std::min(blank + 1, line.size()));
  if (key == "RESERVE_PIN_FILE" && !reader.found.reserves) {
    if (!is_reserve_file(value, reader.name)) return fail(reader, "the file of the reserved pins is another one");
    reader.found.reserves = true;
    return reader.wanted.reserves || fail(reader, "the constraints reserve no pin");
  }
  if (reader.found.reserves || !add_parameter(reader.found, key, value, false))
    return fail(reader, "the line is no parameter, or out of order");
  const std::size_t count = reader.found.list.size();
  if (count > reader.wanted.list.size() || reader.found.list.back() != reader.wanted.list[count - 1])
    return fail(reader, "the constraints don't say so");
  return true;
}

bool take_parameters(Reader &reader) {
  for (std::string_view line;;) {
    if (!take_line(reader, line)) return false;
    if (line == "END") return true;
    if (!take_parameter(reader, line)) return false;
  }
}

} // namespace

bool is_one_of(std::string_view value, std::string_view values) {
  for (;;) {
    const std::size_t bar = values.find('|');
    if (cubenet::equal_ignoring_case(value, values.substr(0, bar))) return true;
    if (bar == std::string_view::npos) return false;
    values.remove_prefix(bar + 1);
  }
}

bool add_parameter(ParameterSet &set, std::string_view key, std::string_view value, bool in_constraints) {
  for (std::size_t slot = set.list.empty() ? 0 : set.list.back().slot + 1; slot < kParameters.size(); slot++) {
    const ParameterRow &row = kParameters[slot];
    if (key != (in_constraints ? row.constraints_key : row.keyword) || !is_value_of(value, row)) continue;
    set.list.push_back({slot, value});
    return true;
  }
  return false;
}

std::string_view parameter_keyword(const Parameter &parameter) { return kParameters[parameter.slot].keyword; }

std::vector<Finding> check_parameters(std::string_view text, const ParameterSet &wanted, std::string_view name) {
  std::vector<Finding> findings;
  Reader reader{text, name, wanted, findings};
  if (!take_parameters(reader)) return findings;
  if (!reader.left.empty()) fail(reader, "the file must end here");
  if (reader.found.list.empty() && !reader.found.reserves) fail(reader, "there is nothing to set");
  if (reader.found.list.size() < wanted.list.size())
    fail(reader, "parameter " + quoted(parameter_keyword(wanted.list[reader.found.list.size()])) + " is missing");
  if (wanted.reserves && !reader.found.reserves) fail(reader, "the file of the reserved pins is missing");
  return findings;
}

} // namespace cubekit
