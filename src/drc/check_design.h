// The design rule checker: judges a design that has been read, removes its unused pins and nodes, and fills the groups
// of the database that are marked "checker".
#pragma once

#include <string_view>

#include "model/cube_table.h"
#include "model/design.h"

namespace cubenet {

// Runs all passes in order and reports every finding. 0 when no ERROR was reported, else 1; warnings never fail.
[[nodiscard]] int check_design(Design &design, const CubeTable &cubes);

// One entry of the output list, or of the input list, with its extension in upper case (empty for none). Sets the
// entry's flag and returns 0, or reports one error and returns 1.
[[nodiscard]] int check_output_entry(SignalFlags &flags, std::string_view extension, std::string_view name);
[[nodiscard]] int check_input_entry(SignalFlags &flags, std::string_view extension, std::string_view name);

// The rules for the combination of one signal's flags; sets F_FF. Returns 1 when an ERROR was reported.
// `inverted`: the pin has the invert attribute (false for nodes); `series`: the device series.
[[nodiscard]] int check_signal_rules(SignalFlags &flags, bool inverted, std::string_view name, int series);

} // namespace cubenet
