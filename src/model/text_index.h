// Positions of texts in a list, found by text in constant time; equal texts are chained in list order.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "model/design.h"

namespace cubenet {

constexpr std::int32_t kNoPosition = -1;

struct TextIndex {
  struct Slot {
    std::int32_t position = kNoPosition;
    std::uint32_t hash = 0; // the high half of the text's hash, so that other texts are rarely compared
  };
  std::vector<std::int32_t> first;     // per position: the first equal text; kNoPosition for an empty one
  std::vector<std::int32_t> next;      // per position: the next equal text
  std::vector<std::string_view> texts; // used by find_text only
  std::vector<Slot> slots;             // hash table of first positions
  bool case_sensitive = true;
};

// The index holds views: if a text changes afterwards, find_text is invalid, but `first` and `next` are not.
// Empty texts are skipped.
TextIndex index_texts(std::vector<std::string_view> texts, bool case_sensitive);

// The first position of the text, or kNoPosition.
std::int32_t find_text(const TextIndex &index, std::string_view text);

// All declared names: positions are signal indices, so a pin is found before a node of the same name.
TextIndex index_signals(const Design &design, bool case_sensitive);

} // namespace cubenet
