// Words of a line. Spaces, tabs and commas separate them; everything else belongs to a word. Each word has
// the properties that the name checks need.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace cubenet {

constexpr std::size_t kShownLimit = 256; // most characters of an input text that a message quotes

// A word is of the first kind that applies: begins with a digit, contains a '.', contains an illegal
// character.
enum TokenKind : std::uint8_t { TOKEN_DIGIT, TOKEN_DOTTED, TOKEN_ILLEGAL, TOKEN_PLAIN };

struct Token {
  std::string_view text;
  std::size_t dot = std::string_view::npos;  // first '.'
  std::size_t sign = std::string_view::npos; // first '+', '-' or ':'
  TokenKind kind = TOKEN_PLAIN;
  std::array<char, 3> illegal{}; // the first illegal character as messages show it; empty: none
};

// Removes the next word and the separators after it from the front of `text`; false if only separators are
// left.
[[nodiscard]] bool next_token(std::string_view &text, Token &token);

std::size_t count_tokens(std::string_view text);

// The token's first kShownLimit characters, classified again.
Token cut_token(const Token &token);

// A copy for a message, cut to kShownLimit characters.
std::string shown(std::string_view text);

// Reads as "%d" does: leading blanks, a sign, digits, then anything. None if the number is beyond the range
// of int.
std::optional<int> scan_decimal(std::string_view text);

} // namespace cubenet
