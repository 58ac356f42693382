// The mapping of the design's signals, one by one.
#pragma once

#include "netlist/netlist_builder.h"

namespace cubenet {

// Whether the mapping names anything with that suffix.
bool is_made_suffix(std::string_view suffix);

// Maps one signal: its nets, its symbols, its external pin, and the nets that its readers read.
void map_signal(NetlistBuilder &builder, SignalIndex signal);
// An LXOR2 gate that takes an output reads its columns' nets, which stand only when all signals are mapped.
void connect_xor_gates(NetlistBuilder &builder);

} // namespace cubenet
