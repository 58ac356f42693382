// Writes a netlist in the JSON form that Yosys writes: bits are numbers, one per net.
#include <bitset>
#include <ostream>

#include "kit/export/export.h"
#include "kit/netlist/flow.h"
#include "kit/netlist/names.h"

namespace cubekit {

namespace {

constexpr NameSet kSet = NameSet::VISIBLE;
constexpr std::uint32_t kFirstBit = 2; // Yosys counts from here

// The mapped names are printable ASCII without '\'.
std::string quote(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"') quoted += '\\';
    quoted += c;
  }
  return quoted + '"';
}

std::string bit_text(const Netlist &netlist, NetIndex index) {
  const Net &net = netlist.nets[index];
  if (net.rail && net.name == "GND") return "\"0\"";
  if (net.rail && net.name == "VCC") return "\"1\"";
  return std::to_string(index + kFirstBit);
}

std::string number_text(std::size_t number) { return quote(std::bitset<32>(number).to_string()); }

// Joins the items written between braces.
struct List {
  std::ostream &stream;
  std::string_view indent;
  bool first = true;
};

std::ostream &next(List &list) {
  list.stream << (list.first ? "\n" : ",\n") << list.indent;
  list.first = false;
  return list.stream;
}

void write_ports(std::ostream &stream, const Netlist &netlist, const PortNames &names) {
  stream << "      \"ports\": {";
  List list{stream, "        "};
  for (std::size_t i = 0; i < names.pins.size(); i++) {
    const ExternalPin &pin = netlist.external_pins[i];
    next(list) << quote(names.pins[i]) << ": { \"direction\": " << quote(direction_text(pin.direction))
               << ", \"bits\": [ " << bit_text(netlist, pin.net) << " ] }";
  }
  stream << "\n      },\n";
}

// The pins as Verilog has them: those of a table are one vector.
template <typename WriteOne> void write_pins(List &list, const Netlist &netlist, const Symbol &symbol, WriteOne write) {
  const std::span<const Pin> pins = pins_of(netlist, symbol);
  const std::uint32_t vector = is_table(symbol) ? symbol.width : 0;
  if (vector > 0) write(next(list) << "\"A\": ", 0U, vector);
  for (std::uint32_t i = vector; i < symbol.pin_count; i++)
    write(next(list) << quote(map_name(pins[i].name, kSet)) << ": ", i, 1U);
}

void write_parameters(std::ostream &stream, const Symbol &symbol) {
  stream << "          \"parameters\": {";
  if (is_table(symbol)) stream << " \"WIDTH\": " << number_text(symbol.width);
  if (has_rows(symbol)) {
    const TableBits bits = table_bits(symbol);
    stream << ", \"DEPTH\": " << number_text(symbol.row_count) << ", \"ONES\": " << quote(bits.ones)
           << ", \"ZEROS\": " << quote(bits.zeros);
  }
  stream << " },\n";
}

void write_cell(std::ostream &stream, const Netlist &netlist, const Symbol &symbol) {
  stream << " {\n          \"hide_name\": 0,\n          \"type\": " << quote(map_name(symbol.primitive_text, kSet))
         << ",\n";
  write_parameters(stream, symbol);
  stream << "          \"attributes\": {" << (symbol.protect ? " \"keep\": " + number_text(1) : "") << " },\n"
         << "          \"port_directions\": {";
  List directions{stream, "            "};
  write_pins(directions, netlist, symbol, [&](std::ostream &out, std::uint32_t first, std::uint32_t) {
    out << quote(direction_text(pins_of(netlist, symbol)[first].direction));
  });
  if (is_pad(symbol) && !has_enable(symbol)) next(directions) << R"("OE": "input")";
  stream << "\n          },\n          \"connections\": {";
  List connections{stream, "            "};
  write_pins(connections, netlist, symbol, [&](std::ostream &out, std::uint32_t first, std::uint32_t count) {
    const char *separator = "[ ";
    for (const Pin &pin : pins_of(netlist, symbol).subspan(first, count)) {
      out << separator << bit_text(netlist, pin.net);
      separator = ", ";
    }
    out << " ]";
  });
  if (is_pad(symbol) && !has_enable(symbol)) next(connections) << R"("OE": [ "1" ])";
  stream << "\n          }\n        }";
}

void write_net_names(std::ostream &stream, const Netlist &netlist, const PortNames &names) {
  stream << "      \"netnames\": {";
  List list{stream, "        "};
  const auto write = [&](const std::string &name, NetIndex net) {
    next(list) << quote(name) << ": { \"hide_name\": 0, \"bits\": [ " << bit_text(netlist, net)
               << " ], \"attributes\": { } }";
  };
  for (NetIndex i = 0; i < names.nets.size(); i++) write(names.nets[i], i);
  for (std::size_t i = 0; i < names.pins.size(); i++) {
    const NetIndex net = netlist.external_pins[i].net;
    if (names.nets[net] != names.pins[i]) write(names.pins[i], net);
  }
  stream << "\n      }\n";
}

} // namespace

void write_json(std::ostream &stream, const Netlist &netlist) {
  const PortNames names = name_ports(netlist, kSet);
  stream << "{\n  \"creator\": \"cubekit\",\n  \"modules\": {\n    " << quote(module_name(netlist, kSet))
         << ": {\n      \"attributes\": { \"top\": " << number_text(1) << " },\n";
  write_ports(stream, netlist, names);
  stream << "      \"cells\": {";
  List list{stream, "        "};
  for (const Symbol &symbol : netlist.symbols) {
    next(list) << quote(symbol_name(symbol, kSet)) << ":";
    write_cell(stream, netlist, symbol);
  }
  stream << "\n      },\n";
  write_net_names(stream, netlist, names);
  stream << "    }\n  }\n}\n";
}

} // namespace cubekit
