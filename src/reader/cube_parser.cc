// Parsing of product terms, plainly and at speed. The plain version defines what a term is and tells what is wrong with
// a bad one; the fast version handles the spelling that large tables use and leaves everything else to it.
#include "reader/cube_parser.h"

#include <array>

#include "reader/cube_scan.h"

namespace cubenet {

namespace {

constexpr std::uint8_t kSeparator = 0xfe;
constexpr std::uint8_t kIllegal = 0xff;

using CodeTable = std::array<std::uint8_t, 256>;

constexpr CodeTable make_codes(std::string_view characters, std::string_view codes) {
  CodeTable table{};
  table.fill(kIllegal);
  for (const char c : std::string_view(" \t|")) table[static_cast<unsigned char>(c)] = kSeparator;
  for (std::size_t i = 0; i < characters.size(); i++)
    table[static_cast<unsigned char>(characters[i])] = static_cast<std::uint8_t>(codes[i] - '0');
  return table;
}

constexpr CodeTable kInputCodes = make_codes("01-2", "1233"); // the two bits of the input
constexpr CodeTable kOutputCodes = make_codes("140-23~", "1100000");

std::uint8_t code_at(const CodeTable &codes, std::string_view line, std::size_t at) {
  return codes[static_cast<unsigned char>(line[at])];
}

std::size_t skip_separators(std::string_view line, std::size_t at) {
  while (at < line.size() && code_at(kOutputCodes, line, at) == kSeparator) at++;
  return at;
}

struct Part {
  const CodeTable &codes;
  std::size_t columns;
  std::size_t first_bit; // of the row
  std::size_t width;     // bits per column
};

// Reads the columns of one part from `at` on, which is left behind the last one. `seen` collects the codes.
TermStatus parse_part(std::string_view line, const Part &part, std::uint32_t *row, std::size_t &at,
                      std::uint32_t &seen) {
  for (std::size_t column = 0; column < part.columns; at++) {
    if (at == line.size()) return TERM_SHORT;
    const std::uint8_t code = code_at(part.codes, line, at);
    if (code == kSeparator) continue;
    if (code == kIllegal) return TERM_ILLEGAL;
    const std::size_t bit = part.first_bit + column * part.width;
    if (row != nullptr) row[1 + bit / 32] |= std::uint32_t{code} << (bit % 32);
    seen |= code;
    column++;
  }
  return TERM_DRIVES;
}

// The lowest `count` of the bits, count < 32.
constexpr std::uint32_t low_bits(std::uint32_t bits, std::size_t count) { return bits & ((1U << count) - 1); }

// Scans the `count` (< 16) columns at `at` through a window of sixteen characters that lies within the line; false when
// the line is too short for that, or a character is not legal.
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

} // namespace

TermResult parse_term(std::string_view line, std::size_t inputs, std::size_t outputs, std::uint32_t *row) {
  std::size_t at = 0;
  std::uint32_t literals = 0, driven = 0;
  TermStatus status = parse_part(line, {kInputCodes, inputs, 0, 2}, row, at, literals);
  if (status == TERM_DRIVES) status = parse_part(line, {kOutputCodes, outputs, 2 * inputs, 1}, row, at, driven);
  if (status != TERM_DRIVES) return {status, at};
  if (skip_separators(line, at) < line.size()) return {TERM_LONG};
  return {driven != 0 ? TERM_DRIVES : TERM_EMPTY};
}

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
