// Attributes of one signal: "keyword [=setting] signal[.extension] operands". Any fault drops the statement,
// but it still takes a record, empty, so the indices of the others don't depend on it.
#include "reader/signal_attributes.h"

#include "model/clock_types.h"
#include "model/names.h"
#include "reader/tokens.h"
#include "report/messages.h"

namespace cubenet {

namespace {

bool choose_setting(const PropertyStatement &statement, std::string_view value, int &code) {
  const Attribute *const chosen = find_attribute(statement.row.spelling, upper_case(value));
  if (chosen != nullptr && !chosen->setting.empty()) {
    code = chosen->code;
    return true;
  }
  if (statement.row.setting == SETTING_UP_OFF_HOLD)
    report_warning(31533,
                   "Attribute value '%s' is not recognized in attribute specification '%s', valid value is either 'UP' "
                   ", 'OFF' or 'HOLD'; attribute specification '%s' is ignored",
                   shown(value).c_str(), statement.text.c_str(), statement.text.c_str());
  else
    warn_of_no_on_off(statement, value);
  return false;
}

// "=value" or "= value" before the signal.
bool take_setting(const PropertyStatement &statement, std::string_view &text, int &code) {
  code = statement.row.code;
  if (statement.row.setting == SETTING_NONE || !text.starts_with('=')) return true;
  Token token;
  std::string_view value;
  if (next_token(text, token)) value = token.text.substr(1);
  if (value.empty() && next_token(text, token)) value = token.text;
  return choose_setting(statement, value, code);
}

bool refuse_value(const PropertyStatement &statement, const std::string &value, const char *character) {
  report_warning(
      31537,
      "Attribute value '%s' contains illegal character '%s', attribute value '%s' is invalid; attribute '%s' "
      "is ignored",
      value.c_str(), character, value.c_str(), statement.keyword.c_str());
  return false;
}

// `noun` names the kind of value if it must not begin with a digit; nullptr otherwise.
bool check_value_word(const PropertyStatement &statement, const Token &token, const char *noun) {
  const std::string value = shown(token.text);
  if (token.text.size() >= kShownLimit) {
    report_warning(31536, "Attribute value '%s' is too long; attribute '%s' is ignored", value.c_str(),
                   statement.keyword.c_str());
    return false;
  }
  if (token.illegal[0] != 0) return refuse_value(statement, value, token.illegal.data());
  if (noun == nullptr || token.kind != TOKEN_DIGIT) return true;
  report_warning(31537,
                 "The first character of %s name '%s' is a digit, %s name '%s' is invalid; attribute '%s' is ignored",
                 noun, value.c_str(), noun, value.c_str(), statement.keyword.c_str());
  return false;
}

bool refuse_missing_value(const PropertyStatement &statement) {
  const char *keyword = statement.keyword.c_str();
  switch (statement.row.code) {
  case CODE_GROUP:
    report_warning(31546, "Group name is not specified in attribute '%s'; attribute '%s' is ignored", keyword, keyword);
    break;
  case CODE_REGTYPE:
    report_warning(31549, "Register type, 'GLB | IOC', is not specified in attribute '%s'; attribute '%s' is ignored",
                   keyword, keyword);
    break;
  default:
    report_warning(31547, "Package pin number is not specified in attribute '%s'; attribute '%s' is ignored", keyword,
                   keyword);
  }
  return false;
}

bool take_value(const PropertyStatement &statement, std::string_view text, Token &value) {
  if (!next_token(text, value)) return refuse_missing_value(statement);
  if (!check_value_word(statement, value, statement.row.code == CODE_GROUP ? "group" : nullptr)) return false;
  warn_of_extra_words(statement, text);
  return true;
}

bool take_clock(const PropertyStatement &statement, std::string_view text, std::string &value) {
  Token type;
  if (!next_token(text, type) || find_clock_type(type.text) == nullptr) {
    report_warning(31548,
                   "Clock type, 'CLK0 | CLK1 | CLK2 | IOCLK0 | IOCLK1', is not specified in attribute '%s'; attribute "
                   "'%s' is ignored",
                   statement.keyword.c_str(), statement.keyword.c_str());
    return false;
  }
  value = type.text;
  warn_of_extra_words(statement, text);
  return true;
}

bool take_paths(const PropertyStatement &statement, std::string_view text, std::string &value) {
  for (Token name; next_token(text, name);) {
    if (!check_value_word(statement, name, "path")) return false;
    for (const char *character : {".", ":"})
      if (name.text.find(*character) != std::string_view::npos)
        return refuse_value(statement, std::string(name.text), character);
    if (!value.empty()) value += ' ';
    value += name.text;
  }
  if (value.empty())
    report_warning(31538, "Path name is not specified in attribute '%s'; attribute '%s' is ignored",
                   statement.keyword.c_str(), statement.keyword.c_str());
  return !value.empty();
}

bool take_operands(const PropertyStatement &statement, std::string_view text, Token &single, std::string &value) {
  switch (statement.row.operand) {
  case OPERAND_CLOCK: return take_clock(statement, text, value);
  case OPERAND_VALUE: return take_value(statement, text, single);
  case OPERAND_PATHS: return take_paths(statement, text, value);
  default: warn_of_extra_words(statement, text); return true;
  }
}

// A single value is a name or a number: characters that may follow a signal's name are illegal in it.
bool check_single_value(const PropertyStatement &statement, const Token &single) {
  const std::string value(single.text);
  if (single.dot != std::string_view::npos) return refuse_value(statement, value, ".");
  if (single.sign != std::string_view::npos)
    return refuse_value(statement, value, value.substr(single.sign, 1).c_str());
  return true;
}

bool parse_signal_attribute(const PropertyStatement &statement, Property &property) {
  std::string_view text = statement.rest;
  if (text.empty()) {
    warn_of_missing_signal(statement);
    return false;
  }
  if (!take_setting(statement, text, property.attr_name)) return false;
  std::string_view signal;
  if (!take_signal(statement, text, signal)) return false;
  Token single;
  if (!take_operands(statement, text, single, property.attribute_value)) return false;
  if (!split_signal(statement, signal, property)) return false;
  if (!check_single_value(statement, single)) return false;
  if (!single.text.empty()) property.attribute_value = single.text;
  return true;
}

} // namespace

void read_signal_attribute(ReaderState &state, const PropertyStatement &statement) {
  Property property;
  if (!parse_signal_attribute(statement, property)) property = Property{};
  state.design.properties.push_back(std::move(property));
}

} // namespace cubenet
