// Writes a netlist as one structural Verilog module.
#include <ostream>

#include "kit/export/export.h"
#include "kit/netlist/flow.h"
#include "kit/netlist/names.h"

namespace cubekit {

namespace {

constexpr NameSet kSet = NameSet::VISIBLE;

struct Writer {
  std::ostream &stream;
  const Netlist &netlist;
  std::vector<std::string> pins, nets; // identifiers
};

void write_header(Writer &writer) {
  writer.stream << "module " << verilog_identifier(module_name(writer.netlist, kSet)) << " (";
  for (std::size_t i = 0; i < writer.pins.size(); i++) {
    const Direction direction = writer.netlist.external_pins[i].direction;
    writer.stream << (i == 0 ? "\n  " : ",\n  ") << direction_text(direction) << " wire " << writer.pins[i];
  }
  writer.stream << "\n);\n";
}

void write_nets(Writer &writer, const PortNames &names) {
  std::vector<bool> port(writer.netlist.nets.size());
  for (std::size_t i = 0; i < names.pins.size(); i++) {
    const NetIndex net = writer.netlist.external_pins[i].net;
    if (names.pins[i] == names.nets[net]) port[net] = true;
  }
  for (NetIndex i = 0; i < writer.nets.size(); i++) {
    if (port[i]) continue;
    const Net &net = writer.netlist.nets[i];
    writer.stream << "  wire " << writer.nets[i];
    if (net.rail && net.name == "GND") writer.stream << " = 1'b0";
    if (net.rail && net.name == "VCC") writer.stream << " = 1'b1";
    writer.stream << ";\n";
  }
  for (std::size_t i = 0; i < names.pins.size(); i++) {
    const ExternalPin &pin = writer.netlist.external_pins[i];
    if (names.pins[i] == names.nets[pin.net]) continue;
    const bool drives = pin.direction == Direction::OUT;
    writer.stream << "  assign " << (drives ? writer.pins[i] : writer.nets[pin.net]) << " = "
                  << (drives ? writer.nets[pin.net] : writer.pins[i]) << ";\n";
  }
  writer.stream << '\n';
}

// The rows of the table, a line each where there are several. The first row comes last, like the bits of a
// vector.
void write_vector(Writer &writer, std::string_view name, std::string_view bits, std::size_t width) {
  const bool single = bits.size() == width;
  writer.stream << "." << name << (single ? "(" : "({");
  for (std::size_t at = 0; at < bits.size(); at += width)
    writer.stream << (single ? "" : at == 0 ? "\n    " : ",\n    ") << width << "'b" << bits.substr(at, width);
  writer.stream << (single ? ")" : "})");
}

void write_table_parameters(Writer &writer, const Symbol &symbol) {
  writer.stream << " #(.WIDTH(" << symbol.width << ")";
  if (has_rows(symbol)) {
    const TableBits bits = table_bits(symbol);
    writer.stream << ", .DEPTH(" << symbol.row_count << "), ";
    write_vector(writer, "ONES", bits.ones, symbol.width);
    writer.stream << ", ";
    write_vector(writer, "ZEROS", bits.zeros, symbol.width);
  }
  writer.stream << ")";
}

void write_symbol(Writer &writer, const Symbol &symbol) {
  std::ostream &stream = writer.stream;
  stream << "  " << verilog_identifier(map_name(symbol.primitive_text, kSet));
  if (is_table(symbol)) write_table_parameters(writer, symbol);
  stream << ' ' << verilog_identifier(symbol_name(symbol, kSet)) << " (";
  const std::span<const Pin> pins = pins_of(writer.netlist, symbol);
  std::uint32_t first = 0;
  if (is_table(symbol)) {
    stream << ".A({";
    for (std::uint32_t i = symbol.width; i > 0; i--) stream << writer.nets[pins[i - 1].net] << (i > 1 ? ", " : "})");
    first = symbol.width;
  }
  for (std::uint32_t i = first; i < symbol.pin_count; i++)
    stream << (i == 0 ? "." : ", .") << verilog_identifier(map_name(pins[i].name, kSet)) << '('
           << writer.nets[pins[i].net] << ')';
  stream << (is_pad(symbol) && !has_enable(symbol) ? ", .OE(1'b1));\n" : ");\n");
}

} // namespace

std::string_view direction_text(Direction direction) {
  constexpr std::array<std::string_view, 3> kTexts{"input", "output", "inout"};
  return kTexts[static_cast<std::size_t>(direction)];
}

TableBits table_bits(const Symbol &symbol) {
  TableBits bits;
  for (std::size_t row = symbol.row_count; row > 0; row--) {
    const std::string_view text = row_at(symbol, row - 1);
    for (auto literal = text.rbegin(); literal != text.rend(); ++literal) {
      bits.ones += *literal == '1' ? '1' : '0';
      bits.zeros += *literal == '0' ? '1' : '0';
    }
  }
  return bits;
}

void write_verilog(std::ostream &stream, const Netlist &netlist) {
  const PortNames names = name_ports(netlist, kSet);
  Writer writer{stream, netlist, {}, {}};
  for (const std::string &pin : names.pins) writer.pins.push_back(verilog_identifier(pin));
  for (const std::string &net : names.nets) writer.nets.push_back(verilog_identifier(net));
  write_header(writer);
  write_nets(writer, names);
  for (const Symbol &symbol : netlist.symbols) write_symbol(writer, symbol);
  stream << "endmodule\n";
}

} // namespace cubekit
