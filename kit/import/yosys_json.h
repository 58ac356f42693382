// Designs in the form that Yosys writes.
#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>

#include "kit/import/import.h"

namespace cubekit {

// The module that holds the design; nullptr when there is none.
const nlohmann::ordered_json *find_top(const nlohmann::ordered_json &design);

// The name of a bit of a port or net.
std::string bit_name(const std::string &name, const nlohmann::ordered_json &vector, std::size_t bit);

// A parameter, 0 when it is missing.
std::uint64_t number_of(const nlohmann::ordered_json &parameters, const char *name);

// FILE:LINE, with more after it. Line 0 when the text has another form.
Place parse_place(Draft &draft, std::string_view text);

// The place of a cell or net in the source.
Place source_place(Draft &draft, const nlohmann::ordered_json &item);

// Checks the design as Yosys has it halfway, and all that Yosys printed. False with the reason in `fault`:
// - a line has a 'z' that didn't become a tristate buffer of a port or named net; Yosys takes it
//   for a don't-care
[[nodiscard]] bool check_buffers(const nlohmann::ordered_json &module, const std::string &said, Draft &draft,
                                 Remark &fault);
// - a signal is driven twice, or never; `loop` becomes a place where logic may form a loop
[[nodiscard]] bool check_drivers(const nlohmann::ordered_json &module, const std::string &said, Draft &draft,
                                 Remark &fault, Place &loop);
// - a memory is too large for a table, where it becomes registers
[[nodiscard]] bool check_memories(const nlohmann::ordered_json &module, Draft &draft, Remark &fault);

} // namespace cubekit
