// The blocks of the outputs.
#pragma once

#include "netlist/netlist_builder.h"

namespace cubenet {

// Adds the rails that constant outputs need, XOR gates where they stand with the outputs, and PLA or ZDOT blocks unless
// the product terms become gates.
void add_output_blocks(NetlistBuilder &builder);

} // namespace cubenet
