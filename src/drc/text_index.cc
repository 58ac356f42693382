// An open-addressing table over a list of texts, built once; no text is copied.
#include "drc/text_index.h"

#include <bit>
#include <utility>

#include "model/names.h"
#include "util/text_hash.h"

namespace cubenet {

namespace {

// Where the text stands, or the free slot where it belongs.
std::size_t find_slot(const TextIndex &index, std::string_view text) {
  const std::size_t mask = index.slots.size() - 1;
  std::size_t at = (index.case_sensitive ? hash_text(text) : hash_text_ignoring_case(text)) & mask;
  while (index.slots[at] != kNoPosition &&
         !equal_names(index.texts[static_cast<std::size_t>(index.slots[at])], text, index.case_sensitive))
    at = (at + 1) & mask;
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
  index.slots.assign(std::bit_ceil(2 * count + 1), kNoPosition);
  for (std::size_t i = count; i-- > 0;) {
    if (index.texts[i].empty()) continue;
    std::int32_t &slot = index.slots[find_slot(index, index.texts[i])];
    index.next[i] = std::exchange(slot, static_cast<std::int32_t>(i));
    index.first[i] = slot;
  }
  for (std::size_t i = 0; i < count; i++)
    if (index.next[i] != kNoPosition) index.first[static_cast<std::size_t>(index.next[i])] = index.first[i];
  return index;
}

std::int32_t find_text(const TextIndex &index, std::string_view text) {
  return text.empty() ? kNoPosition : index.slots[find_slot(index, text)];
}

TextIndex index_signals(const Design &design, bool case_sensitive) {
  std::vector<std::string_view> names(design.pin_names.begin(), design.pin_names.end());
  names.insert(names.end(), design.node_names.begin(), design.node_names.end());
  return index_texts(std::move(names), case_sensitive);
}

} // namespace cubenet
