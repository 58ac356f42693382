// What both netlist writers do first.
#pragma once

#include "model/cube_table.h"
#include "model/design.h"
#include "netlist/build_netlist.h"
#include "netlist/connections.h"
#include "netlist/destinations.h"
#include "netlist/netlist.h"
#include "util/output_file.h"

namespace cubenet {

struct MappedDesign {
  Connections connections;
  Netlist netlist;
};

// Renames colliding names, connects the terms and builds the netlist; reports 31600, 31620 and 31621. The netlist
// refers to the design's names: the design must outlive it unchanged.
MappedDesign map_design(Design &design, const CubeTable &cubes, XorPlace xor_place);

// A net that nothing drives and nobody reads is not printed.
bool is_connected(const Netlist &netlist, NetIndex net);

// The name of a pin, as its primitive or its macro has it.
void put_pin_name(OutputFile &file, const Design &design, const Netlist &netlist, SymbolIndex symbol,
                  std::uint32_t pin);
// "instance.pin"
void put_pin_reference(OutputFile &file, const Design &design, const Netlist &netlist, SymbolIndex symbol,
                       std::uint32_t pin);
void put_destination(OutputFile &file, const Design &design, const Netlist &netlist, const Destination &at);
// "instance.pin" of the pin that drives the net; the net must have a source.
void put_source(OutputFile &file, const Design &design, const Netlist &netlist, const Net &net);

// Opens an output for writing; reports 31103 with `lead` before its text and gives false when that fails.
[[nodiscard]] bool open_reported(OutputFile &file, const std::string &path, const char *lead);
// Closes it; reports 31103 and gives false when the file could not be written whole (it is removed).
[[nodiscard]] bool close_reported(OutputFile &file, const char *lead);

} // namespace cubenet
