// Finds names. An index holds views: the text they point into must outlive it.
#pragma once

#include <cstdint>
#include <string_view>

#include "util/text_hash.h"

namespace cubekit {

constexpr std::uint32_t kNone = ~0U;

using NameIndex = cubenet::TextMap<std::string_view, std::uint32_t>;

// The value stored under the name; kNone when there is none.
inline std::uint32_t find_name(const NameIndex &index, std::string_view name) {
  const auto found = index.find(name);
  return found == index.end() ? kNone : found->second;
}

// Stores the value unless the name is there already. Returns the value that stands under the name afterwards.
inline std::uint32_t add_name(NameIndex &index, std::string_view name, std::uint32_t value) {
  return index.try_emplace(name, value).first->second;
}

} // namespace cubekit
