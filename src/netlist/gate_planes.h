// Product terms as gates: an AND gate per term, an OR gate per output, trees of both where a gate would be too wide,
// and one inverter per input that some term needs complemented. The planes are never held as symbols: names, pins and
// nets follow from the terms, and are printed straight from them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "model/cube_table.h"
#include "model/design.h"
#include "netlist/connections.h"
#include "netlist/netlist.h"
#include "util/output_file.h"

namespace cubenet {

// First parts of all generated names of the planes.
struct PlanePrefixes {
  std::string or_gates, and_gates, inverters;
};

// The default prefixes, but for those that a pin or node name begins with (in any case); and others where a name of the
// planes would meet one of the netlist.
PlanePrefixes map_choose_prefixes(const Design &design, const Netlist &netlist);

// Where the literals of every input are: one list per input and polarity, entries (term, place of the literal in the
// term) packed into one number, terms ascending. 32 bits serve every table below some gigabytes.
struct LiteralLists {
  std::vector<std::size_t> starts; // 2 * input + (1 for complemented), and one more
  std::vector<std::uint32_t> narrow;
  std::vector<std::uint64_t> wide; // used instead of narrow when a term and a place need more than 32 bits
  int place_bits = 0;
};

// What becomes of a term.
struct TermGate {
  std::uint32_t literals = 0;   // 0: it drives no output that is a sum of products, and no gate is made
  std::uint32_t output = kNone; // the output whose gate it is: its only term, and one that drives nothing else
};

struct GatePlanes {
  const CubeTable &cubes;
  const Connections &connections;
  const Netlist &netlist;
  PlanePrefixes prefixes;
  std::uint32_t and_width, or_width;
  std::vector<TermGate> gates{}; // per term
  LiteralLists literals{};
  std::vector<std::string> column_texts{}; // per input: the name of its net
};

GatePlanes make_gate_planes(const Design &design, const CubeTable &cubes, const Connections &connections,
                            const Netlist &netlist);

bool has_plane_destinations(const GatePlanes &planes, NetIndex net);
// Each as " gate.pin", in the order in which the gates are printed.
void put_plane_destinations(OutputFile &file, const GatePlanes &planes, NetIndex net);

void write_plane_nets(OutputFile &file, const GatePlanes &planes);
void write_plane_symbols(OutputFile &file, const GatePlanes &planes);

} // namespace cubenet
