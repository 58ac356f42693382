// Decides claims, and reports how each one that fails does so.
#pragma once

#include "kit/prove/claims.h"
#include "kit/prove/prove.h"

namespace cubekit {

// Fills the report. True when all claims that were not given up hold, and the netlist has no fault and only
// primitives of its device.
[[nodiscard]] bool settle_claims(const Claims &claims, Circuit &circuit, const ProofOptions &options,
                                 ProofReport &report);

} // namespace cubekit
