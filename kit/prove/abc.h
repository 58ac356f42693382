// The same claims put to another prover, berkeley-abc, through BLIF files.
#pragma once

#include <string>
#include <vector>

#include "kit/prove/claims.h"
#include "kit/prove/formula.h"

namespace cubekit {

// True when abc finds both sides of all claims equivalent. Else `error` holds its verdict, or why it could not be
// asked.
[[nodiscard]] bool ask_abc(const Formulas &formulas, const std::vector<Claim> &claims, std::string &error);

} // namespace cubekit
