// The growing half of the name index.
#include "kit/name_index.h"

namespace cubekit {

namespace {

NameIndex::Slot &find_slot(std::vector<NameIndex::Slot> &slots, std::uint32_t hash, std::string_view name) {
  const std::size_t mask = slots.size() - 1;
  std::size_t at = hash & mask;
  while (slots[at].value != kNone && (slots[at].hash != hash || slots[at].name != name)) at = (at + 1) & mask;
  return slots[at];
}

void grow(NameIndex &index) {
  std::vector<NameIndex::Slot> larger(index.slots.empty() ? 64 : index.slots.size() * 2);
  for (const NameIndex::Slot &slot : index.slots)
    if (slot.value != kNone) find_slot(larger, slot.hash, slot.name) = slot;
  index.slots = std::move(larger);
}

} // namespace

std::uint32_t add_name(NameIndex &index, std::string_view name, std::uint32_t value) {
  if (index.size * 2 >= index.slots.size()) grow(index);
  const auto hash = static_cast<std::uint32_t>(hash_name(name));
  NameIndex::Slot &slot = find_slot(index.slots, hash, name);
  if (slot.value != kNone) return slot.value;
  slot = {hash, value, name};
  index.size++;
  return value;
}

} // namespace cubekit
