// Finds names by hash. A HashIndex holds no names: whoever looks up tells whether a value has the name. A NameIndex
// holds views: the text they point into must outlive it.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "util/text_hash.h"

namespace cubekit {

constexpr std::uint32_t kNone = ~0U;

struct HashIndex {
  struct Slot {
    std::uint32_t hash = 0;
    std::uint32_t value = kNone; // kNone: the slot is free
  };
  std::vector<Slot> slots; // a power of two, at most three quarters of them taken
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

// The part of a name's hash that is stored.
inline std::uint32_t hash_name(std::string_view name) { return static_cast<std::uint32_t>(cubenet::hash_text(name)); }

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

inline void prefetch_slot(const HashIndex &index, std::uint32_t hash) {
  __builtin_prefetch(&index.slots[hash & (index.slots.size() - 1)]);
}

// Makes room for that many values.
void reserve(HashIndex &index, std::size_t values);

// Stores the value unless `is_it` accepts one that is there. Returns the value that stands there afterwards.
template <typename Predicate>
std::uint32_t add_value(HashIndex &index, std::uint32_t hash, std::uint32_t value, const Predicate &is_it) {
  if ((index.size + 1) * 4 > index.slots.size() * 3) reserve(index, index.size * 2 + 32);
  HashIndex::Slot &slot = index.slots[find_place(index, hash, is_it)];
  if (slot.value != kNone) return slot.value;
  slot = {hash, value};
  index.size++;
  return value;
}

struct KeepNoHash {
  void operator()(std::uint32_t) const {}
};

// Stores value_at(0) to value_at(count - 1) under their names, except those whose name another has already;
// `tell_again` gets such a value, and `keep_hash` the hashes in turn. Places are asked of the memory many at a time:
// waiting for each would take longest.
template <typename ValueAt, typename NameOf, typename TellAgain, typename KeepHash = KeepNoHash>
void add_all(HashIndex &index, std::size_t count, const ValueAt &value_at, const NameOf &name_of,
             const TellAgain &tell_again, const KeepHash &keep_hash = {}) {
  std::array<std::uint32_t, 64> hashes;
  reserve(index, index.size + count);
  for (std::size_t first = 0; first < count; first += hashes.size()) {
    const std::size_t some = std::min(count - first, hashes.size());
    for (std::size_t i = 0; i < some; i++) {
      hashes[i] = hash_name(name_of(value_at(first + i)));
      prefetch_slot(index, hashes[i]);
      keep_hash(hashes[i]);
    }
    for (std::size_t i = 0; i < some; i++) {
      const std::uint32_t value = value_at(first + i);
      const auto has_same_name = [&](std::uint32_t other) { return name_of(other) == name_of(value); };
      if (add_value(index, hashes[i], value, has_same_name) != value) tell_again(value);
    }
  }
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
