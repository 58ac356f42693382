#include "netlist/map_design.h"

#include <algorithm>
#include <utility>

#include "model/run_settings.h"
#include "netlist/block_inputs.h"
#include "netlist/gate_planes.h"
#include "netlist/rename.h"

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

} // namespace cubenet
