// The companion's readers on any bytes: what stands before "CELL: " is taken for an .nxf netlist, what follows for the
// ddf netlist of the same run, and all of it for a constraints file. What is refused must be refused with a reason.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "kit/check.h"
#include "kit/nxf_parser.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  using namespace cubekit;
  const std::string_view text(reinterpret_cast<const char *>(data), size);
  const std::size_t end = std::min(text.find("CELL: "), size);
  Netlist netlist;
  Finding error;
  if (parse_nxf({text.begin(), text.begin() + static_cast<std::ptrdiff_t>(end)}, netlist, error))
    for (const Finding &each : check_netlist(netlist))
      if (each.text.empty()) std::abort();
  if (error.line != 0 && error.text.empty()) std::abort();
  for (const Finding &each : compare_netlists(netlist, text.substr(end)))
    if (each.text.empty()) std::abort();
  for (const Finding &each : check_constraints(text))
    if (each.text.empty()) std::abort();
  return 0;
}
