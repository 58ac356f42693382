// Designs in the form that Yosys writes.
#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>

#include "kit/import/import.h"

namespace cubekit {

// The module that the design is; nullptr when there is none.
const nlohmann::ordered_json *find_top(const nlohmann::ordered_json &design);

// The name of a bit of a port or net.
std::string bit_name(const std::string &name, const nlohmann::ordered_json &vector, std::size_t bit);

// A parameter, 0 when it isn't there.
std::uint64_t number_of(const nlohmann::ordered_json &parameters, const char *name);

// FILE:LINE, with more behind it. Line 0 when it is no such text.
Place parse_place(Draft &draft, std::string_view text);

// The place of a cell or net in the source.
Place source_place(Draft &draft, const nlohmann::ordered_json &item);

// What Yosys made of a design halfway, and all that it said. False with the reason in `fault`:
// - a line has a 'z' that became no tristate buffer of a port or a net with a name; Yosys takes it for a value of no
//   interest
[[nodiscard]] bool check_buffers(const nlohmann::ordered_json &module, const std::string &said, Draft &draft,
                                 Remark &fault);
// - a signal is driven twice, or never; `loop` becomes where logic may run in a loop
[[nodiscard]] bool check_drivers(const nlohmann::ordered_json &module, const std::string &said, Draft &draft,
                                 Remark &fault, Place &loop);
// - a memory is too large for a table, which makes registers of it
[[nodiscard]] bool check_memories(const nlohmann::ordered_json &module, Draft &draft, Remark &fault);

} // namespace cubekit
