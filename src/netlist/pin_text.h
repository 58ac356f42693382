// The spelling of pins that both netlist files have in common.
#pragma once

#include "model/design.h"
#include "netlist/netlist.h"
#include "util/output_file.h"

namespace cubenet {

// The name of a pin, as its primitive or its macro has it.
void put_pin_name(OutputFile &file, const Design &design, const Netlist &netlist, SymbolIndex symbol,
                  std::uint32_t pin);
// "instance.pin"
void put_pin_reference(OutputFile &file, const Design &design, const Netlist &netlist, SymbolIndex symbol,
                       std::uint32_t pin);
void put_destination(OutputFile &file, const Design &design, const Netlist &netlist, const Destination &at);
// "instance.pin" of the pin that drives the net; the net must have a source.
void put_source(OutputFile &file, const Design &design, const Netlist &netlist, const Net &net);

} // namespace cubenet
