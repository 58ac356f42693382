// The primitives in Verilog, written from their pins: what an instance computes is defined only here. Unknown
// values stay unknown: a gate's own rules propagate them, and unconnected pins have no part in them.
#include <ostream>
#include <set>

#include "kit/export/export.h"
#include "kit/netlist/flow.h"
#include "kit/netlist/names.h"

namespace cubekit {

namespace {

struct GateRow {
  std::string_view name, verilog;
};
constexpr std::array kGates{std::to_array<GateRow>({
    {"AND", "and"},
    {"NAND", "nand"},
    {"OR", "or"},
    {"NOR", "nor"},
    {"INV", "not"},
    {"BUF", "buf"},
})};

constexpr std::string_view kXor = "  xor (Z0, A0, A1);\n"
                                  "  xnor (ZN0, A0, A1);\n";

constexpr std::string_view kTristate = "  wire a;\n"
                                       "  buf (a, A0);\n"
                                       "  assign $OUT = OE ? a : 1'bz;\n";

// A row is true where no literal that must be 1 is 0, and none that must be 0 is 1.
constexpr std::string_view kTable = "  wire [DEPTH-1:0] terms;\n"
                                    "  genvar i;\n"
                                    "  generate\n"
                                    "    for (i = 0; i < DEPTH; i = i + 1) begin : row\n"
                                    "      assign terms[i] = &((A | ~ONES[i*WIDTH +: WIDTH]) &"
                                    " ~(A & ZEROS[i*WIDTH +: WIDTH]));\n"
                                    "    end\n"
                                    "  endgenerate\n"
                                    "  assign Z0 = |terms;\n";

bool has(const PrimitiveRow &primitive, std::string_view pin) {
  for (const PinRow &row : primitive.pins)
    if (row.name == pin) return true;
  return false;
}

// "input wire A0, input wire A1, output wire Z0"; a stored output is a reg.
void write_ports(std::ostream &stream, const Symbol &symbol) {
  const PrimitiveRow &primitive = primitive_of(symbol);
  const char *separator = "";
  const auto write = [&](Direction direction, const auto &...text) {
    const bool stored = direction == Direction::OUT && is_storage(primitive.function);
    stream << separator << direction_text(direction) << (stored ? " reg " : " wire ");
    (stream << ... << text);
    separator = ", ";
  };
  if (primitive.numbered && is_table(symbol))
    write(Direction::IN, "[WIDTH-1:0] A");
  else if (primitive.numbered)
    for (std::uint32_t i = 0; i < symbol.width; i++) write(Direction::IN, "A", i);
  for (const PinRow &row : primitive.pins)
    if (!row.name.empty()) write(row.direction, row.name);
}

void write_gate(std::ostream &stream, const Symbol &symbol) {
  const PrimitiveRow &primitive = primitive_of(symbol);
  for (const GateRow &gate : kGates)
    if (gate.name == primitive.name) stream << "  " << gate.verilog;
  stream << " (" << (primitive.inverted ? "ZN0" : "Z0");
  if (!primitive.numbered) stream << ", A0";
  for (std::uint32_t i = 0; i < symbol.width; i++) stream << ", A" << i;
  stream << ");\n";
}

void write_tristate(std::ostream &stream, std::string_view output) {
  const std::size_t at = kTristate.find("$OUT");
  stream << kTristate.substr(0, at) << output << kTristate.substr(at + 4);
}

// Clear and set are level-sensitive: a set that a clear has masked acts when the clear goes.
void write_storage(std::ostream &stream, const PrimitiveRow &primitive) {
  const bool clocked = primitive.function == Function::FLIP_FLOP;
  const bool clear = has(primitive, "CD"), set = has(primitive, "SD");
  const std::string_view assign = clocked ? " <= " : " = ";
  const std::string_view set_name = clear ? "set" : "SD";
  stream << "  initial Q0 = `CUBENET_POWER_UP;\n";
  if (clear && set) stream << "  wire set = SD & ~CD;\n";
  stream << (clocked ? "  always @(posedge CLK" : "  always @(*)\n");
  if (clocked) stream << (clear ? " or posedge CD" : "");
  if (clocked && set) stream << " or posedge " << set_name;
  if (clocked) stream << ")\n";
  const char *otherwise = "    ";
  const auto write_case = [&](std::string_view condition, std::string_view value) {
    stream << otherwise;
    if (!condition.empty()) stream << "if (" << condition << ") ";
    stream << "Q0" << assign << value << ";\n";
    otherwise = "    else ";
  };
  if (clear) write_case("CD", "1'b0");
  if (set) write_case(set_name, "1'b1");
  const std::string_view enable = !clocked ? "G" : has(primitive, "EN") ? "EN" : "";
  write_case(enable, has(primitive, "T0") ? "Q0 ^ T0" : "D0");
}

void write_body(std::ostream &stream, const Symbol &symbol) {
  const PrimitiveRow &primitive = primitive_of(symbol);
  switch (primitive.function) {
  case Function::AND:
  case Function::OR:
  case Function::BUFFER: write_gate(stream, symbol); break;
  case Function::XOR: stream << kXor; break;
  case Function::TABLE: stream << (has_rows(symbol) ? kTable : "  assign Z0 = 1'bx;\n"); break;
  case Function::FLIP_FLOP:
  case Function::LATCH: write_storage(stream, primitive); break;
  case Function::TRISTATE: write_tristate(stream, "O0"); break;
  case Function::PAD:
    write_tristate(stream, has(primitive, "XB0") ? "XB0" : "XO0");
    if (has(primitive, "XB0")) stream << "  buf (Z0, XB0);\n";
    break;
  case Function::MACRO: break;
  }
}

// Neither a macro's contents nor a ZDOT's terms are known here.
void write_macro(std::ostream &stream, const Netlist &netlist, const Symbol &symbol) {
  const char *separator = "";
  std::string outputs;
  for (const Pin &pin : pins_of(netlist, symbol)) {
    const std::string name = verilog_identifier(map_name(pin.name, NameSet::VISIBLE));
    stream << separator << direction_text(pin.direction) << " wire " << name;
    if (pin.direction != Direction::IN) outputs += "  assign " + name + " = 1'bx;\n";
    separator = ", ";
  }
  stream << ");\n" << outputs << "endmodule\n\n";
}

void write_module(std::ostream &stream, const Netlist &netlist, const Symbol &symbol) {
  const bool shell = is_macro(symbol) || (is_table(symbol) && !has_rows(symbol));
  if (shell) stream << "(* blackbox *)\n";
  stream << "module " << verilog_identifier(map_name(symbol.primitive_text, NameSet::VISIBLE));
  if (has_rows(symbol))
    stream << " #(parameter WIDTH = 1, parameter DEPTH = 1,\n"
              "  parameter [WIDTH*DEPTH-1:0] ONES = 0, parameter [WIDTH*DEPTH-1:0] ZEROS = 0)";
  else if (is_table(symbol))
    stream << " #(parameter WIDTH = 1)";
  stream << " (";
  if (is_macro(symbol)) {
    write_macro(stream, netlist, symbol);
    return;
  }
  write_ports(stream, symbol);
  stream << ");\n";
  write_body(stream, symbol);
  stream << "endmodule\n\n";
}

} // namespace

void write_library(std::ostream &stream, const Netlist &netlist) {
  // In the order of the vocabulary, then by width and name.
  const auto before = [](const Symbol *a, const Symbol *b) {
    if (a->primitive != b->primitive) return a->primitive < b->primitive;
    if (primitive_of(*a).width_in_name && a->width != b->width) return a->width < b->width;
    return a->primitive_text < b->primitive_text;
  };
  std::set<const Symbol *, decltype(before)> modules(before);
  bool storage = false;
  for (const Symbol &symbol : netlist.symbols) {
    modules.insert(&symbol);
    storage = storage || is_storage(primitive_of(symbol).function);
  }
  if (storage)
    stream << "// What registers and latches hold before anything has reached them.\n"
              "`ifndef CUBENET_POWER_UP\n"
              "`define CUBENET_POWER_UP 1'b0\n"
              "`endif\n\n";
  for (const Symbol *symbol : modules) write_module(stream, netlist, *symbol);
}

} // namespace cubekit
