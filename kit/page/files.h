// The files in kit/page that are built into the program.
#pragma once

#include <functional>
#include <iosfwd>
#include <string_view>

namespace cubekit {

struct PageFile {
  std::string_view text;
  std::string_view sha256; // hexadecimal
};

extern const PageFile page_html, picture_html, page_css, page_js;

// Writes the text with each "{{name}}" in it replaced by what write_value(name) writes.
void fill_in(std::ostream &stream, std::string_view text, const std::function<void(std::string_view)> &write_value);

} // namespace cubekit
