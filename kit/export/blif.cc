// Writes the combinational logic of a netlist as BLIF.
#include <ostream>

#include "kit/export/export.h"
#include "kit/netlist/flow.h"
#include "kit/netlist/names.h"

namespace cubekit {

namespace {

constexpr NameSet kSet = NameSet::WORD;

struct Writer {
  std::ostream &stream;
  const Netlist &netlist;
  PortNames names;
  Flow flow;
};

// Logic ends here: the outputs are no function of the inputs, or none that the netlist has.
bool is_boundary(const Symbol &symbol) {
  switch (primitive_of(symbol).function) {
  case Function::FLIP_FLOP:
  case Function::LATCH:
  case Function::TRISTATE:
  case Function::MACRO: return true;
  case Function::PAD: return has_enable(symbol);
  case Function::TABLE: return !has_rows(symbol);
  default: return false;
  }
}

bool passes(const Symbol &symbol, const Pin &) { return !is_boundary(symbol); }

// The net's value comes from outside the model. That of a bidirectional pad's Z0 is the pin's, an input.
bool is_input(const Writer &writer, NetIndex index) {
  const Net &net = writer.netlist.nets[index];
  if (!net.has_source) return !is_constant(net);
  const Symbol &source = writer.netlist.symbols[net.source.symbol];
  if (is_pad(source) && has_enable(source)) return false;
  return writer.flow.cut[index] || is_boundary(source);
}

// The pin of a pad with an enable is not a logic value: the pad's inputs say everything.
bool is_output(const Writer &writer, const ExternalPin &pin) {
  const Net &net = writer.netlist.nets[pin.net];
  if (pin.direction != Direction::OUT || !net.has_source) return false;
  const Symbol &source = writer.netlist.symbols[net.source.symbol];
  return !is_pad(source) || !has_enable(source);
}

template <typename Visit> void for_each_end(const Writer &writer, Visit visit) {
  for (const Symbol &symbol : writer.netlist.symbols) {
    if (!is_boundary(symbol)) continue;
    for (const Pin pin : pins_of(writer.netlist, symbol))
      if (pin.direction == Direction::IN)
        visit(map_name(symbol.instance, kSet) + "." + map_name(pin.name, kSet), writer.names.nets[pin.net]);
  }
}

std::string driven_name(const Writer &writer, NetIndex net) {
  return writer.names.nets[net] + (writer.flow.cut[net] ? "..loop" : "");
}

void write_ports(Writer &writer) {
  std::ostream &stream = writer.stream;
  stream << ".inputs";
  const auto put_input = [&](NetIndex net) {
    if (is_input(writer, net)) stream << " \\\n  " << writer.names.nets[net];
  };
  for (const ExternalPin &pin : writer.netlist.external_pins) put_input(pin.net);
  for (NetIndex i = 0; i < writer.netlist.nets.size(); i++)
    if (!writer.netlist.nets[i].external) put_input(i);
  stream << "\n.outputs";
  for (std::size_t i = 0; i < writer.names.pins.size(); i++)
    if (is_output(writer, writer.netlist.external_pins[i])) stream << " \\\n  " << writer.names.pins[i];
  for_each_end(writer, [&](const std::string &name, const std::string &) { stream << " \\\n  " << name; });
  for (NetIndex i = 0; i < writer.netlist.nets.size(); i++)
    if (writer.flow.cut[i]) stream << " \\\n  " << driven_name(writer, i);
  stream << '\n';
}

void write_buffer(Writer &writer, const std::string &from, const std::string &to) {
  writer.stream << ".names " << from << ' ' << to << "\n1 1\n";
}

void write_rows(std::ostream &stream, const Symbol &symbol, std::string_view output_pin) {
  const PrimitiveRow &primitive = primitive_of(symbol);
  const std::size_t width = primitive.numbered ? symbol.width : 1;
  const char *result = primitive.inverted ? " 0\n" : " 1\n";
  switch (primitive.function) {
  case Function::OR: // by its complement: one row
    stream << std::string(width, '0') << (primitive.inverted ? " 1\n" : " 0\n");
    break;
  case Function::XOR: stream << (output_pin == "Z0" ? "10 1\n01 1\n" : "11 1\n00 1\n"); break;
  case Function::TABLE:
    for (std::size_t row = 0; row < symbol.row_count; row++) stream << row_at(symbol, row) << " 1\n";
    break;
  default: stream << std::string(width, '1') << result; break;
  }
}

void write_logic(Writer &writer, const Symbol &symbol) {
  for (const Pin output : pins_of(writer.netlist, symbol)) {
    if (output.direction == Direction::IN) continue;
    writer.stream << ".names";
    for (const Pin pin : pins_of(writer.netlist, symbol))
      if (pin.direction == Direction::IN) writer.stream << ' ' << writer.names.nets[pin.net];
    writer.stream << ' ' << driven_name(writer, output.net) << '\n';
    write_rows(writer.stream, symbol, output.name);
  }
}

// The pin of a bidirectional pad, read.
void write_read_pad(Writer &writer, const Symbol &symbol) {
  const auto index = static_cast<SymbolIndex>(&symbol - writer.netlist.symbols.data());
  const NetIndex pin = net_at(writer.netlist, index, "XB0"), read = net_at(writer.netlist, index, "Z0");
  if (pin != kNone) write_buffer(writer, writer.names.nets[pin], writer.names.nets[read]);
}

} // namespace

void write_blif(std::ostream &stream, const Netlist &netlist) {
  Writer writer{stream, netlist, name_ports(netlist, kSet, true), order_symbols(netlist, passes)};
  stream << ".model " << module_name(netlist, kSet) << '\n';
  write_ports(writer);
  for (NetIndex i = 0; i < netlist.nets.size(); i++)
    if (is_constant(netlist.nets[i]))
      stream << ".names " << writer.names.nets[i] << '\n' << (netlist.nets[i].name == "VCC" ? "1\n" : "");
  for (const Symbol &symbol : netlist.symbols) {
    if (!is_boundary(symbol))
      write_logic(writer, symbol);
    else if (is_pad(symbol))
      write_read_pad(writer, symbol);
  }
  for (std::size_t i = 0; i < netlist.external_pins.size(); i++)
    if (is_output(writer, netlist.external_pins[i]))
      write_buffer(writer, writer.names.nets[netlist.external_pins[i].net], writer.names.pins[i]);
  for_each_end(writer, [&](const std::string &name, const std::string &net) { write_buffer(writer, net, name); });
  stream << ".end\n";
}

} // namespace cubekit
