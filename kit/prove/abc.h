// Puts the same claims to another prover, berkeley-abc, through BLIF files.
#pragma once

#include <string>
#include <vector>

#include "kit/prove/claims.h"
#include "kit/prove/formula.h"

namespace cubekit {

// True when abc finds both sides of all claims equivalent. Otherwise `error` has its verdict, or why it could
// not be run.
[[nodiscard]] bool ask_abc(const Formulas &formulas, const std::vector<Claim> &claims, std::string &error);

} // namespace cubekit
