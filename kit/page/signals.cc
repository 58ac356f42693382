// The tables of pins and of nodes: their locations, directions and drivers.
#include <algorithm>
#include <array>
#include <ostream>

#include "kit/draw/html.h"
#include "kit/page/page.h"

namespace cubekit {

using cubenet::extension_code;
using cubenet::kNoSignal;
using cubenet::upper_case;
using enum cubenet::ExtensionCode;

namespace {

struct KindRow {
  ExtensionCode equation; // the first one that the signal has gives its kind
  std::string_view text;
};
// clang-format off
constexpr auto kKinds = std::to_array<KindRow>({
    {EXT_D,    "D "},       {EXT_DX1, "D "},       {EXT_DX2, "D "},
    {EXT_REG,  "generic "}, {EXT_GX1, "generic "}, {EXT_GX2, "generic "},
    {EXT_T,    "T "},       {EXT_TX1, "T "},       {EXT_TX2, "T "},
    {EXT_J,    "JK "},      {EXT_K,   "JK "},      {EXT_S,   "SR "},     {EXT_R, "SR "},
    {EXT_X1,   "XOR"},      {EXT_X2,  "XOR"},      {EXT_NONE, "logic"},
});
// clang-format on

std::string kind_text(const SignalRoles &roles) {
  const auto kind = std::ranges::find_if(kKinds, [&](const KindRow &row) { return has(roles, row.equation); });
  std::string text;
  if (kind != kKinds.end())
    text = std::string(kind->text) + (!is_registered(roles) ? "" : is_flip_flop(roles) ? "register" : "latch");
  else
    text = roles.macro_output != kNone ? "macro output" : roles.used ? "input" : "not used";
  if (has(roles, EXT_OE)) text += ", tristate";
  if (roles.inverted) text += ", inverted";
  return text;
}

bool is_driven(const SignalRoles &roles) {
  return roles.macro_output != kNone ||
         std::ranges::any_of(roles.equations, [](std::uint32_t equation) { return equation != kNone; });
}

// Per signal: whether something reads the level at the device pin, where that may differ from what drives it.
std::vector<bool> find_read_outside(const Meaning &meaning) {
  std::vector<bool> read(meaning.signals.size());
  const auto add = [&](SignalIndex signal, ExtensionCode code) {
    if (signal != kNoSignal && (code == EXT_NONE || code == EXT_PIN)) read[static_cast<std::size_t>(signal)] = true;
  };
  for (std::size_t i = 0; i < meaning.columns.size(); i++)
    add(meaning.columns[i], extension_code(meaning.design->IB_EXT[i]));
  for (const MacroPort &port : meaning.ports)
    if (!port.output) add(port.signal, extension_code(upper_case(port.connection->pin_part)));
  return read;
}

std::string_view direction_of(const SignalRoles &roles, bool read_outside) {
  if (!roles.used) return "none";
  if (!is_driven(roles)) return "in";
  return has(roles, EXT_OE) && read_outside ? "bidirectional" : "out";
}

// The signal's name leads to the first of its equations, if that is on the page.
void write_name(std::ostream &stream, const std::string &name, const SignalRoles *roles, const PageLimits &limits) {
  const std::string escaped = escape_html(name);
  const std::uint32_t first = roles == nullptr ? kNone : *std::ranges::min_element(roles->equations);
  stream << "<tr><th scope=\"row\" class=\"name\"><span data-signal>";
  if (first < limits.equations)
    stream << "<a href=\"#e" << first << "\">" << escaped << "</a></span></th>";
  else
    stream << escaped << "</span></th>";
}

void write_left_out(std::ostream &stream, std::size_t count, const PageLimits &limits, std::string_view noun) {
  if (count <= limits.signals) return;
  stream << "<p class=\"note\">" << limits.signals << " of " << count_text(count, noun) << " are listed here.</p>\n";
}

const SignalRoles *roles_at(const PageContents &contents, std::size_t signal) {
  return signal < contents.meaning.signals.size() ? &contents.meaning.signals[signal] : nullptr;
}

void write_pins(std::ostream &stream, const PageContents &contents, const PageLimits &limits) {
  const std::vector<bool> read_outside =
      contents.meaning.signals.empty() ? std::vector<bool>() : find_read_outside(contents.meaning);
  stream << "<table><thead><tr><th scope=\"col\">Pin</th><th scope=\"col\">Direction</th>"
            "<th scope=\"col\">Location</th><th scope=\"col\">Signal</th></tr></thead><tbody>\n";
  for (std::size_t i = 0; i < std::min(contents.pins.size(), limits.signals); i++) {
    const SignalRoles *roles = roles_at(contents, i);
    const std::string &location = *contents.design->xpins[i].xpin_num;
    write_name(stream, contents.pins[i], roles, limits);
    stream << "<td>" << (roles == nullptr ? "?" : direction_of(*roles, read_outside[i])) << "</td><td class=\"name\">"
           << (location.empty() ? "<span class=\"quiet\">free</span>" : escape_html(location)) << "</td><td>"
           << (roles == nullptr ? "?" : kind_text(*roles)) << "</td></tr>\n";
  }
  stream << "</tbody></table>\n";
  write_left_out(stream, contents.pins.size(), limits, "pin");
}

void write_nodes(std::ostream &stream, const PageContents &contents, const PageLimits &limits) {
  stream << "<h3>Nodes</h3>\n<table><thead><tr><th scope=\"col\">Node</th><th scope=\"col\">Signal</th></tr></thead>"
            "<tbody>\n";
  for (std::size_t i = 0; i < std::min(contents.nodes.size(), limits.signals); i++) {
    const SignalRoles *roles = roles_at(contents, contents.pins.size() + i);
    write_name(stream, contents.nodes[i], roles, limits);
    stream << "<td>" << (roles == nullptr ? "?" : kind_text(*roles)) << "</td></tr>\n";
  }
  stream << "</tbody></table>\n";
  write_left_out(stream, contents.nodes.size(), limits, "node");
}

} // namespace

void write_signals(std::ostream &stream, const PageContents &contents, const PageLimits &limits) {
  stream << "<section id=\"pins\" aria-labelledby=\"pins-title\">\n<h2 id=\"pins-title\">Pins</h2>\n";
  if (contents.design == nullptr)
    stream << "<p>The truth table can&#39;t be read; its <a href=\"#messages\">messages</a> say why.</p>\n";
  else if (contents.pins.empty())
    stream << "<p>The design has no pins.</p>\n";
  else
    write_pins(stream, contents, limits);
  if (!contents.nodes.empty()) write_nodes(stream, contents, limits);
  stream << "</section>\n";
}

} // namespace cubekit
