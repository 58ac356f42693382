// Words of a text, eight bytes at a time. Some bytes behind a word are loaded too: a FileText has them.
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

// Where the word that begins there ends, at a blank, a ';' or a line end, within the next eight bytes; 8 when it
// doesn't.
inline std::size_t find_word_end(std::uint64_t bytes) {
  constexpr std::uint64_t kOnes = 0x0101010101010101U, kLow = 0x7F * kOnes;
  const auto differs = [](std::uint64_t other) { return ((other & kLow) + kLow) | other; }; // high bit: not 0
  const std::uint64_t ends =
      ~(differs(bytes ^ ' ' * kOnes) & differs(bytes ^ ';' * kOnes) & differs(bytes ^ '\n' * kOnes)) & ~kLow;
  if (ends == 0) return 8;
  return static_cast<std::size_t>(std::endian::native == std::endian::little ? std::countr_zero(ends)
                                                                             : std::countl_zero(ends)) /
         8;
}

inline const char *find_word_end(const char *at) {
  std::size_t size = 0;
  for (; (size = find_word_end(load_bytes(at))) == 8; at += 8) {
  }
  return at + size;
}

} // namespace cubekit
