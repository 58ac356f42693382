// Text of any origin as HTML.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace cubekit {

// The text for the content of an element or for a quoted attribute value. Nothing in the text can end either:
// HTML's special characters become entities, UTF-8 letters stay, and every byte that is neither those nor a
// visible ASCII character (controls, broken UTF-8, code points that change the writing direction or are
// invisible) is shown as "\xNN".
std::string escape_html(std::string_view text);

// "1 term", "12,345 terms"; `noun` is singular, and its plural adds an "s".
std::string count_text(std::size_t count, std::string_view noun);

} // namespace cubekit
