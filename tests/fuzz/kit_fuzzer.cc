// The companion's readers on any bytes: the part before "CELL: " is read as an .nxf netlist, the rest as the
// ddf netlist of the same run, and all of it as a constraints file. A refusal must give a reason.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "kit/check/check.h"
#include "kit/netlist/check_netlist.h"
#include "kit/netlist/nxf_parser.h"

namespace cubekit {
namespace {

std::string item(const Netlist &netlist, const EndPoint &end) {
  const Symbol &symbol = netlist.symbols[end.symbol];
  if (end.pin < symbol.first_pin || end.pin - symbol.first_pin >= symbol.pin_count) std::abort();
  return std::string(symbol.instance) + '.' + std::string(netlist.pins[end.pin].name);
}

// Netlists without faults must have been joined as they say.
void demand_joints(const Netlist &netlist) {
  for (const Net &net : netlist.nets) {
    std::string text = "NET " + std::string(net.name) + (net.external ? " EXT" : "");
    if (net.has_source) text += " SRC " + item(netlist, net.source);
    if (net.destination_count > 0) text += " DST";
    for (std::uint32_t d = 0; d < net.destination_count; d++)
      text += ' ' + item(netlist, netlist.destinations[net.first_destination + d]);
    const auto start = static_cast<std::size_t>(net.name.data() - netlist.text.data()) - 4;
    if (netlist.text.compare(start, text.size() + 1, text + ';') != 0) std::abort();
  }
  std::size_t ends = netlist.destinations.size();
  for (const Net &net : netlist.nets) ends += net.has_source ? 1 : 0;
  if (ends != netlist.pins.size()) std::abort();
  for (SymbolIndex s = 0; s < netlist.symbols.size(); s++)
    if (find_symbol(netlist, netlist.symbols[s].instance) != s) std::abort();
}

} // namespace
} // namespace cubekit

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  using namespace cubekit;
  const std::string_view text(reinterpret_cast<const char *>(data), size);
  const std::size_t end = std::min(text.find("CELL: "), size);
  Netlist netlist;
  Finding error;
  if (parse_nxf(std::string(text.substr(0, end)), netlist, error)) {
    for (const Finding &each : check_netlist(netlist))
      if (each.text.empty()) std::abort();
    if (netlist.faults.empty()) demand_joints(netlist);
  }
  if (error.line != 0 && error.text.empty()) std::abort();
  DdfReading ddf;
  for (const Finding &each : compare_netlists(netlist, text.substr(end), ddf))
    if (each.text.empty()) std::abort();
  for (const Finding &each : check_constraints(text, {}, "d.rsp").wrong)
    if (each.text.empty()) std::abort();
  return 0;
}
