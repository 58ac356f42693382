// Proves a netlist against the truth table that it was made of.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "kit/netlist/netlist.h"
#include "model/cube_table.h"
#include "model/design.h"

namespace CLI {
class App;
}

namespace cubekit {

// `cubekit prove`.
std::function<int()> setup_prove(CLI::App &command);

struct ProofOptions {
  bool case_sensitive = false;                // as the translation had it
  std::optional<int> series{};                // device series; none: of the netlist's part
  bool abc = false;                           // ask berkeley-abc as well
  std::string_view other = "the truth table"; // what the netlist is compared with, in texts
  int conflicts = -1;                         // of SAT, before a claim is left to another prover; -1: never
  std::size_t shown_differences = 5;          // all are counted, this many are shown in full
};

struct ProofReport {
  std::size_t claims = 0;
  std::size_t by_structure = 0, by_exhaustion = 0, by_sat = 0;
  std::size_t given_up = 0; // left to another prover
  std::size_t differences = 0;
  std::vector<std::string> texts; // faults and differences, several lines each
};

// True when everything holds. The netlist must be free of faults (load_nxf).
[[nodiscard]] bool prove_netlist(const cubenet::Design &design, const cubenet::CubeTable &cubes, const Netlist &netlist,
                                 const ProofOptions &options, ProofReport &report);

} // namespace cubekit
