// Whether a netlist is in order, as every command except `check` and `prove` requires.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "kit/netlist/netlist.h"

namespace cubekit {

// What is wrong with the netlist, its faults included.
std::vector<Finding> check_netlist(const Netlist &netlist);

// Reads DESIGN.nxf. False, with all reasons on `errors`, if the file can't be read, breaks the format or is
// not in order.
[[nodiscard]] bool load_design(const std::string &design, Netlist &netlist, std::ostream &errors);

} // namespace cubekit
