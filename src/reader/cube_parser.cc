// Parses product terms a character at a time: defines what a term is, and what is wrong with a bad one.
#include "reader/cube_parser.h"

#include <array>

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

// Reads the columns of one part, moving `at` past the last one. `seen` collects the codes.
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

} // namespace cubenet
