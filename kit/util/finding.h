// Findings about a file, and how they are reported.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <string_view>

namespace cubekit {

struct Finding {
  std::size_t line = 0; // 0: the file as a whole
  std::string text;
};

// A name in such a text. A very long one is cut to its beginning: many findings may be about one name.
std::string shortened(std::string_view name);
std::string quoted(std::string_view name);

// "path:line: text" (or "path: text" for line 0) and a line end.
void print_finding(std::ostream &stream, const std::string &path, const Finding &finding);

} // namespace cubekit
