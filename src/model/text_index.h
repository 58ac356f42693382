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
    std::uint32_t hash = 0; // the high half of the text's hash: other texts are seldom looked at
  };
  std::vector<std::int32_t> first; // per position: the first position of an equal text; kNoPosition for an empty text
  std::vector<std::int32_t> next;  // per position: the next position of an equal text
  std::vector<std::string_view> texts; // looked at by find_text only
  std::vector<Slot> slots;             // hash table of first positions
  bool case_sensitive = true;
};

// The index holds views: a text that changes afterwards makes find_text useless, but not `first` and `next`. Empty
// texts are left out.
TextIndex index_texts(std::vector<std::string_view> texts, bool case_sensitive);

// The first position of the text, or kNoPosition.
std::int32_t find_text(const TextIndex &index, std::string_view text);

// All declared names: positions are signal indices, so that a pin is found before a node of the same name.
TextIndex index_signals(const Design &design, bool case_sensitive);

} // namespace cubenet
