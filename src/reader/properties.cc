// Dispatch of attribute statements to their handlers by technology and keyword.
#include "reader/properties.h"

#include "model/names.h"
#include "model/run_settings.h"
#include "reader/signal_attributes.h"
#include "reader/switches.h"
#include "reader/tokens.h"
#include "report/messages.h"

namespace cubenet {

namespace {

// Nothing is checked; downstream tools expect the values separated by commas.
void read_name_value(ReaderState &state, std::string_view text) {
  Token name;
  if (!next_token(text, name)) return;
  std::string value(text);
  for (char &c : value)
    if (c == ':') c = ',';
  state.design.name_values.emplace_back(name.text, std::move(value));
}

// A part on the command line wins; otherwise the last statement counts.
void read_part(ReaderState &state, const PropertyStatement &statement) {
  std::string_view text = statement.rest;
  Token part;
  if (!next_token(text, part))
    report_warning(31516, "Part is not specified in attribute '%s'; attribute specification '%s' is ignored",
                   statement.keyword.c_str(), statement.text.c_str());
  else if (!run_settings.part_name)
    state.part = part.text;
}

void call_handler(ReaderState &state, const PropertyStatement &statement) {
  switch (statement.row.handler) {
  case HANDLE_SIGNAL: return read_signal_attribute(state, statement);
  case HANDLE_SWITCH: return read_switch(state, statement);
  case HANDLE_EITHER:
    return is_switch_value(statement.row, statement.rest) ? read_switch(state, statement)
                                                          : read_signal_attribute(state, statement);
  case HANDLE_VOLTAGE: return read_voltage(state, statement);
  case HANDLE_PARAMETER: return read_parameter(state, statement);
  case HANDLE_PART: return read_part(state, statement);
  }
}

void read_attribute(ReaderState &state, std::string_view rest, const std::string &text) {
  Token token;
  if (!next_token(rest, token)) return;
  // No keyword contains a character that may follow a name.
  const bool is_plain = token.dot == std::string_view::npos && token.sign == std::string_view::npos;
  const KeywordRow *row = is_plain && token.text.size() < kShownLimit ? find_keyword(token.text) : nullptr;
  const std::string keyword = shown(token.text);
  if (row != nullptr)
    call_handler(state, {*row, keyword, text, rest});
  else
    report_warning(31539,
                   "Attribute name '%s' is not recognized in attribute specification '%s'; attribute '%s' is ignored",
                   keyword.c_str(), text.c_str(), keyword.c_str());
}

} // namespace

void read_property(ReaderState &state, std::string_view text) {
  const std::string statement(text.substr(0, kTextLimit));
  Token technology;
  if (!next_token(text, technology)) return;
  const bool is_corvane = equal_ignoring_case(technology.text, "corvane");
  if (!is_corvane && !equal_ignoring_case(technology.text, "Mirn"))
    report_warning(31515, "Technology '%s' is not recognized; attribute specification '#$ PROPERTY %s' is ignored",
                   shown(technology.text).c_str(), statement.c_str());
  else if (text.empty())
    report_warning(31514, "Attribute name is not specified in attribute '%s'; attribute specification '%s' is ignored",
                   statement.c_str(), statement.c_str());
  else if (is_corvane)
    read_attribute(state, text, statement);
  else
    read_name_value(state, text);
}

} // namespace cubenet
