// The signal of an attribute statement, and the warnings that several handlers share.
#include "reader/property_statement.h"

#include <algorithm>

#include "model/names.h"
#include "reader/tokens.h"
#include "report/messages.h"

namespace cubenet {

bool take_signal(const PropertyStatement &statement, std::string_view &text, std::string_view &word) {
  Token token;
  if (!next_token(text, token)) {
    warn_of_missing_signal(statement);
    return false;
  }
  word = token.text;
  const std::string signal = shown(word);
  if (word.size() >= kShownLimit)
    report_warning(31536, "Signal '%s' is too long; attribute '%s' is ignored", signal.c_str(),
                   statement.keyword.c_str());
  else if (token.illegal[0] != 0)
    report_warning(31532,
                   "Signal '%s' contains illegal character '%s', signal '%s' is invalid; attribute '%s' is ignored",
                   signal.c_str(), token.illegal.data(), signal.c_str(), statement.keyword.c_str());
  else
    return true;
  return false;
}

bool split_signal(const PropertyStatement &statement, std::string_view word, Property &property) {
  const std::size_t sign = word.find_first_of("+-:");
  const std::string name(word.substr(0, sign));
  if (sign != std::string_view::npos && word[sign] == ':') {
    const std::string whole(word);
    report_warning(31532,
                   "Signal '%s' contains illegal character ':', signal '%s' is invalid; attribute '%s' is ignored",
                   whole.c_str(), whole.c_str(), statement.keyword.c_str());
    return false;
  }
  if (sign != std::string_view::npos)
    report_warning(31540,
                   "Signal '%s' is followed by '+' or '-' sign in attribute '%s'; '+' or '-' sign with signal '%s' is "
                   "ignored",
                   name.c_str(), statement.keyword.c_str(), name.c_str());
  const std::size_t dot = std::min(name.find('.'), name.size());
  property.pin_node_name = name.substr(0, dot);
  property.pi_node_ext = upper_case(std::string_view(name).substr(std::min(dot + 1, name.size())));
  return true;
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
