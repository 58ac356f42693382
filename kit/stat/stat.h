// Sizes of a netlist.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "kit/netlist/netlist.h"

namespace CLI {
class App;
}

namespace cubekit {

// `cubekit stat`.
std::function<int()> setup_stat(CLI::App &command);

struct Statistics {
  std::map<std::string, std::size_t> symbols; // by primitive, gates by primitive and width, macros by name
  std::size_t symbol_count = 0;
  std::size_t inputs = 0, outputs = 0, bidirectionals = 0; // device pins
  std::size_t nets = 0;
  std::size_t fan_out_max = 0, fan_out_total = 0; // symbol pins that a net drives
  std::string fan_out_net;                        // the first net with the largest fan-out
  std::size_t terms = 0, literals = 0;            // rows of PLA blocks, and characters but '-' in them
  std::size_t gate_inputs = 0;                    // pins of AND, NAND, OR and NOR gates
  std::size_t storages = 0;                       // registers and latches
  std::size_t loops = 0;                          // nets at which loops of gates are cut
  std::size_t depth = 0; // most symbols on a path from one device pin, register, latch or macro to the next
};

Statistics collect_statistics(const Netlist &netlist);

struct StatisticsRow {
  std::string label, value;
};
// The text for people. Rows with an indented label are parts of the row above.
std::vector<StatisticsRow> describe(const Statistics &statistics);

} // namespace cubekit
