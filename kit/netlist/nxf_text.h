// Where a reader of an .nxf file stands, and the small steps by which it goes on. A step that fails tells why.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

#include "kit/netlist/primitives.h"
#include "kit/util/finding.h"
#include "kit/util/words.h"

namespace cubekit {

struct NxfText {
  const char *at;
  const char *end;
  Finding &error;
  std::uint32_t line = 1;
};

inline bool fail(NxfText &text, std::string why) {
  text.error = {text.line, std::move(why)};
  return false;
}

[[gnu::always_inline]] inline bool starts_with(const NxfText &text, std::string_view sought) {
  return static_cast<std::size_t>(text.end - text.at) >= sought.size() &&
         std::memcmp(text.at, sought.data(), sought.size()) == 0;
}

[[gnu::always_inline]] inline bool skip(NxfText &text, std::string_view sought) {
  if (!starts_with(text, sought)) return false;
  text.at += sought.size();
  return true;
}

// A whole line of fixed text.
[[gnu::always_inline]] inline bool expect_line(NxfText &text, std::string_view sought) {
  const char *start = text.at;
  if (!skip(text, sought) || !skip(text, "\n")) {
    text.at = start;
    return fail(text,
                sought.empty() ? "an empty line must stand here" : "'" + std::string(sought) + "' must stand here");
  }
  text.line++;
  return true;
}

// A word ends at a blank or a ';', which stays.
inline bool take_word(NxfText &text, std::string_view &word) {
  const char *start = text.at;
  text.at = find_word_end(start);
  word = {start, static_cast<std::size_t>(text.at - start)};
  return !word.empty() && text.at < text.end && *text.at != '\n';
}

[[gnu::always_inline]] inline bool end_statement(NxfText &text, const char *what) {
  if (!skip(text, ";\n")) return fail(text, std::string(what) + " must end here with ';'");
  text.line++;
  return true;
}

inline bool take_direction(NxfText &text, Direction &direction) {
  if (skip(text, " IN "))
    direction = Direction::IN;
  else if (skip(text, " OUT "))
    direction = Direction::OUT;
  else if (skip(text, " BIDI "))
    direction = Direction::BIDI;
  else
    return fail(text, "' IN ', ' OUT ' or ' BIDI ' must stand here");
  return true;
}

} // namespace cubekit
