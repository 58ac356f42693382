// How names are rewritten before a netlist is written, as far as the rewritten name tells: one that looks like a
// generated name gets "_RES" in front, one that makes way for another "_PLA<n>_". Done for each netlist, on top of the
// one before.
#pragma once

#include <string_view>

namespace cubekit {

// What may come in front of such a name, or one that is made of it; empty: nothing.
std::string_view guard_of(std::string_view name);

// The name without a leading "_PLA<n>_"; empty when it has none.
std::string_view without_number(std::string_view name);

// Whether one such step may make `after` of `before`.
bool may_become(std::string_view before, std::string_view after);

} // namespace cubekit
