// The attribute keywords, a row each, and the handlers that the rows choose from.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "reader/reader_state.h"

namespace cubenet {

enum KeywordHandler : std::uint8_t {
  HANDLE_SIGNAL,    // an attribute of one signal
  HANDLE_SWITCH,    // a device-wide switch
  HANDLE_EITHER,    // a switch when nothing or just a switch value follows, else an attribute of one signal
  HANDLE_VOLTAGE,   // a switch for INPUT, OUTPUT and BIDI, else an attribute of one signal
  HANDLE_PARAMETER, // a parameter of the fitter
  HANDLE_PART,
};

// What an attribute takes behind its signal, or which values a parameter takes.
enum KeywordOperand : std::uint8_t {
  OPERAND_NONE,
  OPERAND_CLOCK, // a clock type
  OPERAND_VALUE, // one word
  OPERAND_PATHS, // one or more path names
  VALUE_ON_OFF,
  VALUE_ON_OFF_VERBOSE,
  VALUE_STRATEGY,
  VALUE_FAN_IN,  // 2..24
  VALUE_FAN_OUT, // 1..4
  VALUE_EFFORT,  // 0 or more
  VALUE_FILE,    // any word, kept in its case
  VALUE_FORMS,   // any number of output forms
};

// The settings that may stand before the signal, opened by '='.
enum KeywordSetting : std::uint8_t { SETTING_NONE, SETTING_ON_OFF, SETTING_UP_OFF_HOLD };

struct KeywordRow {
  std::string_view keyword; // upper case
  KeywordHandler handler;
  KeywordOperand operand = OPERAND_NONE;
  int code = 0; // attribute code, without a setting
  KeywordSetting setting = SETTING_NONE;
  int setting_code = 0;         // code of the first setting; the others follow it
  int slot = 0;                 // index into option or par
  std::string_view stored_as{}; // spelling in the option text where that is another one
};

std::span<const KeywordRow> keyword_rows();
const KeywordRow *find_keyword(std::string_view keyword); // in any case; nullptr: not known

// The settings of that kind, in the order of their codes.
std::span<const std::string_view> setting_values(KeywordSetting setting);

// One statement, for the handlers and for messages.
struct PropertyStatement {
  const KeywordRow &row;
  std::string keyword;   // as written
  std::string text;      // the whole statement, cut to kTextLimit
  std::string_view rest; // behind the keyword
};

void read_signal_attribute(ReaderState &state, const PropertyStatement &statement);
void read_voltage(ReaderState &state, const PropertyStatement &statement);
void read_switch(ReaderState &state, const PropertyStatement &statement);
void read_parameter(ReaderState &state, const PropertyStatement &statement);

// True when the value is all that a HANDLE_EITHER keyword needs to be a switch.
bool is_switch_value(const KeywordRow &row, std::string_view value);

// The signal of an attribute: taken off the front of `text` with its first checks, then split into name and extension
// with the others. Both report what is wrong.
[[nodiscard]] bool take_signal(const PropertyStatement &statement, std::string_view &text, std::string_view &word);
[[nodiscard]] bool split_signal(const PropertyStatement &statement, std::string_view word, Property &property);

// Warnings that several handlers share.
void warn_of_extra_words(const PropertyStatement &statement, std::string_view text);
void warn_of_missing_signal(const PropertyStatement &statement);
void warn_of_bad_value(const PropertyStatement &statement, std::string_view value);
void warn_of_no_on_off(const PropertyStatement &statement, std::string_view value);
void warn_of_repetition(const PropertyStatement &statement);

} // namespace cubenet
