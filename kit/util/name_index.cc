#include "kit/util/name_index.h"

#include <bit>
#include <utility>

namespace cubekit {

void reserve_names(NameIndex &index, std::size_t names) {
  const std::size_t size = std::bit_ceil(2 * names + 2);
  if (size <= index.slots.size()) return;
  const std::vector<NameIndex::Slot> former = std::exchange(index.slots, std::vector<NameIndex::Slot>(size));
  for (const NameIndex::Slot &slot : former)
    if (slot.value != kNone) index.slots[find_slot(index, slot.name, slot.hash)] = slot;
}

std::uint32_t add_name(NameIndex &index, std::string_view name, std::uint32_t value) {
  reserve_names(index, index.size + 1);
  const auto hash = static_cast<std::uint32_t>(cubenet::hash_text(name));
  NameIndex::Slot &slot = index.slots[find_slot(index, name, hash)];
  if (slot.value != kNone) return slot.value;
  slot = {name, hash, value};
  index.size++;
  return value;
}

} // namespace cubekit
