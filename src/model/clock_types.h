// The types of clock nets, one row each, in the order of the constraints file.
#pragma once

#include <algorithm>
#include <array>
#include <string_view>

#include "model/design.h"
#include "model/names.h"

namespace cubenet {

struct ClockType {
  std::string_view name;
  Mark SignalAttributes::*mark;
};

inline constexpr std::array<ClockType, 7> kClockTypes{{
    {"CLK0", &SignalAttributes::CLK0},
    {"CLK1", &SignalAttributes::CLK1},
    {"CLK2", &SignalAttributes::CLK2},
    {"IOCLK0", &SignalAttributes::ICLK0},
    {"IOCLK1", &SignalAttributes::ICLK1},
    {"FASTCLK", &SignalAttributes::FASTCLK},
    {"SLOWCLK", &SignalAttributes::SLOWCLK},
}};

// The type of that name, in any case; nullptr if there is none.
inline const ClockType *find_clock_type(std::string_view name) {
  const auto *row = std::find_if(kClockTypes.begin(), kClockTypes.end(),
                                 [&](const ClockType &each) { return equal_ignoring_case(each.name, name); });
  return row == kClockTypes.end() ? nullptr : row;
}

} // namespace cubenet
