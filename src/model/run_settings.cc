// The run settings, and the device series of a part name.
#include "model/run_settings.h"

namespace cubenet {

RunSettings run_settings;

void reset_run_settings() { run_settings = RunSettings{}; }

int part_series(std::string_view part_name) {
  const std::size_t digit = part_name.find_first_of("0123456789");
  if (digit == std::string_view::npos) return 0;
  return part_name[digit] == '5' ? 5 : part_name[digit] == '8' ? 8 : 1;
}

} // namespace cubenet
