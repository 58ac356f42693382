// From a truth table and a netlist to the claims between them.
#include "kit/prove/prove.h"

#include "kit/prove/claims.h"
#include "kit/prove/rename.h"
#include "kit/prove/settle.h"
#include "kit/util/progress.h"

namespace cubekit {

bool prove_netlist(const cubenet::Design &design, const cubenet::CubeTable &cubes, const Netlist &netlist,
                   const ProofOptions &options, ProofReport &report) {
  report = {};
  Meaning meaning;
  std::string error;
  if (!make_meaning(design, cubes, meaning, error)) {
    report.texts.push_back(error + '\n');
    return false;
  }
  Values values;
  Circuit circuit = make_circuit(netlist, meaning, values.formulas);
  Claims claims;
  during("making the equations",
         [&] { collect_claims(netlist_names(meaning, netlist, options.case_sensitive), values, circuit, claims); });
  return settle_claims(claims, circuit, options, report);
}

} // namespace cubekit
