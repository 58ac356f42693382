// Terms as text. A block that uses every input is printed four inputs at a time; any other one column by
// column.
#include "netlist/pla_rows.h"

#include <array>
#include <cstring>

namespace cubenet {

namespace {

constexpr char kLiteralText[] = "-01-";

// Four inputs' bits to four characters.
constexpr std::array<std::array<char, 4>, 256> make_quads() {
  std::array<std::array<char, 4>, 256> quads{};
  for (std::size_t bits = 0; bits < quads.size(); bits++)
    for (std::size_t k = 0; k < 4; k++) quads[bits][k] = kLiteralText[bits >> (2 * k) & 3];
  return quads;
}
constexpr std::array<std::array<char, 4>, 256> kQuads = make_quads();

char *put_all_columns(char *at, const CubeTable &cubes, const std::uint32_t *row) {
  char *const end = at + cubes.inputs;
  for (std::size_t w = 0; w < input_words(cubes); w++) {
    for (unsigned byte = 0; byte < 4; byte++, at += 4)
      std::memcpy(at, kQuads[row[1 + w] >> (8 * byte) & 255U].data(), 4);
  }
  return end;
}

char *put_columns(char *at, const std::uint32_t *row, const std::vector<std::uint32_t> &columns) {
  for (const std::uint32_t column : columns) *at++ = kLiteralText[literal_at(row, column)];
  return at;
}

} // namespace

void put_pla_rows(OutputFile &file, const CubeTable &cubes, const std::uint32_t *terms, std::size_t term_count,
                  const std::vector<std::uint32_t> &columns) {
  const bool all = columns.size() == cubes.inputs;
  for (std::size_t i = 0; i < term_count; i++) {
    const std::uint32_t *row = cube(cubes, terms[i]);
    // Whole words are written, up to 15 characters past the last column.
    char *at = reserve(file, columns.size() + 24);
    *at++ = '\t';
    at = all ? put_all_columns(at, cubes, row) : put_columns(at, row, columns);
    std::memcpy(at, " 1\n", 3);
    commit(file, at + 3);
  }
}

} // namespace cubenet
