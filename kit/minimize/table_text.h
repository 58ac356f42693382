// Finds the terms in a truth table's text, and replaces them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "kit/table/cover.h"

namespace cubekit {

struct TableText {
  std::string_view text;
  std::vector<std::string_view> terms;  // the lines with their ends
  std::vector<std::string_view> counts; // what `.p` lines announce
  bool has_free = false;                // `.type fd`: '-' and '2' mark free points
};

// For a text that the reader has accepted.
TableText find_terms(std::string_view text);

// The points that the terms mark as free.
Cover read_free_points(const TableText &table, std::size_t inputs, std::size_t outputs);

// The text with these terms, placed where the first one was and spelled like it; all other lines stay, except
// for the counts.
std::string replace_terms(const TableText &table, const Cover &cover);

} // namespace cubekit
