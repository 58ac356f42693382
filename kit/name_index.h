// Finds names by hash. The index holds views: the text they point into must outlive it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

namespace cubekit {

constexpr std::uint32_t kNone = ~0U;

struct NameIndex {
  struct Slot {
    std::uint32_t hash = 0;
    std::uint32_t value = kNone; // kNone: the slot is free
    std::string_view name;
  };
  std::vector<Slot> slots; // a power of two, at most half of them taken
  std::size_t size = 0;
};

inline std::uint64_t hash_name(std::string_view name) {
  std::uint64_t hash = name.size() * 0x9E3779B97F4A7C15U;
  const char *at = name.data();
  std::size_t left = name.size();
  for (; left >= 8; at += 8, left -= 8) {
    std::uint64_t word = 0;
    std::memcpy(&word, at, 8);
    hash = (hash ^ word) * 0xD6E8FEB86659FD93U;
    hash ^= hash >> 32;
  }
  std::uint64_t tail = 0;
  for (std::size_t i = 0; i < left; i++) tail = tail << 8 | static_cast<unsigned char>(at[i]);
  hash = (hash ^ tail) * 0xD6E8FEB86659FD93U;
  return hash ^ hash >> 29;
}

// The value stored under the name; kNone when there is none.
inline std::uint32_t find_name(const NameIndex &index, std::string_view name) {
  if (index.slots.empty()) return kNone;
  const auto hash = static_cast<std::uint32_t>(hash_name(name));
  const std::size_t mask = index.slots.size() - 1;
  for (std::size_t at = hash & mask;; at = (at + 1) & mask) {
    const NameIndex::Slot &slot = index.slots[at];
    if (slot.value == kNone || (slot.hash == hash && slot.name == name)) return slot.value;
  }
}

// Stores the value unless the name is there already. Returns the value that stands under the name afterwards.
std::uint32_t add_name(NameIndex &index, std::string_view name, std::uint32_t value);

} // namespace cubekit
