// Settings from the command line: written once while the options are parsed, then only read.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace cubenet {

struct RunSettings {
  std::optional<std::string> part_name; // "-p"
  int part_flag = 0;                    // device series of part_name: 0 (no part, or no digit), 1, 5 or 8
  bool expand = false;                  // "-pla" off, "-and"/"-or" on: product terms become gates
  int and_width = 12;                   // 2..100, widest generated AND gate
  int or_width = 12;                    // 2..100, widest generated OR gate
  int debug_level = 0;                  // "-V", 0 or more
  bool case_sensitive = false;          // "-C": how declared names are compared
};

extern RunSettings run_settings;
void reset_run_settings();

// The device series of a part name, by its first decimal digit: 5, 8, 1 for any other digit, 0 for none.
int part_series(std::string_view part_name);

} // namespace cubenet
