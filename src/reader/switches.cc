// Device-wide switches, fitter parameters and voltages. A slot that is set keeps its first value.
#include "reader/switches.h"

#include <algorithm>
#include <array>
#include <climits>

#include "model/names.h"
#include "reader/tokens.h"
#include "report/messages.h"

namespace cubenet {

namespace {

template <typename... Words> bool is_one_of(std::string_view word, Words... words) {
  return (equal_ignoring_case(word, words) || ...);
}

struct SlotWord {
  std::string_view word;
  std::size_t slot;
};

template <std::size_t N> const SlotWord *find_slot(const std::array<SlotWord, N> &list, std::string_view word) {
  const auto *row = std::find_if(list.begin(), list.end(),
                                 [&](const SlotWord &each) { return equal_ignoring_case(each.word, word); });
  return row == list.end() ? nullptr : row;
}

constexpr std::array<SlotWord, 3> kVoltageSwitches{{{"INPUT", 7}, {"OUTPUT", 8}, {"BIDI", 9}}};
constexpr std::array<SlotWord, 8> kOutputForms{{{"EDIF", 16},
                                                {"ORCAD", 17},
                                                {"LDF", 18},
                                                {"PREROUTE_LDF", 19},
                                                {"SIM", 20},
                                                {"VERILOG", 21},
                                                {"VIEWLOGIC", 22},
                                                {"VHDL", 23}}};

// The code of a level, or CODE_NONE.
int voltage_code(std::string_view level) {
  const Attribute *const row = level.empty() ? nullptr : find_attribute("VOLTAGE", upper_case(level));
  return row != nullptr ? row->code : CODE_NONE;
}

// Whether the word is a decimal number within the range.
bool is_number(std::string_view word, int lowest, int highest) {
  if (word.find_first_not_of("0123456789") != std::string_view::npos) return false;
  const std::optional<int> value = scan_decimal(word);
  return value && *value >= lowest && *value <= highest;
}

bool is_valid_value(KeywordOperand operand, std::string_view value) {
  switch (operand) {
  case VALUE_ON_OFF: return is_one_of(value, "ON", "OFF");
  case VALUE_ON_OFF_VERBOSE: return is_one_of(value, "ON", "OFF", "VERBOSE");
  case VALUE_STRATEGY:
    return is_one_of(value, "utilization", "performance", "no_synthesis", "some_synthesis", "area", "delay",
                     "local_optimization", "no_optimization");
  case VALUE_FAN_IN: return is_number(value, 2, 24);
  case VALUE_FAN_OUT: return is_number(value, 1, 4);
  case VALUE_EFFORT: return is_number(value, 0, INT_MAX);
  default: return true;
  }
}

bool is_pull(const KeywordRow &row) { return row.setting == SETTING_UP_OFF_HOLD; }

void refuse_missing_value(const PropertyStatement &statement) {
  const char *keyword = statement.keyword.c_str();
  report_warning(31535, "Attribute value, '%s', is not specified in attribute '%s'; attribute '%s' is ignored",
                 is_pull(statement.row) ? "ON | OFF | HOLD" : "ON | OFF", keyword, keyword);
}

void read_output_forms(ReaderState &state, const PropertyStatement &statement) {
  std::string_view text = statement.rest;
  for (Token form; next_token(text, form);) {
    const SlotWord *row = find_slot(kOutputForms, form.text);
    if (row != nullptr) {
      state.design.par[row->slot] = std::string(statement.row.keyword).append(" ").append(row->word);
      continue;
    }
    const std::string word = shown(form.text);
    report_warning(31534, "Attribute value '%s' is invalid in attribute '%s'; attribute value '%s' is ignored",
                   word.c_str(), statement.keyword.c_str(), word.c_str());
  }
}

void read_voltage_switch(ReaderState &state, const PropertyStatement &statement, const SlotWord &row,
                         std::string_view text) {
  Token level;
  const bool is_found = next_token(text, level);
  std::string &option = state.design.header.option[row.slot];
  if (!is_found || voltage_code(level.text) == CODE_NONE) return warn_of_bad_value(statement, level.text);
  if (!option.empty()) return warn_of_repetition(statement);
  option = std::string("VOLTAGE ").append(row.word).append(" ").append(level.text);
  warn_of_extra_words(statement, text);
}

bool parse_signal_voltage(const PropertyStatement &statement, Property &property) {
  std::string_view text = statement.rest, signal;
  if (!take_signal(statement, text, signal)) return false;
  Token level;
  property.attr_name = next_token(text, level) ? voltage_code(level.text) : CODE_VOLTAGE;
  if (property.attr_name == CODE_NONE) {
    warn_of_bad_value(statement, level.text);
    return false;
  }
  warn_of_extra_words(statement, text);
  return split_signal(statement, signal, property);
}

} // namespace

bool is_switch_value(const KeywordRow &row, std::string_view value) {
  if (value.empty()) return true;
  return is_pull(row) ? is_one_of(value, "up", "off", "hold") : is_one_of(value, "on", "off", "fast", "slow");
}

void read_switch(ReaderState &state, const PropertyStatement &statement) {
  std::string &option = state.design.header.option[statement.row.slot];
  if (!option.empty()) return warn_of_repetition(statement);
  std::string_view text = statement.rest;
  Token value;
  if (!next_token(text, value)) return refuse_missing_value(statement);
  if (!is_pull(statement.row) && !is_one_of(value.text, "ON", "OFF")) return warn_of_no_on_off(statement, value.text);
  option = std::string(statement.row.spelling).append(" ").append(value.text);
  warn_of_extra_words(statement, text);
}

void read_parameter(ReaderState &state, const PropertyStatement &statement) {
  const KeywordRow &row = statement.row;
  const bool has_forms = row.operand == VALUE_FORMS;
  std::string &par = state.design.par[row.slot];
  if (!has_forms && !par.empty()) return warn_of_repetition(statement);
  std::string_view text = statement.rest;
  Token value;
  if (text.empty())
    return report_warning(31531, "Attribute value is not specified in attribute '%s'; attribute '%s' is ignored",
                          statement.keyword.c_str(), statement.keyword.c_str());
  if (has_forms) return read_output_forms(state, statement);
  if (!next_token(text, value) || !is_valid_value(row.operand, value.text))
    return warn_of_bad_value(statement, value.text);
  par = std::string(row.spelling).append(" ");
  par += row.operand == VALUE_FILE ? std::string(value.text) : upper_case(value.text);
  warn_of_extra_words(statement, text);
}

void read_voltage(ReaderState &state, const PropertyStatement &statement) {
  std::string_view text = statement.rest;
  Token word;
  if (!next_token(text, word)) return warn_of_missing_signal(statement);
  if (const SlotWord *row = find_slot(kVoltageSwitches, word.text))
    return read_voltage_switch(state, statement, *row, text);
  Property property;
  if (parse_signal_voltage(statement, property)) state.design.properties.push_back(std::move(property));
}

} // namespace cubenet
