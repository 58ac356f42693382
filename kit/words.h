// Words of a text, eight bytes at a time. The bytes up to seven behind a word are loaded too: a FileText has them.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace cubekit {

inline std::uint64_t load_bytes(const char *at) {
  std::uint64_t bytes = 0;
  std::memcpy(&bytes, at, sizeof bytes);
  return bytes;
}

// kFirstBytes[n] masks the first n of eight bytes.
inline constexpr auto kFirstBytes = [] {
  std::array<std::uint64_t, 9> masks{};
  std::array<std::uint8_t, 8> bytes{};
  for (std::size_t n = 0; n < 8; n++) {
    bytes[n] = 0xFF;
    masks[n + 1] = std::bit_cast<std::uint64_t>(bytes);
  }
  return masks;
}();

inline bool same_bytes(const char *a, const char *b, std::size_t size) {
  for (; size > 8; a += 8, b += 8, size -= 8)
    if (load_bytes(a) != load_bytes(b)) return false;
  return ((load_bytes(a) ^ load_bytes(b)) & kFirstBytes[size]) == 0;
}

inline bool is_word_end(char c) { return c == ' ' || c == ';' || c == '\n'; }

// The end of the word that begins there, at a blank, a ';' or a line end.
inline const char *find_word_end(const char *at) {
  constexpr std::uint64_t kOnes = 0x0101010101010101U, kLow = 0x7F * kOnes;
  const auto differs = [](std::uint64_t bytes) { return ((bytes & kLow) + kLow) | bytes; }; // high bit: not 0
  for (;; at += 8) {
    const std::uint64_t bytes = load_bytes(at);
    const std::uint64_t ends =
        ~(differs(bytes ^ ' ' * kOnes) & differs(bytes ^ ';' * kOnes) & differs(bytes ^ '\n' * kOnes)) & ~kLow;
    if (ends == 0) continue;
    return at + (std::endian::native == std::endian::little ? std::countr_zero(ends) : std::countl_zero(ends)) / 8;
  }
}

} // namespace cubekit
