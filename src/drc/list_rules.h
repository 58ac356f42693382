// The dot extensions that are legal on each side of an equation.
#pragma once

#include <string_view>

#include "model/signal_flags.h"

namespace cubenet {

// Checks one entry of the output or input list, with its extension in upper case (empty for none). Sets the
// entry's flag and returns 0, or reports one error and returns 1.
[[nodiscard]] int check_output_entry(SignalFlags &flags, std::string_view extension, std::string_view name);
[[nodiscard]] int check_input_entry(SignalFlags &flags, std::string_view extension, std::string_view name);

} // namespace cubenet
