// The register, latch, XOR and feedback extensions that may be combined on one signal.
#pragma once

#include <string_view>

#include "model/signal_flags.h"

namespace cubenet {

// The rules for the combination of one signal's flags; sets F_FF. Returns 1 if an ERROR was reported.
// `inverted`: the pin has the invert attribute (false for nodes); `series`: the device series.
[[nodiscard]] int check_signal_rules(SignalFlags &flags, bool inverted, std::string_view name, int series);

} // namespace cubenet
