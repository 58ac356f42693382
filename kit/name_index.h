// Finds names by hash. A HashIndex holds no names: whoever looks up tells whether a value has the name. A NameIndex
// holds views: the text they point into must outlive it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

namespace cubekit {

constexpr std::uint32_t kNone = ~0U;

struct HashIndex {
  struct Slot {
    std::uint32_t hash = 0;
    std::uint32_t value = kNone; // kNone: the slot is free
  };
  std::vector<Slot> slots; // a power of two, at most half of them taken
  std::size_t size = 0;
};

struct NameIndex {
  struct Entry {
    std::string_view name;
    std::uint32_t value = kNone;
  };
  HashIndex places; // into entries
  std::vector<Entry> entries;
};

inline std::uint32_t hash_name(std::string_view name) {
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
  return static_cast<std::uint32_t>(hash ^ hash >> 29);
}

// Where the search for that hash ends: at the value that `is_it` accepts, or at the free slot in which it could stand.
template <typename Predicate>
std::size_t find_place(const HashIndex &index, std::uint32_t hash, const Predicate &is_it) {
  const std::size_t mask = index.slots.size() - 1;
  for (std::size_t at = hash & mask;; at = (at + 1) & mask) {
    const HashIndex::Slot &slot = index.slots[at];
    if (slot.value == kNone || (slot.hash == hash && is_it(slot.value))) return at;
  }
}

// The value of that hash that `is_it` accepts; kNone when there is none.
template <typename Predicate>
std::uint32_t find_value(const HashIndex &index, std::uint32_t hash, const Predicate &is_it) {
  return index.slots.empty() ? kNone : index.slots[find_place(index, hash, is_it)].value;
}

// Makes room for that many values.
void reserve(HashIndex &index, std::size_t values);

// Stores the value unless `is_it` accepts one that is there. Returns the value that stands there afterwards.
template <typename Predicate>
std::uint32_t add_value(HashIndex &index, std::uint32_t hash, std::uint32_t value, const Predicate &is_it) {
  if (index.size * 2 >= index.slots.size()) reserve(index, index.size * 2 + 32);
  HashIndex::Slot &slot = index.slots[find_place(index, hash, is_it)];
  if (slot.value != kNone) return slot.value;
  slot = {hash, value};
  index.size++;
  return value;
}

// The value stored under the name; kNone when there is none.
inline std::uint32_t find_name(const NameIndex &index, std::string_view name) {
  const std::uint32_t found =
      find_value(index.places, hash_name(name), [&](std::uint32_t entry) { return index.entries[entry].name == name; });
  return found == kNone ? kNone : index.entries[found].value;
}

// Stores the value unless the name is there already. Returns the value that stands under the name afterwards.
std::uint32_t add_name(NameIndex &index, std::string_view name, std::uint32_t value);

} // namespace cubekit
