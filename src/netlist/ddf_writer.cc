// The ddf netlist: one cell with its ports, a list of symbols without their pins, and a line per net. It prints the
// netlist that the NXF file prints, with gaps and oddities that the tools which read this format rely on; each stands
// in a place of its own below.
#include <string_view>

#include "model/run_settings.h"
#include "netlist/destinations.h"
#include "netlist/gate_planes.h"
#include "netlist/map_design.h"
#include "netlist/pin_text.h"
#include "netlist/reported_output.h"
#include "netlist/writers.h"
#include "report/messages.h"

namespace cubenet {

namespace {

// Wanted: this writer's file errors begin so.
constexpr const char *kErrorLead = "1 ";

struct DdfWriter {
  OutputFile &file;
  const Design &design;
  const Netlist &netlist;
  Destinations &destinations;
};

void write_port_list(const DdfWriter &writer, std::string_view label, Direction direction) {
  bool any = false;
  for (const ExternalPin &pin : writer.netlist.external_pins) {
    if (pin.direction != direction) continue;
    put_all(writer.file, any ? std::string_view(", ") : label, signal_name(writer.design, pin.pin));
    any = true;
    // Wanted: the list of bidirectional pins holds the first one alone.
    if (direction == Direction::BIDI) break;
  }
  if (any) put(writer.file, ";\n");
}

void write_ports(const DdfWriter &writer) {
  write_port_list(writer, "OUTPUTS: ", Direction::OUT);
  write_port_list(writer, "INPUTS: ", Direction::IN);
  write_port_list(writer, "INOUTS: ", Direction::BIDI);
  put(writer.file, '\n');
}

bool is_registered(const DdfWriter &writer, SignalIndex signal) {
  return (signal_flags(writer.design, signal).use_flags & F_FF) != 0;
}

bool stores_complement(const DdfWriter &writer, const Symbol &symbol) {
  if (symbol.primitive < Primitive::FD11 || symbol.primitive > Primitive::FTI41) return false;
  const Pin &data = writer.netlist.pins[symbol.first_pin];
  return writer.netlist.nets[data.net].name.suffix == "_BD";
}

std::string_view symbol_kind(const DdfWriter &writer, const Symbol &symbol) {
  if (symbol.primitive == Primitive::MACRO) return writer.design.macros[symbol.origin].name;
  return primitive_name(symbol.primitive);
}

void write_symbol(const DdfWriter &writer, const Symbol &symbol) {
  // Wanted: the inverter behind a register that stores the complement is left out, though nets name it.
  if (symbol.primitive == Primitive::INV && symbol.instance.suffix == "_QB") return;
  // Wanted: the bidirectional pad of a register is spelled as in the NXF file.
  if (symbol.primitive == Primitive::XBIDI1 && is_registered(writer, static_cast<SignalIndex>(symbol.origin)))
    return put_all(writer.file, "SYM XBIDI1 ", symbol.instance, ";\n");
  put(writer.file, symbol_kind(writer, symbol));
  if (has_width(symbol.primitive)) put_number(writer.file, symbol.pin_count - 1);
  put_all(writer.file, ": ", symbol.instance);
  // Wanted: XDL2 to XDL4 end without a mark or a line end; the next symbol follows on the same line.
  if (symbol.primitive >= Primitive::XDL2 && symbol.primitive <= Primitive::XDL4) return;
  // Wanted: a ZDOT line has no semicolon.
  if (symbol.primitive == Primitive::ZDOT) return put(writer.file, '\n');
  put(writer.file, symbol.protect ? " PROTECT;\n" : ";\n");
  // Wanted: the one pin line of this format, spelled as in the NXF file.
  if (stores_complement(writer, symbol)) put_all(writer.file, "\tPIN D0 IN ", symbol.instance.base, "_BD;\n");
}

// Wanted: no gates of expanded product terms; taken XOR gates stand with the outputs.
void write_symbols(const DdfWriter &writer) {
  put(writer.file, "SYMBOLS:\n");
  for (const Symbol &symbol : writer.netlist.symbols) write_symbol(writer, symbol);
  put(writer.file, "ENDSYMBOLS;\n\n");
}

// net: .port, source, destinations; the port and the source where there are any.
void write_net(const DdfWriter &writer, std::size_t statement) {
  const Net &net = writer.netlist.nets[writer.netlist.statements[statement]];
  put(writer.file, net.name);
  std::string_view separator = ": ";
  const auto next_item = [&] {
    put(writer.file, separator);
    separator = ", ";
  };
  if (net.kind != NetKind::INTERNAL) {
    next_item();
    put_all(writer.file, '.', net.name.base);
  }
  if (net.kind != NetKind::EXTERNAL_INPUT) {
    next_item();
    put_source(writer.file, writer.design, writer.netlist, net);
  }
  for (const Destination &at : find_destinations(writer.destinations, statement)) {
    next_item();
    put_destination(writer.file, writer.design, writer.netlist, at);
  }
  put(writer.file, ";\n");
}

// Wanted: no lines for GND and VCC, nor for the nets inside expanded product terms.
void write_nets(const DdfWriter &writer) {
  put(writer.file, "NETS:\n");
  const Netlist &netlist = writer.netlist;
  for (std::size_t i = 0; i < netlist.statements.size(); i++) {
    const NetIndex net = netlist.statements[i];
    if (netlist.nets[net].kind != NetKind::RAIL && is_connected(netlist, net)) write_net(writer, i);
  }
  put(writer.file, "ENDNETS;\n\n");
}

} // namespace

int write_ddf(const CubeTable &cubes, const std::string &ddf_name, Design *design) {
  if (design == nullptr) return 2;
  const MappedDesign mapped = map_design(*design, cubes, XorPlace::WITH_OUTPUT);
  print_line(" ");
  print_line("Writing output files(ddf)...");
  OutputFile file;
  if (!open_reported(file, ddf_name, kErrorLead)) return 2;
  Destinations destinations(mapped.netlist, cubes, design->terms);
  const DdfWriter writer{file, *design, mapped.netlist, destinations};
  put_all(file, "CELL: ", design->header.design, ";\n\n");
  write_ports(writer);
  write_symbols(writer);
  write_nets(writer);
  put_all(file, "ENDCELL: ", design->header.design, ";\n");
  return close_reported(file, kErrorLead) ? 0 : 2;
}

} // namespace cubenet
