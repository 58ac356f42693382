// Designs in the form that Yosys writes.
#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <string_view>

#include "kit/import/import.h"

namespace cubekit {

// The module that the design is; nullptr when there is none.
const nlohmann::ordered_json *find_top(const nlohmann::ordered_json &design);

// A parameter, 0 when it isn't there.
std::uint64_t number_of(const nlohmann::ordered_json &parameters, const char *name);

// FILE:LINE, with more behind it. Line 0 when it is no such text.
Place parse_place(Draft &draft, std::string_view text);

// The place of a cell or net in the source.
Place source_place(Draft &draft, const nlohmann::ordered_json &item);

} // namespace cubekit
