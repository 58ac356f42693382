// A netlist for the commands that use it: read, and judged first.
#include <ostream>

#include "kit/check/check.h"
#include "kit/netlist/nxf_parser.h"
#include "kit/util/progress.h"

namespace cubekit {

bool load_design(const std::string &design, Netlist &netlist, std::ostream &errors) {
  const std::string path = design + ".nxf";
  if (!read_nxf(path, netlist, errors)) return false;
  const std::vector<Finding> findings = during("checking the netlist", [&] { return check_netlist(netlist); });
  for (const Finding &finding : findings) print_finding(errors, path, finding);
  return findings.empty();
}

} // namespace cubekit
