// Puts a page together: the frame of kit/page around the sections. The page names the checksums of its own
// style and script in its security policy, so that a browser runs nothing else even if something else got in.
#include "kit/page/page.h"

#include <algorithm>
#include <ostream>

#include "kit/draw/html.h"
#include "kit/page/files.h"
#include "kit/stat/stat.h"

namespace cubekit {

namespace {

std::uint32_t hex_digit(char c) { return static_cast<std::uint32_t>(c <= '9' ? c - '0' : c - 'a' + 10); }

// A checksum of hexadecimal digits in base 64.
std::string base64(std::string_view hex) {
  constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  for (std::size_t at = 0; at < hex.size(); at += 6) { // three bytes, four digits
    std::uint32_t bits = 0;
    for (std::size_t i = 0; i < 6; i++) bits = bits << 4 | (at + i < hex.size() ? hex_digit(hex[at + i]) : 0);
    const std::size_t digits = (std::min<std::size_t>(hex.size() - at, 6) * 4 + 5) / 6;
    for (std::size_t i = 0; i < 4; i++) text += i < digits ? kDigits[bits >> (18 - 6 * i) & 0x3FU] : '=';
  }
  return text;
}

std::string design_name(const PageContents &contents) {
  if (contents.design != nullptr && !contents.design->header.design.empty()) return contents.design->header.design;
  return contents.name;
}

void write_fact(std::ostream &stream, std::string_view label, const std::string &html, std::string_view section) {
  stream << "<div><dt>" << label << "</dt><dd>";
  if (section.empty())
    stream << html;
  else
    stream << "<a href=\"#" << section << "\">" << html << "</a>";
  stream << "</dd></div>\n";
}

std::string message_summary(const PageContents &contents) {
  std::size_t errors = 0, warnings = 0;
  for (const Message &message : parse_messages(contents.messages))
    (message.severity == "WARNING" ? warnings : errors)++;
  std::string text = errors == 0 ? "" : count_text(errors, "error");
  if (warnings > 0) text.append(text.empty() ? "" : ", ").append(count_text(warnings, "warning"));
  return text.empty() ? "none" : text;
}

void write_head(std::ostream &stream, const PageContents &contents) {
  stream << "<h1>" << escape_html(design_name(contents)) << "</h1>\n";
  const Design *design = contents.design;
  if (design != nullptr && !design->header.desc.empty())
    stream << "<p class=\"subtitle\">" << escape_html(design->header.desc) << "</p>\n";
  stream << "<dl class=\"facts\">\n";
  if (design != nullptr) {
    write_fact(stream, "Part", "<span class=\"name\">" + escape_html(design->header.part) + "</span>", "");
    write_fact(stream, "Pins",
               count_text(contents.pins.size(), "pin") +
                   (contents.nodes.empty() ? "" : ", " + count_text(contents.nodes.size(), "node")),
               "pins");
    write_fact(stream, "Logic",
               count_text(design->OLB.size(), "equation") + ", " + count_text(contents.cubes->NUM_CUBES, "term"),
               "equations");
  }
  if (contents.netlist != nullptr)
    write_fact(stream, "Netlist",
               count_text(contents.netlist->symbols.size(), "symbol") + ", " +
                   count_text(contents.netlist->nets.size(), "net"),
               "netlist");
  write_fact(stream, "Messages", message_summary(contents), "messages");
  stream << "</dl>\n";
}

} // namespace

void fill_in(std::ostream &stream, std::string_view text, const std::function<void(std::string_view)> &write_value) {
  for (std::size_t open = 0; (open = text.find("{{")) != std::string_view::npos;) {
    const std::size_t close = text.find("}}", open);
    stream << text.substr(0, open);
    write_value(text.substr(open + 2, close - open - 2));
    text.remove_prefix(close + 2);
  }
  stream << text;
}

void write_statistics(std::ostream &stream, const PageContents &contents, const PageLimits &limits) {
  stream << "<section id=\"statistics\" aria-labelledby=\"statistics-title\">\n"
            "<h2 id=\"statistics-title\">Statistics</h2>\n";
  if (contents.netlist == nullptr) {
    stream << "<p>There is no netlist to count in.</p>\n</section>\n";
    return;
  }
  std::size_t parts = 0;
  stream << "<table class=\"numbers\"><thead><tr><th scope=\"col\">Of the netlist</th><th scope=\"col\">Count</th></tr>"
            "</thead><tbody>\n";
  for (const StatisticsRow &row : describe(collect_statistics(*contents.netlist))) {
    const bool part = row.label.starts_with(' ');
    if (part && ++parts > limits.primitives) continue;
    stream << "<tr" << (part ? " class=\"part\"" : "") << "><th scope=\"row\">"
           << escape_html(std::string_view(row.label).substr(part ? 2 : 0)) << "</th><td>" << escape_html(row.value)
           << "</td></tr>\n";
  }
  stream << "</tbody></table>\n";
  if (parts > limits.primitives)
    stream << "<p class=\"note\">Symbols of " << limits.primitives << " of " << count_text(parts, "primitive")
           << " are listed here.</p>\n";
  stream << "</section>\n";
}

void write_page(std::ostream &stream, const PageContents &contents, const PageLimits &limits) {
  fill_in(stream, page_html.text, [&](std::string_view name) {
    if (name == "style-hash") stream << base64(page_css.sha256);
    if (name == "script-hash") stream << base64(page_js.sha256);
    if (name == "style") stream << page_css.text;
    if (name == "script") stream << page_js.text;
    if (name == "name") stream << escape_html(design_name(contents));
    if (name == "head") write_head(stream, contents);
    if (name != "sections") return;
    write_signals(stream, contents, limits);
    write_equations(stream, contents, limits);
    write_picture(stream, contents);
    write_messages(stream, contents, limits);
    write_statistics(stream, contents, limits);
  });
}

} // namespace cubekit
