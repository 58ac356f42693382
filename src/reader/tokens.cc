// Splits a line into words.
#include "reader/tokens.h"

#include <algorithm>
#include <climits>

#include "model/characters.h"

namespace cubenet {

namespace {

bool is_separator(char c) { return class_of(c) == CHAR_SEPARATOR; }

Token classify(std::string_view text) {
  Token token;
  token.text = text;
  bool is_legal = true;
  for (std::size_t at = 0; at < text.size(); at++) {
    const CharacterClass value = class_of(text[at]);
    if (value == CHAR_LEGAL) continue;
    if (value == CHAR_DOT) token.dot = std::min(token.dot, at);
    if (value == CHAR_SIGN) token.sign = std::min(token.sign, at);
    if (value == CHAR_ILLEGAL && is_legal) {
      token.illegal = show_character(text[at]);
      is_legal = false;
    }
  }
  token.kind = !text.empty() && is_digit(text.front()) ? TOKEN_DIGIT
               : token.dot != std::string_view::npos   ? TOKEN_DOTTED
               : is_legal                              ? TOKEN_PLAIN
                                                       : TOKEN_ILLEGAL;
  return token;
}

std::string_view skip_separators(std::string_view text) {
  std::size_t at = 0;
  while (at < text.size() && is_separator(text[at])) at++;
  return text.substr(at);
}

std::string_view take_word(std::string_view &text) {
  text = skip_separators(text);
  std::size_t end = 0;
  while (end < text.size() && !is_separator(text[end])) end++;
  const std::string_view word = text.substr(0, end);
  text = skip_separators(text.substr(end));
  return word;
}

} // namespace

bool next_token(std::string_view &text, Token &token) {
  token = classify(take_word(text));
  return !token.text.empty();
}

std::size_t count_tokens(std::string_view text) {
  std::size_t count = 0;
  while (!take_word(text).empty()) count++;
  return count;
}

Token cut_token(const Token &token) {
  return token.text.size() <= kShownLimit ? token : classify(token.text.substr(0, kShownLimit));
}

std::string shown(std::string_view text) { return std::string(text.substr(0, kShownLimit)); }

std::optional<int> scan_decimal(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
  const bool is_negative = text.starts_with('-');
  if (is_negative || text.starts_with('+')) text.remove_prefix(1);
  if (text.empty() || !is_digit(text.front())) return std::nullopt;
  const std::int64_t limit = is_negative ? -std::int64_t{INT_MIN} : INT_MAX;
  std::int64_t value = 0;
  for (; !text.empty() && is_digit(text.front()); text.remove_prefix(1)) {
    value = value * 10 + (text.front() - '0');
    if (value > limit) return std::nullopt;
  }
  return static_cast<int>(is_negative ? -value : value);
}

} // namespace cubenet
