// Sixteen characters of a product term at a time. Every variant gives the same result; the widest that the machine has
// goes by the names scan_inputs and scan_outputs.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace cubenet {

struct CubeScan {
  std::uint32_t bits;  // inputs: two bits per character, first character lowest; outputs: one bit
  std::uint32_t legal; // one bit per character that may stand in the part without being a separator
};

namespace words {

constexpr std::uint64_t kBytes = 0x0101010101010101U;
constexpr std::uint64_t kHighBits = kBytes << 7;

inline std::uint64_t load(const char *text) {
  std::uint64_t word = 0;
  std::memcpy(&word, text, sizeof word);
  return std::endian::native == std::endian::big ? __builtin_bswap64(word) : word;
}

// The high bit of each byte that is `c`.
constexpr std::uint64_t match(std::uint64_t word, char c) {
  const std::uint64_t x = word ^ kBytes * static_cast<unsigned char>(c);
  return ~(((x & ~kHighBits) + ~kHighBits) | x) & kHighBits;
}

// The eight high bits side by side.
constexpr std::uint32_t gather(std::uint64_t high_bits) {
  return static_cast<std::uint32_t>((high_bits >> 7) * 0x0102040810204080U >> 56);
}

// Moves bit k of eight to bit 2k.
constexpr std::uint32_t spread(std::uint32_t bits) {
  bits = (bits | bits << 4) & 0x0f0fU;
  bits = (bits | bits << 2) & 0x3333U;
  return (bits | bits << 1) & 0x5555U;
}

inline CubeScan scan_inputs8(const char *text) {
  const std::uint64_t word = load(text);
  const std::uint64_t any = match(word, '-') | match(word, '2');
  const std::uint32_t zero = gather(match(word, '0') | any);
  const std::uint32_t one = gather(match(word, '1') | any);
  return {spread(zero) | spread(one) << 1, zero | one};
}

inline CubeScan scan_outputs8(const char *text) {
  const std::uint64_t word = load(text);
  const std::uint64_t on = match(word, '1') | match(word, '4');
  const std::uint64_t off =
      match(word, '0') | match(word, '-') | match(word, '~') | match(word, '2') | match(word, '3');
  return {gather(on), gather(on | off)};
}

inline CubeScan scan_inputs(const char *text) {
  const CubeScan low = scan_inputs8(text), high = scan_inputs8(text + 8);
  return {low.bits | high.bits << 16, low.legal | high.legal << 8};
}

inline CubeScan scan_outputs(const char *text) {
  const CubeScan low = scan_outputs8(text), high = scan_outputs8(text + 8);
  return {low.bits | high.bits << 8, low.legal | high.legal << 8};
}

} // namespace words

#if defined(__SSE2__)

namespace sse2 {

inline __m128i load(const char *text) { return _mm_loadu_si128(reinterpret_cast<const __m128i *>(text)); }
inline __m128i match(__m128i text, char c) { return _mm_cmpeq_epi8(text, _mm_set1_epi8(c)); }
inline std::uint32_t gather(__m128i mask) { return static_cast<std::uint32_t>(_mm_movemask_epi8(mask)); }

inline CubeScan scan_inputs(const char *text) {
  const __m128i x = load(text);
  const __m128i any = _mm_or_si128(match(x, '-'), match(x, '2'));
  const __m128i zero = _mm_or_si128(match(x, '0'), any);
  const __m128i one = _mm_or_si128(match(x, '1'), any);
  // Interleaving the two masks puts the two bits of an input side by side.
  return {gather(_mm_unpacklo_epi8(zero, one)) | gather(_mm_unpackhi_epi8(zero, one)) << 16,
          gather(_mm_or_si128(zero, one))};
}

inline CubeScan scan_outputs(const char *text) {
  const __m128i x = load(text);
  const __m128i on = _mm_or_si128(match(x, '1'), match(x, '4'));
  const __m128i digit = _mm_sub_epi8(x, _mm_set1_epi8('0'));
  const __m128i is_digit = _mm_cmpeq_epi8(_mm_min_epu8(digit, _mm_set1_epi8(4)), digit);
  const __m128i off = _mm_or_si128(match(x, '-'), match(x, '~'));
  return {gather(on), gather(_mm_or_si128(is_digit, off))};
}

} // namespace sse2

using sse2::scan_inputs;
using sse2::scan_outputs;

#else

using words::scan_inputs;
using words::scan_outputs;

#endif

} // namespace cubenet
