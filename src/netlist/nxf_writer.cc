// The NXF netlist: header, device, and one logical section with the external pins, the nets and the symbols. Before it
// stands the parameter file. Everything printed is in the mapped design; here is only the format.
#include <optional>
#include <vector>

#include "model/run_settings.h"
#include "netlist/destinations.h"
#include "netlist/gate_planes.h"
#include "netlist/map_design.h"
#include "netlist/pin_text.h"
#include "netlist/pla_rows.h"
#include "netlist/reported_output.h"
#include "netlist/writers.h"
#include "report/messages.h"

namespace cubenet {

namespace {

struct NxfWriter {
  OutputFile &file;
  const Design &design;
  const CubeTable &cubes;
  const Connections &connections;
  const Netlist &netlist;
  const GatePlanes *planes; // nullptr: the product terms stay in PLA blocks
  Destinations &destinations;
  BlockInputs &inputs;
};

// The response file is the host flow's; the parameter file only names it.
bool write_parameters(const Design &design, const std::string &par_name, const std::string &rsp_name) {
  bool needed = design.reserve_pins;
  for (const std::string &line : design.par) needed = needed || !line.empty();
  if (!needed) return true;
  OutputFile file;
  if (!open_reported(file, par_name, "")) return false;
  for (const std::string &line : design.par)
    if (!line.empty()) put_all(file, line, "\n");
  if (design.reserve_pins) put_all(file, "RESERVE_PIN_FILE ", rsp_name, "\n");
  put(file, "END\n");
  return close_reported(file, "");
}

void write_header(OutputFile &file, const DesignHeader &header) {
  put(file, "NXF 11.0.5 L;\n\nSECTION HEADER;\n");
  if (header.design.empty())
    put(file, "\tDESIGN design_name 1.0.0;\n");
  else
    put_all(file, "\tDESIGN ", header.design, " 1.0.0;\n");
  put_all(file, "\tDESCRIPTION ", header.desc.empty() ? " " : header.desc, ";\nEND;\n\n");
  put_all(file, "SECTION DEVICE;\n\tTECHNOLOGY ", header.family, ";\n\tPART ", header.part, ";\nEND;\n\n");
}

constexpr std::string_view direction_text(Direction direction) {
  return direction == Direction::IN ? " IN " : direction == Direction::OUT ? " OUT " : " BIDI ";
}

void write_external_pins(const NxfWriter &writer) {
  for (const ExternalPin &pin : writer.netlist.external_pins) {
    put_all(writer.file, "XPIN ", signal_name(writer.design, pin.pin), direction_text(pin.direction),
            writer.netlist.nets[pin.net].name, ";\n");
  }
  put(writer.file, '\n');
}

// " DST gate.pin gate.pin ...", or nothing when no symbol reads the net.
void put_destinations(const NxfWriter &writer, std::size_t statement) {
  const NetIndex net = writer.netlist.statements[statement];
  const std::span<const Destination> destinations = find_destinations(writer.destinations, statement);
  const bool in_planes = writer.planes != nullptr && has_plane_destinations(*writer.planes, net);
  if (destinations.empty() && !in_planes) return;
  put(writer.file, " DST");
  if (in_planes) put_plane_destinations(writer.file, *writer.planes, net);
  for (const Destination &at : destinations) {
    put(writer.file, ' ');
    put_destination(writer.file, writer.design, writer.netlist, at);
  }
}

// "NET n EXT DST ...;" has no empty line behind it; every other statement has.
void write_net(const NxfWriter &writer, std::size_t statement) {
  const Net &net = writer.netlist.nets[writer.netlist.statements[statement]];
  put_all(writer.file, "NET ", net.name);
  if (net.kind == NetKind::EXTERNAL_INPUT || net.kind == NetKind::EXTERNAL_OUTPUT) put(writer.file, " EXT");
  if (net.kind == NetKind::INTERNAL || net.kind == NetKind::EXTERNAL_OUTPUT) {
    put(writer.file, " SRC ");
    put_source(writer.file, writer.design, writer.netlist, net);
  }
  put_destinations(writer, statement);
  put(writer.file, net.kind == NetKind::EXTERNAL_INPUT ? ";\n" : ";\n\n");
}

void write_nets(const NxfWriter &writer) {
  for (std::size_t i = 0; i < writer.netlist.statements.size(); i++)
    if (is_connected(writer.netlist, writer.netlist.statements[i])) write_net(writer, i);
}

void write_block_inputs(const NxfWriter &writer, const Symbol &symbol) {
  find_block_inputs(writer.inputs, symbol.origin);
  for_each_block_input(writer.inputs, [&](std::uint32_t column, std::uint32_t number) {
    const Name &net = writer.netlist.nets[writer.netlist.column_nets[column]].name;
    put_all(writer.file, "\tPIN A", Decimal{number}, " IN ", net, ";\n");
  });
}

void write_pla_body(const NxfWriter &writer, const Symbol &symbol) {
  std::vector<std::uint32_t> columns;
  for_each_block_input(writer.inputs, [&](std::uint32_t column, std::uint32_t) { columns.push_back(column); });
  put(writer.file, "\tBEGIN_PLA\n");
  put_pla_rows(writer.file, writer.cubes, first_term(writer.connections, symbol.origin),
               term_count(writer.connections, symbol.origin), columns);
  put(writer.file, "\tEND_PLA\n");
}

void put_symbol_kind(const NxfWriter &writer, const Symbol &symbol) {
  if (symbol.primitive == Primitive::MACRO) return put(writer.file, writer.design.macros[symbol.origin].name);
  put(writer.file, primitive_name(symbol.primitive));
  if (has_width(symbol.primitive)) put_number(writer.file, symbol.pin_count - 1);
}

void write_symbol(const NxfWriter &writer, SymbolIndex index) {
  const Symbol &symbol = writer.netlist.symbols[index];
  put(writer.file, "SYM ");
  put_symbol_kind(writer, symbol);
  put_all(writer.file, ' ', symbol.instance);
  put(writer.file, symbol.primitive == Primitive::MACRO ? " HARD;\n" : symbol.protect ? " PROTECT;\n" : ";\n");
  if (is_block(symbol.primitive)) write_block_inputs(writer, symbol);
  for (std::uint32_t p = symbol.first_pin; p < symbol.first_pin + symbol.pin_count; p++) {
    const Pin &pin = writer.netlist.pins[p];
    put(writer.file, "\tPIN ");
    put_pin_name(writer.file, writer.design, writer.netlist, index, p);
    put_all(writer.file, direction_text(pin_direction(pin.kind)), writer.netlist.nets[pin.net].name, ";\n");
  }
  if (symbol.primitive == Primitive::PLA) write_pla_body(writer, symbol);
  put(writer.file, "END;\n\n");
}

void write_logical(const NxfWriter &writer) {
  put(writer.file, "SECTION LOGICAL;\n");
  write_external_pins(writer);
  write_nets(writer);
  if (writer.planes != nullptr) {
    write_plane_nets(writer.file, *writer.planes);
    write_plane_symbols(writer.file, *writer.planes);
  }
  for (SymbolIndex s = 0; s < writer.netlist.symbols.size(); s++) write_symbol(writer, s);
  put(writer.file, "END;\n\nEND;\n\n");
}

} // namespace

int write_nxf(const CubeTable &cubes, const std::string &nxf_name, const std::string &par_name,
              const std::string &rsp_name, Design *design) {
  if (design == nullptr) return 2;
  const MappedDesign mapped = map_design(*design, cubes, XorPlace::WITH_SIGNAL);
  print_line(" ");
  print_line("Writing output files(nxf)...");
  if (!write_parameters(*design, par_name, rsp_name)) return 2;
  OutputFile file;
  if (!open_reported(file, nxf_name, "")) return 2;
  write_header(file, design->header);
  std::optional<GatePlanes> planes;
  if (run_settings.expand) planes.emplace(make_gate_planes(*design, cubes, mapped.connections, mapped.netlist));
  Destinations destinations(mapped.netlist, cubes, design->terms);
  BlockInputs inputs(cubes, design->terms);
  write_logical(
      {file, *design, cubes, mapped.connections, mapped.netlist, planes ? &*planes : nullptr, destinations, inputs});
  return close_reported(file, "") ? 0 : 2;
}

} // namespace cubenet
