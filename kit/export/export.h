// A netlist in forms that other tools read.
#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>

#include "kit/netlist/netlist.h"

namespace CLI {
class App;
}

namespace cubekit {

// `cubekit export`.
std::function<int()> setup_export(CLI::App &command);

// Combinational logic as it is. Where it ends, at storage, tristates, macros and ZDOT blocks, what leaves them is an
// input of the model and what enters them is an output INSTANCE.PIN; a loop of gates is cut at one net, which is an
// input, and NET..loop is what drives it.
void write_blif(std::ostream &stream, const Netlist &netlist);

// One module of instances, one per symbol.
void write_verilog(std::ostream &stream, const Netlist &netlist);

// The modules of the primitives that the netlist uses, and shells of its macros.
void write_library(std::ostream &stream, const Netlist &netlist);

// The form that Yosys writes: one cell per symbol, of the library's modules.
void write_json(std::ostream &stream, const Netlist &netlist);

// How a TABLE symbol's numbered inputs and rows stand in an instance: one vector port A, and two vectors of a bit per
// row and input, last row and last input first: literals that must be 1, and literals that must be 0.
struct TableBits {
  std::string ones, zeros;
};
TableBits table_bits(const Symbol &symbol);

std::string_view direction_text(Direction direction); // "input", "output", "inout"

} // namespace cubekit
