// What has to be proved of a netlist: pairs of functions, one as the netlist computes it, one as the design means it.
#pragma once

#include <string>
#include <vector>

#include "kit/netlist/netlist.h"
#include "kit/prove/circuit.h"
#include "kit/prove/meaning.h"

namespace cubekit {

struct Claim {
  std::string what;        // "q0.D", "pin y", "q1: next value"
  Literal actual = kUnset; // of the netlist
  Literal wanted = kUnset; // of the design
  NetIndex net = kNone;    // where `actual` was taken, for showing the gates on the way; kNone: at no one net
  bool at_driver = false;  // the function is that of what drives the net
};

struct Claims {
  std::vector<Claim> list;
  std::vector<std::string> faults; // what the netlist lacks or has too much of
};

// Finds the design's signals in the netlist under the given names, gives their nets values in `circuit` and `values`,
// and lists what must hold: every equation, every storage element's next value, every pin, pad and macro input.
void collect_claims(const std::vector<std::string> &names, Values &values, Circuit &circuit, Claims &claims);

} // namespace cubekit
