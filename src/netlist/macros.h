// The placed macros: what they read and drive, and the nets that only they connect.
#pragma once

#include <cstdint>
#include <string>

#include "netlist/netlist_builder.h"
#include "netlist/signal_mapper.h"

namespace cubenet {

// How a connection spells a net of the signal or plain net `base`.
std::string spelled_name(const std::string &base, const Connection &connection, bool is_output);

void collect_macro_pins(NetlistBuilder &builder);
// The macro output that drives a signal without an equation of its own; nullptr for none.
const MacroPin *find_macro_driver(const NetlistBuilder &builder, SignalIndex signal);
// Which forms of the signal macros read, as a bit per extension code.
std::uint32_t macro_reads(const NetlistBuilder &builder, SignalIndex signal);
void connect_macro_pins(NetlistBuilder &builder, SignalMapper &mapper, const ReadNets &reads, const MacroPin *driver);
void add_macros(NetlistBuilder &builder);

} // namespace cubenet
