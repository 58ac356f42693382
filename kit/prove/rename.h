// Under which names the signals of a design stand in its netlist: names that would meet generated ones are renamed on
// the way, once before each of the two netlists is written.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "kit/netlist/netlist.h"
#include "kit/prove/meaning.h"

namespace cubekit {

// Per signal, its name in the .nxf netlist; empty for signals that the design doesn't use.
std::vector<std::string> netlist_names(const Meaning &meaning, const Netlist &netlist, bool case_sensitive);

// What stands in front of an ending that generated names have: a signal of that name may be renamed. Empty for none.
std::string_view generated_base(std::string_view name);

} // namespace cubekit
