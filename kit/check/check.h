// Judges netlist files by their form: each for itself, and the two netlists of one design against each other.
#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "kit/check/ddf_parser.h"
#include "kit/check/settings.h"
#include "kit/check/signals.h"
#include "kit/netlist/netlist.h"

namespace CLI {
class App;
}

namespace cubekit {

// `cubekit check`.
std::function<int()> setup_check(CLI::App &command);

// Judges all files of a translation, against its truth table (DESIGN.tt2 unless one is named) as far as there is one.
// Returns the exit status: what is wrong goes to `out`, why something can't be judged to `errors`.
[[nodiscard]] int check_files(const std::string &design, const std::string &truth_table, std::ostream &out,
                              std::ostream &errors);

// What is wrong with the netlist, its faults included.
std::vector<Finding> check_netlist(const Netlist &netlist);

// Where the text of a ddf netlist breaks its form, or tells another story than the .nxf netlist; what a ddf leaves out
// on principle is allowed for. Lines are those of the ddf.
std::vector<Finding> compare_netlists(const Netlist &netlist, std::string_view ddf_text, DdfReading &reading);

// What is wrong with a constraints file, and what may be wrong: lines that a truth table would have to ask for.
struct Judgement {
  std::vector<Finding> wrong, open;
};

// Fills in the parameters that the file sets, as long as nothing is wrong.
Judgement check_constraints(std::string_view text, const Signals &signals, ParameterSet &parameters);

// Reads DESIGN.nxf. False, with all reasons on `errors`, when the file can't be read, breaks the format or is not in
// order.
[[nodiscard]] bool load_design(const std::string &design, Netlist &netlist, std::ostream &errors);

} // namespace cubekit
