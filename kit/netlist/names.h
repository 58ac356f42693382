// Names of a netlist in formats that allow less. Every mapping here is injective: two nets, two pins or two symbols
// never get one name.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "kit/netlist/netlist.h"

namespace cubekit {

// Characters that stay; any other becomes '%' and two hexadecimal digits.
enum class NameSet : std::uint8_t {
  WORD,    // letters, digits, '_': what every format takes
  VISIBLE, // all that ASCII shows, but '%', '\', and '$', which tools keep for names of their own
};
std::string map_name(std::string_view name, NameSet set);

// The text as a Verilog identifier: itself, or behind a backslash and in front of a space where it isn't one or is a
// keyword. For texts from map_name.
std::string verilog_identifier(const std::string &text);

// A module's ports are the device pins, and nets share one space of names with them. A net that comes in by a pin, or
// that has the name of the pin it drives, is that port; any other net whose name a port has taken gets "$n" behind it.
// With `outputs_apart`, so does a net that drives a pin of its name.
struct PortNames {
  std::vector<std::string> pins; // per external pin
  std::vector<std::string> nets; // per net
};
PortNames name_ports(const Netlist &netlist, NameSet set, bool outputs_apart = false);

// Symbols lie in the same space as nets, and often have the name of the net that they drive.
inline std::string symbol_name(const Symbol &symbol, NameSet set) { return "u$$" + map_name(symbol.instance, set); }

// The module: the design's name, with "$n" behind it when a primitive or a macro of the design is called so.
std::string module_name(const Netlist &netlist, NameSet set);

} // namespace cubekit
