// Escapes byte by byte, except whole UTF-8 sequences.
#include "kit/draw/html.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace cubekit {

namespace {

struct Range {
  std::uint32_t first, last;
};
// Code points beyond ASCII that are invisible or change how others are shown.
constexpr auto kHidden = std::to_array<Range>({
    {0x80, 0x9F},     // controls
    {0xAD, 0xAD},     // soft hyphen
    {0x61C, 0x61C},   // writing direction
    {0x115F, 0x1160}, // fillers
    {0x180B, 0x180F},
    {0x200B, 0x200F}, // no width, writing direction
    {0x2028, 0x202E}, // line ends, writing direction
    {0x2060, 0x206F},
    {0x3164, 0x3164},
    {0xD800, 0xDFFF}, // no characters
    {0xE000, 0xF8FF}, // private
    {0xFDD0, 0xFDEF},
    {0xFE00, 0xFE0F}, // variants
    {0xFEFF, 0xFEFF},
    {0xFFA0, 0xFFA0},
    {0xFFF0, 0xFFFB},
    {0xE0000, 0x1FFFFF}, // tags, private, none
});

bool is_shown(std::uint32_t code) {
  return (code & 0xFFFEU) != 0xFFFE &&
         std::ranges::none_of(kHidden, [code](Range range) { return code >= range.first && code <= range.last; });
}

// The length of the UTF-8 sequence at the front if it is shown as it is; 0 otherwise.
std::size_t shown_sequence(std::string_view text) {
  const auto byte = [&](std::size_t at) { return static_cast<std::uint32_t>(static_cast<unsigned char>(text[at])); };
  constexpr std::array<std::uint32_t, 5> kLeast{0, 0, 0x80, 0x800, 0x10000};
  const std::uint32_t lead = byte(0);
  const std::size_t length = lead >= 0xF8 ? 0 : lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 0;
  if (length == 0 || text.size() < length) return 0;
  std::uint32_t code = lead & (0xFFU >> (length + 1));
  for (std::size_t i = 1; i < length; i++) {
    if ((byte(i) & 0xC0U) != 0x80) return 0;
    code = code << 6 | (byte(i) & 0x3FU);
  }
  return code >= kLeast[length] && is_shown(code) ? length : 0;
}

std::string_view entity(char c) {
  switch (c) {
  case '&': return "&amp;";
  case '<': return "&lt;";
  case '>': return "&gt;";
  case '"': return "&quot;";
  case '\'': return "&#39;";
  default: return {};
  }
}

} // namespace

std::string escape_html(std::string_view text) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string escaped;
  escaped.reserve(text.size());
  while (!text.empty()) {
    const char c = text.front();
    std::size_t length = 1;
    if (const std::string_view mark = entity(c); !mark.empty()) {
      escaped += mark;
    } else if (c >= ' ' && c < 0x7F) {
      escaped += c;
    } else if (const std::size_t sequence = shown_sequence(text); sequence != 0) {
      escaped += text.substr(0, length = sequence);
    } else {
      const auto byte = static_cast<unsigned char>(c);
      escaped += {'\\', 'x', kDigits[byte >> 4], kDigits[byte & 0xFU]};
    }
    text.remove_prefix(length);
  }
  return escaped;
}

std::string count_text(std::size_t count, std::string_view noun) {
  std::string text = std::to_string(count);
  for (std::size_t at = text.size(); at > 3;) text.insert(at -= 3, ",");
  return text.append(" ").append(noun).append(count == 1 ? "" : "s");
}

} // namespace cubekit
