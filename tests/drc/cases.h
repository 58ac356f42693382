// Expectations as text, in files next to the tests. A case ends at a blank line or before the next signal; a
// line's first character says what it is:
//   P, N, I  one signal "q" and its extensions (see rules_test.cc)
//   D        pins | nodes | input list | output list: the design of this and the following cases
//   +        an attribute statement without its head ("#..." with it)
//   *        a product term (none: one with all inputs and all outputs)
//   -        settings: "C", "V" or a device series, for this case
//   >        a message, without the wrapping       =  what is stored       ;  a remark
#pragma once

#include <string>
#include <vector>

namespace cubenet {

struct Case {
  std::string design, signal, statements, terms, settings;
  std::string messages; // a line each
  std::string stored;
};

std::vector<Case> read_cases(const std::string &file_name); // in tests/drc; remembers the latest design
std::vector<std::string> split(const std::string &text);    // at blanks

} // namespace cubenet
