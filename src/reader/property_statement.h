// An attribute statement while it is read, shared by its handlers.
#pragma once

#include <string>
#include <string_view>

#include "model/design.h"
#include "reader/property_keywords.h"

namespace cubenet {

struct PropertyStatement {
  const KeywordRow &row;
  std::string keyword;   // as written
  std::string text;      // the whole statement, cut to kTextLimit
  std::string_view rest; // what follows the keyword
};

// The signal of an attribute: the first function removes it from the front of `text` and makes the first
// checks, the second splits it into name and extension and makes the others. Both report faults.
[[nodiscard]] bool take_signal(const PropertyStatement &statement, std::string_view &text, std::string_view &word);
[[nodiscard]] bool split_signal(const PropertyStatement &statement, std::string_view word, Property &property);

void warn_of_extra_words(const PropertyStatement &statement, std::string_view text);
void warn_of_missing_signal(const PropertyStatement &statement);
void warn_of_bad_value(const PropertyStatement &statement, std::string_view value);
void warn_of_no_on_off(const PropertyStatement &statement, std::string_view value);
void warn_of_repetition(const PropertyStatement &statement);

} // namespace cubenet
