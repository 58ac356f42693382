// The passes of the checker, in the order in which check_design runs them. Those that return an int report
// findings: 1 if there was an ERROR, otherwise 0. All take time linear in their input plus the number of
// messages.
#pragma once

#include <string>
#include <string_view>

#include "model/cube_table.h"
#include "model/design.h"
#include "model/text_index.h"

namespace cubenet {

// Equal names among pins, among nodes and between both, by the case-sensitivity setting.
[[nodiscard]] int check_declarations(const Design &design);

// Fills ilb_signals, olb_signals and the signals of macro connections; reports undeclared list entries.
[[nodiscard]] int bind_list_entries(Design &design, const TextIndex &exact_names);

// Fills pin_flags and node_flags, and removes the pins and nodes that are in neither list and no macro.
[[nodiscard]] int collect_signal_flags(Design &design, const TextIndex &exact_names);

void remove_ambiguous_pullup(Design &design);

// Fills fan_out, except for the output-enable feed marks.
void analyze_fan_out(Design &design, const CubeTable &cubes);
void mark_output_enable_feed(Design &design, const CubeTable &cubes);

[[nodiscard]] int check_signals(Design &design);

void write_numeric_locations(Design &design);

// Checks the attribute records and stores the valid ones with pins, nodes and list entries.
[[nodiscard]] int check_attributes(Design &design);
// Builds the paths from the valid path attributes, checks them, and attaches their names to list entries.
void check_paths(Design &design);

[[nodiscard]] int check_pin_locks(Design &design);

inline void append_word(std::string &list, std::string_view word) {
  if (!list.empty()) list += ' ';
  list += word;
}

} // namespace cubenet
