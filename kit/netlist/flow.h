// How values flow through a netlist: what drives what, and an order in which drivers come before their
// readers. For the commands that walk a netlist, which load_design must have accepted.
#pragma once

#include <vector>

#include "kit/netlist/netlist.h"

namespace cubekit {

inline bool is_constant(const Net &net) { return net.rail && (net.name == "GND" || net.name == "VCC"); }
inline bool is_table(const Symbol &symbol) { return primitive_of(symbol).function == Function::TABLE; }
// A PLA; the terms of a ZDOT are not in the netlist.
inline bool has_rows(const Symbol &symbol) { return is_table(symbol) && symbol.row_count > 0; }
inline bool is_pad(const Symbol &symbol) { return primitive_of(symbol).function == Function::PAD; }
// A pad without an enable always drives.
inline bool has_enable(const Symbol &pad) { return pad.pin_count > 2; }

// Whether the symbol's output follows that input directly.
using Passes = bool (*)(const Symbol &symbol, const Pin &pin);
bool passes_gates(const Symbol &symbol, const Pin &pin); // gates, pads, tristates do; storage, macros don't

struct Flow {
  std::vector<SymbolIndex> order; // all symbols, drivers first
  std::vector<bool> cut;          // per net: some reader comes before the driver. Every loop has such a net
};

// A loop that stores a value is cut at the net that is read outside the loop. Linear in pins and nets.
Flow order_symbols(const Netlist &netlist, Passes passes);

// The symbol that gives the net its value: its source or, where the net meets a device pin, the bidirectional
// pad on it. kNone for other nets.
SymbolIndex find_driver(const Netlist &netlist, NetIndex net);

// Per symbol: whether some of the nets depend on it, through any number of symbols, storage included.
std::vector<bool> find_influences(const Netlist &netlist, std::vector<NetIndex> nets);

} // namespace cubekit
