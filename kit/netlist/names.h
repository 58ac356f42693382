// Maps names of a netlist into formats that allow fewer. Every mapping is injective: no two nets, pins or
// symbols get the same name.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "kit/netlist/netlist.h"

namespace cubekit {

// Characters that stay; any other becomes '%' and two hexadecimal digits.
enum class NameSet : std::uint8_t {
  WORD,    // letters, digits, '_': what every format takes
  VISIBLE, // printable ASCII except '%', '\' and '$', which tools keep for their own names
};
std::string map_name(std::string_view name, NameSet set);

// The text as a Verilog identifier: itself, or between a backslash and a space where it isn't an identifier
// or is a keyword. For texts from map_name.
std::string verilog_identifier(const std::string &text);

// A module's ports are the device pins, and nets share a namespace with them. A net that comes in by a pin,
// or that has the name of the pin it drives, is that port; any other net whose name a port has taken gets the
// suffix "$n". With `outputs_apart`, so does a net that drives a pin of its name.
struct PortNames {
  std::vector<std::string> pins; // per external pin
  std::vector<std::string> nets; // per net
};
PortNames name_ports(const Netlist &netlist, NameSet set, bool outputs_apart = false);

// Symbols share the nets' namespace, and often have the name of the net that they drive.
inline std::string symbol_name(const Symbol &symbol, NameSet set) { return "u$$" + map_name(symbol.instance, set); }

// The module: the design's name, with the suffix "$n" when a primitive or a macro of the design has that
// name.
std::string module_name(const Netlist &netlist, NameSet set);

} // namespace cubekit
