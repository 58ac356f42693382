// An open-addressing table over a list of texts, built once; no text is copied.
#include "model/text_index.h"

#include <bit>
#include <utility>

#include "model/names.h"
#include "util/text_hash.h"

namespace cubenet {

namespace {

std::uint64_t hash_name(const TextIndex &index, std::string_view text) {
  return index.case_sensitive ? hash_text(text) : hash_text_ignoring_case(text);
}
std::uint32_t high_half(std::uint64_t hash) { return static_cast<std::uint32_t>(hash >> 32); }

// The slot of the text with that hash, or the free slot where it belongs.
std::size_t find_slot(const TextIndex &index, std::string_view text, std::uint64_t hash) {
  const std::size_t mask = index.slots.size() - 1;
  const auto is_other = [&](const TextIndex::Slot &slot) {
    return slot.hash != high_half(hash) ||
           !equal_names(index.texts[static_cast<std::size_t>(slot.position)], text, index.case_sensitive);
  };
  std::size_t at = static_cast<std::size_t>(hash) & mask;
  while (index.slots[at].position != kNoPosition && is_other(index.slots[at])) at = (at + 1) & mask;
  return at;
}

} // namespace

TextIndex index_texts(std::vector<std::string_view> texts, bool case_sensitive) {
  TextIndex index;
  const std::size_t count = texts.size();
  index.texts = std::move(texts);
  index.case_sensitive = case_sensitive;
  index.first.assign(count, kNoPosition);
  index.next.assign(count, kNoPosition);
  index.slots.assign(std::bit_ceil(2 * count + 1), {});
  for (std::size_t i = count; i-- > 0;) {
    if (index.texts[i].empty()) continue;
    const std::uint64_t hash = hash_name(index, index.texts[i]);
    TextIndex::Slot &slot = index.slots[find_slot(index, index.texts[i], hash)];
    slot.hash = high_half(hash);
    index.next[i] = std::exchange(slot.position, static_cast<std::int32_t>(i));
    index.first[i] = slot.position;
  }
  for (std::size_t i = 0; i < count; i++)
    if (index.next[i] != kNoPosition) index.first[static_cast<std::size_t>(index.next[i])] = index.first[i];
  return index;
}

std::int32_t find_text(const TextIndex &index, std::string_view text) {
  return text.empty() ? kNoPosition : index.slots[find_slot(index, text, hash_name(index, text))].position;
}

TextIndex index_signals(const Design &design, bool case_sensitive) {
  std::vector<std::string_view> names(design.pin_names.begin(), design.pin_names.end());
  names.insert(names.end(), design.node_names.begin(), design.node_names.end());
  return index_texts(std::move(names), case_sensitive);
}

} // namespace cubenet
