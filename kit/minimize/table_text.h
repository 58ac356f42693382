// The terms of a truth table in its text, and the text with other terms.
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

// Finds them in a text that the reader has accepted.
TableText find_terms(std::string_view text);

// What the terms say is free.
Cover read_free_points(const TableText &table, std::size_t inputs, std::size_t outputs);

// The text with these terms, where the first one stood and spelled as that; all other lines stay, but for the counts.
std::string replace_terms(const TableText &table, const Cover &cover);

} // namespace cubekit
