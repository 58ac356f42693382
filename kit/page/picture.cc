// The drawing of a netlist as a page may hold it. Graphviz's SVG is taken apart and only shapes, texts and what belongs
// together is written again, so that nothing but that can come in; names are those of the netlist. Colours and fonts
// are left to the page's style.
#include <algorithm>
#include <array>
#include <ostream>
#include <vector>

#include "kit/netlist/flow.h"
#include "kit/page/files.h"
#include "kit/page/html.h"
#include "kit/page/page.h"

namespace cubekit {

namespace {

// "<name a="..." b="...">", "</name>" or "<name .../>".
struct Tag {
  std::string_view name, attributes;
  bool closing = false, empty = false;
};

Tag parse_tag(std::string_view text) {
  Tag tag;
  tag.closing = text.starts_with('/');
  if (tag.closing) text.remove_prefix(1);
  tag.empty = text.ends_with('/');
  if (tag.empty) text.remove_suffix(1);
  tag.name = text.substr(0, text.find_first_of(" \n"));
  tag.attributes = text.substr(tag.name.size());
  return tag;
}

std::string_view attribute(const Tag &tag, std::string_view name) {
  const std::string opening = ' ' + std::string(name) + "=\"";
  std::size_t at = tag.attributes.find(opening);
  if (at == std::string_view::npos) return {};
  at += opening.size();
  return tag.attributes.substr(at, tag.attributes.find('"', at) - at);
}

bool is_geometry(std::string_view text) {
  return text.find_first_not_of("0123456789.,-+ ()eMCLZacelnorst") ==
         std::string_view::npos; // scale, translate, rotate
}

struct EntityRow {
  std::string_view text;
  char character;
};
constexpr auto kEntities = std::to_array<EntityRow>(
    {{"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&#39;", '\''}, {"&#45;", '-'}, {"&#160;", ' '}});

// A text of the drawing as it is meant: entities are characters, and so are the bytes that graph.h's names hold as '%'
// and two digits.
std::string decode(std::string_view text) {
  const auto digit = [](char c) { return c <= '9' ? c - '0' : c - 'a' + 10; };
  const auto is_digit = [](char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f'); };
  std::string decoded;
  while (!text.empty()) {
    const auto row = std::ranges::find_if(kEntities, [&](const EntityRow &one) { return text.starts_with(one.text); });
    std::size_t length = 1;
    if (row != kEntities.end()) {
      decoded += row->character;
      length = row->text.size();
    } else if (text.size() > 2 && text[0] == '%' && is_digit(text[1]) && is_digit(text[2])) {
      decoded += static_cast<char>(digit(text[1]) * 16 + digit(text[2]));
      length = 3;
    } else {
      decoded += text[0];
    }
    text.remove_prefix(length);
  }
  return decoded;
}

// What graph.h calls a symbol (s), a device pin (p) or a rail (n): the letter and an index.
struct Thing {
  char letter = 0; // 0: none
  std::size_t index = 0;
};

Thing parse_thing(std::string_view text, const Netlist &netlist) {
  if (text.size() < 2 || text.size() > 10 || text.find_first_not_of("0123456789", 1) != std::string_view::npos)
    return {};
  const Thing thing{text[0], std::stoul(std::string(text.substr(1)))};
  const std::size_t count = thing.letter == 's'   ? netlist.symbols.size()
                            : thing.letter == 'p' ? netlist.external_pins.size()
                            : thing.letter == 'n' ? netlist.nets.size()
                                                  : 0;
  return thing.index < count ? thing : Thing{};
}

// The opening of the group of a symbol, pin or rail, which knows its name.
std::string open_node(const Thing &thing, const Netlist &netlist) {
  std::string name, kind, look;
  if (thing.letter == 's') {
    const Symbol &symbol = netlist.symbols[thing.index];
    name = escape_html(symbol.instance);
    kind = ", " + escape_html(symbol.primitive_text);
    look = is_storage(primitive_of(symbol).function) ? " storage" : "";
  } else if (thing.letter == 'p') {
    name = escape_html(netlist.external_pins[thing.index].pin);
    look = " pin";
  } else {
    name = escape_html(netlist.nets[thing.index].name);
  }
  const std::string id = thing.letter + std::to_string(thing.index);
  return "<g class=\"node" + look + "\" id=\"" + id + "\" data-name=\"" + name + "\"><title>" + name + kind +
         "</title>";
}

// A drawing on its way from dot's form to the page's.
struct Copy {
  const Netlist &netlist;
  std::string result{};
  std::vector<std::string_view> closings{}; // of the open elements; empty: the element itself is left out
  std::string_view group{};                 // class of a group whose title, which identifies it, is yet to come
  bool in_title = false, in_text = false;
  bool faulty = false;
};

void copy_attributes(Copy &copy, const Tag &tag, std::initializer_list<std::string_view> names) {
  for (const std::string_view name : names) {
    const std::string_view value = attribute(tag, name);
    copy.faulty = copy.faulty || !is_geometry(value);
    if (!value.empty()) copy.result.append(" ").append(name).append("=\"").append(value).append("\"");
  }
}

void open_drawing(Copy &copy, const Tag &tag) {
  std::string_view numbers = attribute(tag, "viewBox");
  copy.result += "<svg role=\"img\" aria-label=\"Netlist: " + count_text(copy.netlist.symbols.size(), "symbol") + ", " +
                 count_text(copy.netlist.nets.size(), "net") + "\"";
  copy_attributes(copy, tag, {"viewBox"});
  // The size in the drawing's own units, for a page without its script.
  const std::size_t height = numbers.rfind(' '), width = numbers.rfind(' ', height - 1);
  copy.faulty = copy.faulty || !numbers.starts_with("0.00 0.00 ");
  if (!copy.faulty)
    copy.result.append(" width=\"")
        .append(numbers.substr(width + 1, height - width - 1))
        .append("\" height=\"")
        .append(numbers.substr(height + 1))
        .append("\"");
  copy.result += ">\n";
}

void open_group(Copy &copy, const Tag &tag) {
  const std::string_view group = attribute(tag, "class");
  if (group == "graph") {
    copy.result += "<g";
    copy_attributes(copy, tag, {"transform"});
    copy.result += ">\n";
  } else if (group == "cluster") {
    copy.result += "<g class=\"cluster\">";
  } else {
    copy.group = group; // of nodes and edges; the group of a link has none
  }
  copy.closings.push_back(group.empty() ? "" : "</g>\n");
}

// Opens the group that the title identifies. Its own titles say no more than that.
void take_title(Copy &copy, std::string_view title) {
  const std::size_t arrow = title.find("&#45;&gt;");
  if (copy.group == "node") {
    const Thing thing = parse_thing(title, copy.netlist);
    copy.faulty = copy.faulty || thing.letter == 0;
    if (!copy.faulty) copy.result += open_node(thing, copy.netlist);
  } else if (copy.group == "edge") {
    copy.faulty = copy.faulty || arrow == std::string_view::npos ||
                  parse_thing(title.substr(0, arrow), copy.netlist).letter == 0 ||
                  parse_thing(title.substr(arrow + 9), copy.netlist).letter == 0;
    if (!copy.faulty)
      copy.result.append("<g class=\"edge\" data-from=\"")
          .append(title.substr(0, arrow))
          .append("\" data-to=\"")
          .append(title.substr(arrow + 9))
          .append("\">");
  }
  copy.group = {};
}

void copy_shape(Copy &copy, const Tag &tag) {
  if (copy.closings.size() == 2 && tag.name == "polygon") return; // the background
  copy.result.append("<").append(tag.name);
  copy_attributes(copy, tag, {"points", "d", "cx", "cy", "rx", "ry"});
  copy.result += "/>";
}

void open_element(Copy &copy, const Tag &tag) {
  if (tag.name == "g") return open_group(copy, tag);
  if (tag.name == "svg") {
    open_drawing(copy, tag);
    copy.closings.push_back("</svg>\n");
  } else if (tag.name == "title") {
    copy.in_title = true;
    copy.closings.push_back("");
  } else if (tag.name == "a") { // its title is the net's name
    copy.result += "<title>" + escape_html(decode(attribute(tag, "xlink:title"))) + "</title>";
    copy.closings.push_back("");
  } else if (tag.name == "text") {
    copy.in_text = true;
    copy.result += "<text";
    copy_attributes(copy, tag, {"x", "y"});
    copy.result += attribute(tag, "text-anchor") == "middle" ? " text-anchor=\"middle\">" : ">";
    copy.closings.push_back("</text>");
  } else if (tag.empty &&
             (tag.name == "polygon" || tag.name == "polyline" || tag.name == "path" || tag.name == "ellipse")) {
    copy_shape(copy, tag);
  } else {
    copy.faulty = true;
  }
}

void copy_tag(Copy &copy, const Tag &tag) {
  if (!tag.closing) return open_element(copy, tag);
  copy.faulty = copy.faulty || copy.closings.empty();
  if (copy.faulty) return;
  copy.result += copy.closings.back();
  copy.closings.pop_back();
  copy.in_text = copy.in_title = false;
}

// The last character of what the '<' at `at` opens; npos when it has no end.
std::size_t end_of_mark(std::string_view svg, std::size_t at) {
  if (!svg.substr(at).starts_with("<!--")) return svg.find('>', at);
  const std::size_t end = svg.find("-->", at);
  return end == std::string_view::npos ? end : end + 2;
}

} // namespace

bool can_be_drawn(const Netlist &netlist, const PageLimits &limits) {
  return netlist.symbols.size() + netlist.external_pins.size() <= limits.picture_symbols &&
         netlist.destinations.size() <= limits.picture_connections;
}

std::string inline_svg(std::string_view svg, const Netlist &netlist) {
  Copy copy{netlist};
  for (std::size_t at = 0, next = 0; !copy.faulty && at < svg.size(); at = next + 1) {
    const std::size_t open = svg.find('<', at);
    if (open == std::string_view::npos) break;
    const std::string_view text = svg.substr(at, open - at);
    if (copy.in_title) take_title(copy, text);
    if (copy.in_text) copy.result += escape_html(decode(text));
    next = end_of_mark(svg, open);
    copy.faulty = copy.faulty || next == std::string_view::npos;
    if (!copy.faulty && svg[open + 1] != '?' && svg[open + 1] != '!')
      copy_tag(copy, parse_tag(svg.substr(open + 1, next - open - 1)));
  }
  return copy.faulty || !copy.closings.empty() ? std::string() : copy.result;
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
