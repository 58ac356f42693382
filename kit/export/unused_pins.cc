// Ports for pins that are not in the netlist.
#include <algorithm>
#include <utility>

#include "kit/export/export.h"

namespace cubekit {

namespace {

// Names only change by added prefixes.
bool is_of_table(const std::vector<DeclaredPin> &declared, const Netlist &netlist) {
  std::size_t next = 0;
  for (const DeclaredPin &pin : declared) {
    if (!pin.is_used) continue;
    if (next == netlist.external_pins.size() || !netlist.external_pins[next].pin.ends_with(pin.name)) return false;
    next++;
  }
  return next == netlist.external_pins.size();
}

} // namespace

bool add_unused_pins(const std::vector<DeclaredPin> &declared, Netlist &netlist) {
  if (!is_of_table(declared, netlist)) return false;
  const std::vector<ExternalPin> used = std::exchange(netlist.external_pins, {});
  std::size_t next = 0;
  for (const DeclaredPin &pin : declared) {
    if (pin.is_used) {
      netlist.external_pins.push_back(used[next++]);
    } else if (find_name(netlist.external_by_pin, pin.name) == kNone) { // else a pin was renamed to that name
      ExternalPin &added = netlist.external_pins.emplace_back();
      added.pin = pin.name;
      added.net = static_cast<NetIndex>(netlist.nets.size());
      netlist.nets.emplace_back().external = true;
    }
  }
  netlist.external_by_pin = {}; // the places have changed
  for (std::uint32_t i = 0; i < netlist.external_pins.size(); i++)
    add_name(netlist.external_by_pin, netlist.external_pins[i].pin, i);
  return true;
}

} // namespace cubekit
