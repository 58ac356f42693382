// Finds names. An index holds views: the text they point into must outlive it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "util/text_hash.h"

namespace cubekit {

constexpr std::uint32_t kNone = ~0U;

// One flat table: with a node-based map `cubekit check` of gates takes half as long again.
struct NameIndex {
  struct Slot {
    std::string_view name;
    std::uint32_t hash = 0;
    std::uint32_t value = kNone; // kNone: the slot is free
  };
  std::vector<Slot> slots; // a power of two, at most half of them taken
  std::size_t size = 0;
};

// Where the search for the name ends: at its slot, or at the free slot where it would go. There must be
// slots.
inline std::size_t find_slot(const NameIndex &index, std::string_view name, std::uint32_t hash) {
  const std::size_t mask = index.slots.size() - 1;
  std::size_t at = hash & mask;
  for (; index.slots[at].value != kNone; at = (at + 1) & mask)
    if (index.slots[at].hash == hash && index.slots[at].name == name) break;
  return at;
}

// The value stored under the name; kNone when there is none.
inline std::uint32_t find_name(const NameIndex &index, std::string_view name) {
  if (index.slots.empty()) return kNone;
  return index.slots[find_slot(index, name, static_cast<std::uint32_t>(cubenet::hash_text(name)))].value;
}

// Makes room for that many names.
void reserve_names(NameIndex &index, std::size_t names);

// Stores the value, other than kNone, unless the name is there already. Returns the value that the name then
// has.
std::uint32_t add_name(NameIndex &index, std::string_view name, std::uint32_t value);

} // namespace cubekit
