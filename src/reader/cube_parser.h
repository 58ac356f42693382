// Product terms: one line of input and output characters becomes one row of the cube table.
//
// Inputs are '0', '1', '-' and '2' (both: any value), outputs '1' and '4' (driven), '0', '-', '2', '3' and '~' (not
// driven); spaces, tabs and '|' may stand anywhere.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace cubenet {

enum TermStatus : std::uint8_t {
  TERM_DRIVES,  // good
  TERM_EMPTY,   // good, but drives no output
  TERM_SHORT,   // ends before the last output
  TERM_LONG,    // something stands behind the last output
  TERM_ILLEGAL, // TermResult::at is the place of a character that is no part of a term
};

struct TermResult {
  TermStatus status;
  std::size_t at = 0;
};

// Reads a term in any spelling, a character at a time. The data words of `row` must be 0 and are filled as far as the
// term is good; without a row the term is only checked.
TermResult parse_term(std::string_view line, std::size_t inputs, std::size_t outputs, std::uint32_t *row);

// Reads a term whose inputs stand together and whose outputs do, sixteen characters at a time, and writes every data
// word of `row`. False when the line is spelled in any other way, right or wrong, and on machines that can't do it: the
// row then holds rubbish. `drives` tells whether the term drives an output.
[[nodiscard]] bool parse_packed_term(std::string_view line, std::size_t inputs, std::size_t outputs, std::uint32_t *row,
                                     bool &drives);

} // namespace cubenet
