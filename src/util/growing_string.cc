// Growth of a text that is built by appending.
#include "util/growing_string.h"

#include <cstdlib>
#include <cstring>

#include "util/memory.h"

namespace cubenet {

GrowingString::GrowingString(std::size_t first_capacity)
    : text(static_cast<char *>(allocate(first_capacity))), capacity(first_capacity) {
  text[0] = '\0';
}

GrowingString::~GrowingString() { std::free(text); }

void append(GrowingString &string, std::string_view addition) {
  const std::size_t joined = string.length + addition.size();
  if (joined + 1 > string.capacity) {
    string.capacity = joined * 2 + 2;
    string.text = static_cast<char *>(reallocate(string.text, string.capacity));
  }
  if (!addition.empty()) std::memcpy(string.text + string.length, addition.data(), addition.size());
  string.length = joined;
  string.text[joined] = '\0';
}

} // namespace cubenet
