// Graphviz's `dot`, run as a program.
#pragma once

#include <string>
#include <string_view>

namespace cubekit {

// Lets dot draw the text as SVG. False, with a sentence in `fault`, when it can't be started or fails; dot's own
// messages go to standard error.
[[nodiscard]] bool draw_svg(std::string_view dot, std::string &svg, std::string &fault);

} // namespace cubekit
