// Settles claims, and tells of each that fails how it fails.
#pragma once

#include "kit/prove/claims.h"
#include "kit/prove/prove.h"

namespace cubekit {

// Fills the report. True when all claims hold that were not given up, and the netlist has no fault and only primitives
// of its device.
[[nodiscard]] bool settle_claims(const Claims &claims, Circuit &circuit, const ProofOptions &options,
                                 ProofReport &report);

} // namespace cubekit
