// Reads a ddf netlist line by line.
#include "kit/check/ddf_parser.h"

#include <algorithm>
#include <string>

namespace cubekit {

namespace {

struct DdfParser {
  std::string_view left;
  const std::function<bool(std::string_view)> &is_instance;
  DdfNetlist &netlist;
  Finding &error;
  std::size_t line = 1;
  // Where the next ": " of the line is, searched for once for all places before it: one long line may hold
  // many latches.
  const char *colon = nullptr;
};

bool fail(DdfParser &parser, std::string text) {
  parser.error = {parser.line, std::move(text)};
  return false;
}

bool skip(DdfParser &parser, std::string_view text) {
  if (!parser.left.starts_with(text)) return false;
  parser.left.remove_prefix(text.size());
  if (text.ends_with('\n')) parser.line++;
  return true;
}

bool expect(DdfParser &parser, std::string_view text) {
  if (skip(parser, text)) return true;
  while (text.ends_with('\n')) text.remove_suffix(1);
  return fail(parser, "'" + std::string(text) + "' must stand here");
}

// The text up to `stop`, which is skipped; both must be on the line, and the text must not be empty.
bool take(DdfParser &parser, std::string_view stop, std::string_view &text) {
  const std::size_t end = parser.left.find(stop);
  text = parser.left.substr(0, end);
  if (end == std::string_view::npos || end == 0 || text.find('\n') != std::string_view::npos)
    return fail(parser, "the line must hold a name and '" + std::string(stop.substr(0, stop.find('\n'))) + "'");
  parser.left.remove_prefix(end + stop.size());
  if (stop.ends_with('\n')) parser.line++;
  return true;
}

// Items with ", " between them.
void split_items(std::string_view text, std::vector<std::string_view> &items) {
  for (std::size_t at = 0;;) {
    const std::size_t comma = text.find(", ", at);
    items.push_back(text.substr(at, comma == std::string_view::npos ? comma : comma - at));
    if (comma == std::string_view::npos) return;
    at = comma + 2;
  }
}

bool take_ports(DdfParser &parser, std::string_view label, std::vector<std::string_view> &ports) {
  if (!skip(parser, label)) return true;
  std::string_view list;
  if (!take(parser, ";\n", list)) return false;
  split_items(list, ports);
  if (std::ranges::none_of(ports, &std::string_view::empty)) return true;
  parser.line--; // of the list
  return fail(parser, "a list of pins names an empty one");
}

// No signal name is longer, whatever it is renamed to.
constexpr std::size_t kLongestName = 256;

// No primitive of the library has a longer one, with its width.
constexpr std::size_t kLongestPrimitive = 16;

// Up to the next ": " of the line; npos when it has none.
std::size_t distance_to_colon(DdfParser &parser, std::string_view behind) {
  if (parser.colon == nullptr || parser.colon < behind.data()) {
    const std::string_view before = behind.substr(0, behind.find(": "));
    parser.colon = before.data() + std::min(before.find('\n'), before.size());
  }
  const auto distance = static_cast<std::size_t>(parser.colon - behind.data());
  return distance < behind.size() && behind[distance] == ':' ? distance : std::string_view::npos;
}

// Whether something that ends the name of a latch begins there.
bool begins_behind_latch(DdfParser &parser, std::string_view behind) {
  const std::size_t colon = distance_to_colon(parser, behind);
  if (behind.starts_with("SYM ")) return behind.starts_with("SYM XBIDI1 ") || colon != std::string_view::npos;
  if (colon == std::string_view::npos) return behind.starts_with("ENDSYMBOLS;");
  // A longer name may go on from here; the right one leaves a known primitive.
  std::uint32_t width = 0;
  return colon <= kLongestPrimitive && parse_primitive(behind.substr(0, colon), width) != kMacro;
}

// XDL2 to XDL4 end where something else begins and a symbol's name has ended.
bool take_unended(DdfParser &parser, std::string_view &instance) {
  for (std::size_t end = 1; end < std::min(parser.left.size(), kLongestName); end++) {
    if (parser.left[end - 1] == '\n' || parser.left[end] == '\n') break;
    if (!begins_behind_latch(parser, parser.left.substr(end)) || !parser.is_instance(parser.left.substr(0, end)))
      continue;
    instance = parser.left.substr(0, end);
    parser.left.remove_prefix(end);
    return true;
  }
  return fail(parser, "the line must hold the name of a latch and what follows it");
}

// "\tPIN D0 IN net;" below a register.
bool take_data_pin(DdfParser &parser, std::vector<DdfSymbol> &symbols) {
  if (symbols.empty() || !symbols.back().data_net.empty()) return fail(parser, "a pin line must follow a register");
  return take(parser, ";\n", symbols.back().data_net);
}

bool take_symbol(DdfParser &parser) {
  DdfSymbol symbol;
  symbol.line = parser.line;
  if (skip(parser, "\tPIN D0 IN ")) return take_data_pin(parser, parser.netlist.symbols);
  if (skip(parser, "SYM XBIDI1 ")) {
    symbol.primitive = "XBIDI1";
    if (!take(parser, ";\n", symbol.instance)) return false;
  } else {
    if (!take(parser, ": ", symbol.primitive)) return false;
    symbol.unended = symbol.primitive == "XDL2" || symbol.primitive == "XDL3" || symbol.primitive == "XDL4";
    if (symbol.unended ? !take_unended(parser, symbol.instance)
                       : !take(parser, symbol.primitive == "ZDOT" ? "\n" : ";\n", symbol.instance))
      return false;
    constexpr std::string_view kProtect = " PROTECT";
    symbol.protect = symbol.instance.ends_with(kProtect);
    if (symbol.protect) symbol.instance.remove_suffix(kProtect.size());
  }
  parser.netlist.symbols.push_back(symbol);
  return true;
}

bool take_net(DdfParser &parser) {
  DdfNet net;
  net.line = parser.line;
  net.first_item = static_cast<std::uint32_t>(parser.netlist.items.size());
  std::string_view items;
  if (!take(parser, ": ", net.name) || !take(parser, ";\n", items)) return false;
  split_items(items, parser.netlist.items);
  net.item_count = static_cast<std::uint32_t>(parser.netlist.items.size()) - net.first_item;
  parser.netlist.nets.push_back(net);
  return true;
}

} // namespace

bool parse_ddf(std::string_view text, const std::function<bool(std::string_view)> &is_instance, DdfNetlist &netlist,
               Finding &error) {
  netlist = {};
  DdfParser parser{text, is_instance, netlist, error};
  // The name of the cell may be empty.
  if (!expect(parser, "CELL: ")) return false;
  const std::size_t cell_end = parser.left.find(";\n\n");
  if (cell_end == std::string_view::npos) return fail(parser, "the cell's name must end with ';' and an empty line");
  netlist.cell = parser.left.substr(0, cell_end);
  parser.left.remove_prefix(cell_end + 3);
  parser.line += 2;
  if (!take_ports(parser, "OUTPUTS: ", netlist.outputs) || !take_ports(parser, "INPUTS: ", netlist.inputs) ||
      !take_ports(parser, "INOUTS: ", netlist.inouts) || !expect(parser, "\n") || !expect(parser, "SYMBOLS:\n"))
    return false;
  while (!skip(parser, "ENDSYMBOLS;\n"))
    if (!take_symbol(parser)) return false;
  if (!expect(parser, "\n") || !expect(parser, "NETS:\n")) return false;
  while (!skip(parser, "ENDNETS;\n"))
    if (!take_net(parser)) return false;
  if (!expect(parser, "\n") || !expect(parser, "ENDCELL: " + std::string(netlist.cell) + ";\n")) return false;
  return parser.left.empty() || fail(parser, "the file must end here");
}

} // namespace cubekit
