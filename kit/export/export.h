// Exports a netlist to formats that other tools read.
#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "kit/netlist/netlist.h"
#include "kit/table/read_design.h"

namespace CLI {
class App;
}

namespace cubekit {

// `cubekit export`.
std::function<int()> setup_export(CLI::App &command);

// Adds an input port, on a net of its own, for each pin that the table declares and the netlist lacks because
// nothing reads or drives it; ports keep the order of the table. The netlist holds views into the pins.
// False, with the netlist unchanged, when it doesn't belong to that table.
[[nodiscard]] bool add_unused_pins(const std::vector<DeclaredPin> &declared, Netlist &netlist);

// Combinational logic as it is. It ends at storage, tristates, macros and ZDOT blocks: their outputs are
// inputs of the model, their inputs are its outputs INSTANCE.PIN. A loop of gates is cut at one net, which
// becomes an input, with NET..loop as the function that drives it.
void write_blif(std::ostream &stream, const Netlist &netlist);

// One module of instances, one per symbol.
void write_verilog(std::ostream &stream, const Netlist &netlist);

// The modules of the primitives that the netlist uses, and shells of its macros.
void write_library(std::ostream &stream, const Netlist &netlist);

// The form that Yosys writes: one cell per symbol, of the library's modules.
void write_json(std::ostream &stream, const Netlist &netlist);

// How an instance represents a TABLE symbol's numbered inputs and rows: one vector port A, and two vectors of
// a bit per row and input, last row and last input first: literals that must be 1, and literals that must be
// 0.
struct TableBits {
  std::string ones, zeros;
};
TableBits table_bits(const Symbol &symbol);

std::string_view direction_text(Direction direction); // "input", "output", "inout"

} // namespace cubekit
