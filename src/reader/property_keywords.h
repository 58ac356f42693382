// The attribute keywords, one row each.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "model/attributes.h"

namespace cubenet {

enum KeywordHandler : std::uint8_t {
  HANDLE_SIGNAL,    // an attribute of one signal
  HANDLE_SWITCH,    // a device-wide switch
  HANDLE_EITHER,    // a switch if nothing or a switch value follows, otherwise an attribute
  HANDLE_VOLTAGE,   // a switch for INPUT, OUTPUT and BIDI, otherwise an attribute of one signal
  HANDLE_PARAMETER, // a parameter of the fitter
  HANDLE_PART,
};

// The operands that follow an attribute's signal, or the values of a parameter.
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

// The settings allowed before the signal, introduced by '='.
enum KeywordSetting : std::uint8_t { SETTING_NONE, SETTING_ON_OFF, SETTING_UP_OFF_HOLD };

struct KeywordRow {
  std::string_view keyword; // upper case
  KeywordHandler handler;
  KeywordOperand operand = OPERAND_NONE;
  AttributeCode code = CODE_NONE; // of an attribute without a setting
  KeywordSetting setting = SETTING_NONE;
  std::size_t slot = 0;        // of a switch: into DesignHeader::option; of a parameter: into Design::par
  std::string_view spelling{}; // of a switch or parameter: in that text
};

std::span<const KeywordRow> keyword_rows();
const KeywordRow *find_keyword(std::string_view keyword); // in any case; nullptr if unknown

} // namespace cubenet
