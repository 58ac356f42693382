// Judges netlist files by their form: each for itself, and the two netlists of one design against each other.
#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "kit/netlist/netlist.h"

namespace CLI {
class App;
}

namespace cubekit {

// `cubekit check`.
std::function<int()> setup_check(CLI::App &command);

// What is wrong with the netlist, its faults included.
std::vector<Finding> check_netlist(const Netlist &netlist);

// Where the text of a ddf netlist breaks its form, or tells another story than the .nxf netlist; what a ddf leaves out
// on principle is allowed for. Lines are those of the ddf.
std::vector<Finding> compare_netlists(const Netlist &netlist, std::string_view ddf_text);

// What breaks the form of a constraints file.
std::vector<Finding> check_constraints(std::string_view text);

// Reads DESIGN.nxf. False, with all reasons on `errors`, when the file can't be read, breaks the format or is not in
// order.
[[nodiscard]] bool load_design(const std::string &design, Netlist &netlist, std::ostream &errors);

} // namespace cubekit
