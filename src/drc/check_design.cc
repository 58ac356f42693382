// The order of the checks. Every pass is completed whatever the earlier ones found, so that one run shows all
// findings of a design.
#include "drc/check_design.h"

#include "drc/passes.h"
#include "model/names.h"
#include "report/messages.h"

namespace cubenet {

namespace {

void raise_extensions(Design &design) {
  for (std::string &extension : design.IB_EXT) extension = upper_case(extension);
  for (std::string &extension : design.OB_EXT) extension = upper_case(extension);
}

} // namespace

int check_design(Design &design, const CubeTable &cubes) {
  print_line("Checking design rules...");
  raise_extensions(design);

  int failed = check_declarations(design);

  // After these two, every list entry has its signal, every signal its roles, and unused names are gone.
  const TextIndex names = index_signals(design, true);
  failed |= bind_list_entries(design, names);
  failed |= collect_signal_flags(design, names);
  remove_ambiguous_pullup(design);

  analyze_fan_out(design, cubes);
  failed |= check_signals(design);
  mark_output_enable_feed(design, cubes);

  // Attributes are checked against the signals' roles.
  write_numeric_locations(design);
  failed |= check_attributes(design);
  check_paths(design);
  failed |= check_pin_locks(design);
  return failed;
}

} // namespace cubenet
