// The passes of the checker, in the order in which check_design runs them. Those that return an int report findings: 1
// when an ERROR was among them, else 0. All take time linear in what they look at (plus the number of messages).
#pragma once

#include <string>
#include <string_view>

#include "model/cube_table.h"
#include "model/design.h"
#include "model/text_index.h"

namespace cubenet {

// Equal names within the pins, within the nodes and between both, as the case rule has it.
[[nodiscard]] int check_declarations(const Design &design);

// Fills ilb_signals, olb_signals and the signals of macro connections; reports list entries that nothing declares.
[[nodiscard]] int bind_list_entries(Design &design, const TextIndex &exact_names);

// Fills pin_flags and node_flags, and removes the pins and nodes that neither list nor any macro names.
[[nodiscard]] int collect_signal_flags(Design &design, const TextIndex &exact_names);

void remove_ambiguous_pullup(Design &design);

// Fills fan_out, but for the output-enable feed marks.
void analyze_fan_out(Design &design, const CubeTable &cubes);
void mark_output_enable_feed(Design &design, const CubeTable &cubes);

[[nodiscard]] int check_signals(Design &design);

void write_numeric_locations(Design &design);

// Judges the attribute records and stores what stands on pins, nodes and list entries.
[[nodiscard]] int check_attributes(Design &design);
// Builds the paths from the path attributes that stand, judges them, and attaches their names to list entries.
void check_paths(Design &design);

[[nodiscard]] int check_pin_locks(Design &design);

inline void append_word(std::string &list, std::string_view word) {
  if (!list.empty()) list += ' ';
  list += word;
}

} // namespace cubenet
