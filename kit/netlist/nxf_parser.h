// Reads .nxf netlists, strictly: anything but the format's exact statement forms is refused with its line.
#pragma once

#include <iosfwd>
#include <string>

#include "kit/netlist/netlist.h"

namespace cubekit {

// Parses the text and joins nets and symbols. False at the first line that breaks the format, with the reason
// in `error`. Names that don't fit together are no errors here: they are listed in netlist.faults. Linear in
// the text.
[[nodiscard]] bool parse_nxf(std::string text, Netlist &netlist, Finding &error);

// Reads a netlist, whatever its faults. False, with the reason on `errors`, when the file can't be read or
// breaks the format.
[[nodiscard]] bool read_nxf(const std::string &path, Netlist &netlist, std::ostream &errors);

// Reads a netlist for use: false, with all reasons on `errors`, when the file can't be read, breaks the
// format or has faults.
[[nodiscard]] bool load_nxf(const std::string &path, Netlist &netlist, std::ostream &errors);

} // namespace cubekit
