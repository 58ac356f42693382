// Product terms: one line of input and output characters becomes one row of the cube table.
//
// Inputs are '0', '1', '-' and '2' (both: any value), outputs '1' and '4' (driven), '0', '-', '2', '3' and
// '~' (not driven); spaces, tabs and '|' may be anywhere.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace cubenet {

enum TermStatus : std::uint8_t {
  TERM_DRIVES,  // good
  TERM_EMPTY,   // good, but drives no output
  TERM_SHORT,   // ends before the last output
  TERM_LONG,    // something follows the last output
  TERM_ILLEGAL, // TermResult::at is the position of an illegal character
};

struct TermResult {
  TermStatus status;
  std::size_t at = 0;
};

// Reads a term in any spelling, a character at a time. The data words of `row` must be 0 and are filled up to
// the first fault; without a row the term is only checked.
TermResult parse_term(std::string_view line, std::size_t inputs, std::size_t outputs, std::uint32_t *row);

// Reads a term whose inputs are adjacent, and likewise its outputs, sixteen characters at a time, and writes
// every data word of `row`. False if the line has any other form, right or wrong, or the machine can't do it;
// the row is then undefined. `drives` is set to whether the term drives an output.
[[nodiscard]] bool parse_packed_term(std::string_view line, std::size_t inputs, std::size_t outputs, std::uint32_t *row,
                                     bool &drives);

} // namespace cubenet
