// A text that is built by appending. Its length is stored, so the cost of appending is proportional to the
// addition.
#pragma once

#include <cstddef>
#include <string_view>

namespace cubenet {

struct GrowingString {
  char *text = nullptr; // owned, always terminated
  std::size_t length = 0;
  std::size_t capacity = 0; // bytes allocated

  explicit GrowingString(std::size_t first_capacity); // at least 1
  GrowingString(const GrowingString &) = delete;
  GrowingString &operator=(const GrowingString &) = delete;
  ~GrowingString();
};

// If text, addition and terminator don't fit, the capacity becomes twice the joined length plus two.
void append(GrowingString &string, std::string_view addition);

inline std::string_view view(const GrowingString &string) { return {string.text, string.length}; }

} // namespace cubenet
