// Switches and parameters: what a constraints file may set, and the parameter file that repeats its parameters.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "kit/util/finding.h"

namespace cubekit {

// In the order in which they are written; the place is the slot that the truth table's reader keeps the value in.
struct SwitchRow {
  std::string_view key;
  std::string_view values; // in upper case, separated by '|'
};
extern const SwitchRow kSwitches[15];

struct Parameter {
  std::size_t slot = 0;
  std::string_view value;
  bool operator==(const Parameter &) const = default;
};

// The parameters of a design, and whether it reserves pins.
struct ParameterSet {
  std::vector<Parameter> list;
  bool reserves = false;
};

// Whether the value is one of those, in any case.
bool is_one_of(std::string_view value, std::string_view values);

// Takes a parameter that may follow those of the set, by its keyword or, in constraints, by the key that stands for it
// there. False when it can't.
[[nodiscard]] bool add_parameter(ParameterSet &set, std::string_view key, std::string_view value, bool in_constraints);
std::string_view parameter_keyword(const Parameter &parameter);

// What is wrong with a parameter file: its form, or that it isn't what the constraints of the design say. `name` is the
// design's, without a directory.
std::vector<Finding> check_parameters(std::string_view text, const ParameterSet &wanted, std::string_view name);

} // namespace cubekit
