// Reads .nxf netlists, strictly: what is not exactly of the format's statement forms is refused with its line.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "kit/netlist.h"

namespace cubekit {

// Reads a whole file. False when that can't be done, with the reason in `error`.
[[nodiscard]] bool read_file(const std::string &path, std::vector<char> &text, Finding &error);

// Parses the text and joins nets and symbols. False at the first line that breaks the format, told in `error`. Names
// that don't fit together are no errors here: they stand in netlist.faults. Linear in the text.
[[nodiscard]] bool parse_nxf(std::vector<char> text, Netlist &netlist, Finding &error);

// Reads a netlist that is to be used: false, with all reasons on `errors`, when the file can't be read, breaks the
// format or holds faults.
[[nodiscard]] bool load_nxf(const std::string &path, Netlist &netlist, std::ostream &errors);

// "path:line: text" (or "path: text" for line 0) and a line end.
void print_finding(std::ostream &stream, const std::string &path, const Finding &finding);

} // namespace cubekit
