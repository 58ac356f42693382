// A text that is empty in almost every record that has one: it takes one word until it is set.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace cubenet {

struct RareText {
  std::unique_ptr<std::string> own; // none: empty

  RareText() = default;
  RareText(std::string_view text) : own(std::make_unique<std::string>(text)) {}
  RareText(const std::string &text) : RareText(std::string_view(text)) {}
  RareText(const char *text) : RareText(std::string_view(text)) {}
  RareText(RareText &&) = default;
  RareText &operator=(RareText &&) = default;
  RareText(const RareText &other) : own(other.own ? std::make_unique<std::string>(*other.own) : nullptr) {}
  RareText &operator=(const RareText &other) { return *this = RareText(other); }

  operator std::string_view() const { return own ? std::string_view(*own) : std::string_view(); }
  bool empty() const { return !own || own->empty(); }
};

// The text for writing, made when there is none yet.
inline std::string &writable(RareText &text) {
  if (!text.own) text.own = std::make_unique<std::string>();
  return *text.own;
}

} // namespace cubenet
