// Which names the signals of a design have in its netlist: names that would clash with generated ones are
// renamed, once before each of the two netlists is written.
#pragma once

#include <string>
#include <vector>

#include "kit/netlist/netlist.h"
#include "kit/prove/meaning.h"

namespace cubekit {

// Per signal, its name in the .nxf netlist; empty for signals that the design doesn't use.
std::vector<std::string> netlist_names(const Meaning &meaning, const Netlist &netlist, bool case_sensitive);

} // namespace cubekit
