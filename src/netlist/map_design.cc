// The preparation that the netlist writers share, and the spelling of pins that both formats have in common.
#include "netlist/map_design.h"

#include <algorithm>
#include <utility>

#include "model/run_settings.h"
#include "netlist/block_inputs.h"
#include "netlist/gate_planes.h"
#include "netlist/rename.h"
#include "report/messages.h"

namespace cubenet {

MappedDesign map_design(Design &design, const CubeTable &cubes, XorPlace xor_place) {
  list_terms(cubes, design);
  const std::vector<std::uint8_t> &read = design.fan_out.fans_out;
  const auto inputs = static_cast<std::size_t>(std::count(read.begin(), read.end(), 1));
  if (!run_settings.expand) count_block_inputs(cubes, inputs, design.terms);
  map_rename_signals(design, cubes);
  Connections connections = map_build_connections(cubes, design);
  report_refused_xors(design, connections);
  Netlist netlist = build_netlist(design, cubes, connections, run_settings.expand, xor_place);
  return {std::move(connections), std::move(netlist)};
}

bool is_connected(const Netlist &netlist, NetIndex net) {
  const Net &each = netlist.nets[net];
  const bool is_external = each.kind == NetKind::EXTERNAL_INPUT || each.kind == NetKind::EXTERNAL_OUTPUT;
  return is_external || each.source_symbol != kNone || each.source_output != kNone ||
         netlist.destination_starts[net] != netlist.destination_starts[net + 1] ||
         (netlist.has_blocks && netlist.first_columns[net] != kNone);
}

void put_pin_name(OutputFile &file, const Design &design, const Netlist &netlist, SymbolIndex symbol,
                  std::uint32_t pin) {
  const Pin &each = netlist.pins[pin];
  const Symbol &owner = netlist.symbols[symbol];
  if (each.kind == PinKind::A)
    put_all(file, 'A', Decimal{pin - owner.first_pin});
  else if (each.kind == PinKind::PORT_IN)
    put(file, design.macros[owner.origin].inputs[each.number]);
  else if (each.kind == PinKind::PORT_OUT)
    put(file, design.macros[owner.origin].outputs[each.number]);
  else
    put(file, kPinRows[static_cast<std::size_t>(each.kind)].name);
}

void put_pin_reference(OutputFile &file, const Design &design, const Netlist &netlist, SymbolIndex symbol,
                       std::uint32_t pin) {
  put(file, netlist.symbols[symbol].instance);
  put(file, '.');
  put_pin_name(file, design, netlist, symbol, pin);
}

void put_destination(OutputFile &file, const Design &design, const Netlist &netlist, const Destination &at) {
  const Symbol &symbol = netlist.symbols[at.symbol];
  if (!is_block(symbol.primitive)) return put_pin_reference(file, design, netlist, at.symbol, at.pin);
  put(file, symbol.instance);
  put_all(file, ".A", Decimal{at.pin});
}

void put_source(OutputFile &file, const Design &design, const Netlist &netlist, const Net &net) {
  if (net.source_symbol != kNone) return put_pin_reference(file, design, netlist, net.source_symbol, net.source_pin);
  const OutputGate &gate = netlist.outputs[net.source_output];
  put(file, gate.instance);
  put(file, gate.active_low ? ".ZN0" : ".Z0");
}

bool open_reported(OutputFile &file, const std::string &path, const char *lead) {
  if (open_output(file, path)) return true;
  report_error(31103, "%sUnable to open file '%s' for writing", lead, path.c_str());
  return false;
}

bool close_reported(OutputFile &file, const char *lead) {
  const std::string path = file.path;
  if (close_output(file)) return true;
  report_error(31103, "%sUnable to write file '%s'", lead, path.c_str());
  return false;
}

} // namespace cubenet
