// The characters of names, and how messages show an illegal one.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace cubenet {

enum CharacterClass : std::uint8_t { CHAR_ILLEGAL, CHAR_LEGAL, CHAR_SEPARATOR, CHAR_DOT, CHAR_SIGN };

constexpr std::array<CharacterClass, 256> make_character_classes() {
  std::array<CharacterClass, 256> classes{};
  const auto mark = [&](std::string_view characters, CharacterClass value) {
    for (const char c : characters) classes[static_cast<unsigned char>(c)] = value;
  };
  mark("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789", CHAR_LEGAL);
  mark("@`!#$%&'*/<>?[\\]_|~", CHAR_LEGAL);
  mark(" \t,", CHAR_SEPARATOR);
  mark(".", CHAR_DOT);
  mark("+-:", CHAR_SIGN);
  return classes;
}
inline constexpr std::array<CharacterClass, 256> kCharacterClasses = make_character_classes();

constexpr CharacterClass class_of(char c) { return kCharacterClasses[static_cast<unsigned char>(c)]; }
constexpr bool is_digit(char c) { return c >= '0' && c <= '9'; }

// A control character is shown as '^' and the character 64 above it, any other unchanged.
constexpr std::array<char, 3> show_character(char c) {
  const auto code = static_cast<unsigned char>(c);
  if (code < 32 || code == 127) return {'^', static_cast<char>(code + 64), 0};
  return {c, 0, 0};
}

} // namespace cubenet
