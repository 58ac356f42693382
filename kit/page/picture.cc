// The drawing of a netlist in a page. Graphviz writes ids, classes and names as graph.h gave them, and
// escapes them; colours and fonts are left to the page's style.
#include <ostream>

#include "kit/draw/html.h"
#include "kit/page/files.h"
#include "kit/page/page.h"

namespace cubekit {

bool can_be_drawn(const Netlist &netlist, const PageLimits &limits) {
  return netlist.symbols.size() + netlist.external_pins.size() <= limits.picture_symbols &&
         netlist.destinations.size() <= limits.picture_connections;
}

std::string inline_svg(std::string_view svg, const Netlist &netlist) {
  constexpr std::string_view kStart = "<svg ", kEnd = "</svg>\n";
  const std::size_t start = svg.find(kStart);
  if (start == std::string_view::npos || !svg.ends_with(kEnd)) return {};
  return "<svg role=\"img\" aria-label=\"Netlist: " + count_text(netlist.symbols.size(), "symbol") + ", " +
         count_text(netlist.nets.size(), "net") + "\" " + std::string(svg.substr(start + kStart.size()));
}

void write_picture(std::ostream &stream, const PageContents &contents) {
  stream << "<section id=\"netlist\" aria-labelledby=\"netlist-title\">\n<h2 id=\"netlist-title\">Netlist</h2>\n";
  if (contents.netlist == nullptr)
    stream << "<p>There is no netlist that can be shown:</p>\n<p class=\"name\">"
           << escape_html(std::string_view(contents.netlist_faults).substr(0, contents.netlist_faults.find('\n')))
           << "</p>\n";
  else if (contents.svg.empty())
    stream << "<p>There is no picture of the netlist. " << escape_html(contents.no_picture) << "</p>\n";
  else
    fill_in(stream, picture_html.text, [&](std::string_view) { stream << contents.svg; });
  stream << "</section>\n";
}

} // namespace cubekit
