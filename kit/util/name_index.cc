// The growing half of the indexes.
#include "kit/util/name_index.h"

#include <bit>

namespace cubekit {

void reserve(HashIndex &index, std::size_t values) {
  const std::size_t wanted = std::bit_ceil(values + values / 3 + 1);
  if (wanted <= index.slots.size()) return;
  HashIndex larger{std::vector<HashIndex::Slot>(wanted), index.size};
  for (const HashIndex::Slot &slot : index.slots)
    if (slot.value != kNone) larger.slots[find_place(larger, slot.hash, [](std::uint32_t) { return false; })] = slot;
  index = std::move(larger);
}

std::uint32_t add_name(NameIndex &index, std::string_view name, std::uint32_t value) {
  const auto next = static_cast<std::uint32_t>(index.entries.size());
  const std::uint32_t entry = add_value(index.places, hash_name(name), next,
                                        [&](std::uint32_t other) { return index.entries[other].name == name; });
  if (entry == next) index.entries.push_back({name, value});
  return index.entries[entry].value;
}

} // namespace cubekit
