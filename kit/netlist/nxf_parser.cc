// Reads an .nxf file into a Netlist, line by line, then joins by name the two descriptions of its
// connections: nets name the pins of symbols, and pins name their nets. Rules beyond form and connections
// (drivers, widths, vocabulary) are left to the check.
#include "kit/netlist/nxf_parser.h"

#include <algorithm>
#include <ostream>
#include <string_view>
#include <utility>

#include "kit/util/file.h"
#include "kit/util/large_list.h"
#include "kit/util/progress.h"

namespace cubekit {

namespace {

struct Parser {
  Netlist &netlist;
  Finding &error;
  std::string_view left; // of the text
  std::uint32_t line = 1;
  std::vector<std::string_view> items{};          // what the nets name, net after net, its source first
  std::vector<NetIndex> firsts{};                 // by net: the first one of its name
  std::vector<std::string_view> unknown{};        // nets that only pins name; pin.net continues after nets
  cubenet::TextSet<std::string_view> pin_names{}; // few, and close together in memory
  std::vector<bool> joined{};                     // by pin: a net has named it
};

bool fail(Parser &parser, std::string why) {
  parser.error = {parser.line, std::move(why)};
  return false;
}

bool skip(Parser &parser, std::string_view sought) {
  if (!parser.left.starts_with(sought)) return false;
  parser.left.remove_prefix(sought.size());
  return true;
}

// A whole line of fixed text.
bool expect_line(Parser &parser, std::string_view sought) {
  const std::string_view start = parser.left;
  if (!skip(parser, sought) || !skip(parser, "\n")) {
    parser.left = start;
    return fail(parser,
                sought.empty() ? "an empty line must stand here" : "'" + std::string(sought) + "' must stand here");
  }
  parser.line++;
  return true;
}

// A word ends at a blank or a ';', which is not consumed. False when it is empty or ends otherwise.
bool take_word(Parser &parser, std::string_view &word) {
  const std::string_view left = parser.left;
  std::size_t size = 0;
  while (size < left.size() && left[size] != ' ' && left[size] != ';' && left[size] != '\n') size++;
  word = left.substr(0, size);
  parser.left.remove_prefix(size);
  return size > 0 && size < left.size() && left[size] != '\n';
}

bool end_statement(Parser &parser, const char *what) {
  if (!skip(parser, ";\n")) return fail(parser, std::string(what) + " must end here with ';'");
  parser.line++;
  return true;
}

bool take_direction(Parser &parser, Direction &direction) {
  if (skip(parser, " IN "))
    direction = Direction::IN;
  else if (skip(parser, " OUT "))
    direction = Direction::OUT;
  else if (skip(parser, " BIDI "))
    direction = Direction::BIDI;
  else
    return fail(parser, "' IN ', ' OUT ' or ' BIDI ' must stand here");
  return true;
}

// "\tKEY text;", when the line begins so; the text may be empty.
bool take_field(Parser &parser, std::string_view key, std::string_view tail, std::string_view &value) {
  if (!skip(parser, key)) return true;
  const std::size_t end = parser.left.find('\n');
  const std::string_view rest = parser.left.substr(0, end);
  if (end == std::string_view::npos || !rest.ends_with(tail))
    return fail(parser, "the line must end with '" + std::string(tail) + "'");
  value = rest.substr(0, rest.size() - tail.size());
  parser.left.remove_prefix(end + 1);
  parser.line++;
  return true;
}

bool parse_head(Parser &parser) {
  Netlist &netlist = parser.netlist;
  return expect_line(parser, "NXF 11.0.5 L;") && expect_line(parser, "") && expect_line(parser, "SECTION HEADER;") &&
         take_field(parser, "\tDESIGN ", " 1.0.0;", netlist.design) &&
         take_field(parser, "\tDESCRIPTION ", ";", netlist.description) && expect_line(parser, "END;") &&
         expect_line(parser, "") && expect_line(parser, "SECTION DEVICE;") &&
         take_field(parser, "\tTECHNOLOGY ", ";", netlist.technology) &&
         take_field(parser, "\tPART ", ";", netlist.part) && expect_line(parser, "END;") && expect_line(parser, "") &&
         expect_line(parser, "SECTION LOGICAL;");
}

// XPIN pin IN|OUT|BIDI net;
bool parse_external_pins(Parser &parser) {
  while (skip(parser, "XPIN ")) {
    ExternalPin pin;
    pin.line = parser.line;
    if (!take_word(parser, pin.pin)) return fail(parser, "XPIN without a pin name");
    if (!take_direction(parser, pin.direction)) return false;
    if (!take_word(parser, pin.net_name)) return fail(parser, "XPIN without a net name");
    if (!end_statement(parser, "XPIN")) return false;
    parser.netlist.external_pins.push_back(pin);
  }
  return expect_line(parser, "");
}

// " gate.pin ...", up to the ';'.
bool parse_destinations(Parser &parser, Net &net) {
  for (; skip(parser, " "); net.destination_count++)
    if (!take_word(parser, parser.items.emplace_back())) return fail(parser, "a pin must stand here");
  return net.destination_count > 0 || fail(parser, "a pin must stand here");
}

// NET name [EXT] [SRC gate.pin] [DST gate.pin ...];  An empty line follows, except after an external input
// net.
bool parse_nets(Parser &parser) {
  constexpr std::size_t kBytesPerPin = 32; // of text: its item and its PIN statement
  std::uint32_t destinations = 0;
  reserve_large(parser.items, parser.left.size() / kBytesPerPin);
  while (skip(parser, "NET ")) {
    Net net;
    net.line = parser.line;
    net.first_destination = destinations;
    if (!take_word(parser, net.name)) return fail(parser, "NET without a name");
    net.external = skip(parser, " EXT");
    net.has_source = skip(parser, " SRC ");
    if (net.has_source && !take_word(parser, parser.items.emplace_back())) return fail(parser, "SRC without a pin");
    if (skip(parser, " DST") && !parse_destinations(parser, net)) return false;
    destinations += net.destination_count;
    net.rail = !net.has_source && !net.external;
    if (!net.has_source && net.destination_count == 0) return fail(parser, "a net without a source must have a DST");
    if (!end_statement(parser, "NET")) return false;
    if ((net.has_source || net.rail) && !expect_line(parser, "")) return false;
    parser.netlist.nets.push_back(net);
  }
  return true;
}

void add_fault(Netlist &netlist, std::size_t line, std::string text) {
  netlist.faults.push_back({line, std::move(text)});
}

void index_nets(Parser &parser) {
  Netlist &netlist = parser.netlist;
  reserve_names(netlist.nets_by_name, netlist.nets.size());
  for (NetIndex i = 0; i < netlist.nets.size(); i++) {
    const Net &net = netlist.nets[i];
    parser.firsts.push_back(add_name(netlist.nets_by_name, net.name, i));
    if (parser.firsts.back() != i) add_fault(netlist, net.line, "net " + quoted(net.name) + " has two statements");
  }
}

// "\tPIN pin IN|OUT|BIDI net;"
bool parse_pins(Parser &parser) {
  Netlist &netlist = parser.netlist;
  while (skip(parser, "\tPIN ")) {
    Pin pin;
    std::string_view word;
    if (!take_word(parser, word)) return fail(parser, "PIN without a name");
    pin.name = *parser.pin_names.insert(word).first;
    if (!take_direction(parser, pin.direction)) return false;
    if (!take_word(parser, word) && word.empty()) return fail(parser, "PIN without a net name");
    pin.net = find_net(netlist, word);
    if (pin.net == kNone) {
      pin.net = static_cast<NetIndex>(netlist.nets.size() + parser.unknown.size());
      parser.unknown.push_back(word);
    }
    if (!end_statement(parser, "PIN")) return false;
    netlist.pins.push_back(pin);
  }
  return true;
}

bool is_row(std::string_view literals) {
  bool good = true; // tested once at the end, so that the compiler can vectorize
  for (const char c : literals) good &= c == '0' || c == '1' || c == '-';
  return good;
}

bool parse_rows(Parser &parser, Symbol &symbol) {
  parser.line++;
  symbol.rows = parser.left.data();
  const std::size_t stride = symbol.width + kRowFrame;
  for (; !parser.left.starts_with("\tEND_PLA\n"); symbol.row_count++) {
    const std::string_view row = parser.left.substr(0, stride);
    if (row.size() < stride || row[0] != '\t' || !row.ends_with(" 1\n") || !is_row(row.substr(1, symbol.width)))
      return fail(parser, "a row of " + std::to_string(symbol.width) + " inputs or END_PLA must stand here");
    parser.left.remove_prefix(stride);
    parser.line++;
  }
  return expect_line(parser, "\tEND_PLA");
}

// SYM primitive instance [PROTECT|HARD];  pins, the rows of a PLA, END; and an empty line.
bool parse_symbol(Parser &parser) {
  Netlist &netlist = parser.netlist;
  Symbol symbol;
  symbol.line = parser.line;
  symbol.first_pin = static_cast<std::uint32_t>(netlist.pins.size());
  if (!take_word(parser, symbol.primitive_text) || !skip(parser, " ")) return fail(parser, "SYM without a primitive");
  if (!take_word(parser, symbol.instance)) return fail(parser, "SYM without an instance name");
  symbol.protect = skip(parser, " PROTECT");
  symbol.hard = !symbol.protect && skip(parser, " HARD");
  if (!end_statement(parser, "SYM") || !parse_pins(parser)) return false;
  symbol.pin_count = static_cast<std::uint32_t>(netlist.pins.size()) - symbol.first_pin;
  if (!symbol.hard)
    symbol.primitive = parse_primitive(symbol.primitive_text, symbol.width); // a macro may have any name
  const PrimitiveRow &row = primitive_of(symbol);
  if (row.numbered && !row.width_in_name) symbol.width = symbol.pin_count == 0 ? 0 : symbol.pin_count - 1;
  if (skip(parser, "\tBEGIN_PLA\n") && !parse_rows(parser, symbol)) return false;
  if (!expect_line(parser, "END;") || !expect_line(parser, "")) return false;
  netlist.symbols.push_back(symbol);
  return true;
}

bool parse_statements(Parser &parser) {
  if (!parse_head(parser) || !parse_external_pins(parser) || !parse_nets(parser)) return false;
  index_nets(parser);
  reserve_large(parser.netlist.pins, parser.items.size());
  parser.netlist.symbols.reserve(parser.netlist.nets.size());
  while (skip(parser, "SYM "))
    if (!parse_symbol(parser)) return false;
  if (!expect_line(parser, "END;") || !expect_line(parser, "") || !expect_line(parser, "END;") ||
      !expect_line(parser, ""))
    return false;
  return parser.left.empty() || fail(parser, "the file must end here");
}

void index_symbols(Netlist &netlist) {
  reserve_names(netlist.symbols_by_instance, netlist.symbols.size());
  for (SymbolIndex i = 0; i < netlist.symbols.size(); i++) {
    const Symbol &symbol = netlist.symbols[i];
    if (add_name(netlist.symbols_by_instance, symbol.instance, i) != i)
      add_fault(netlist, symbol.line, "two symbols are named " + quoted(symbol.instance));
    if (!is_macro(symbol) || symbol.pin_count <= kFewPins) continue;
    for (std::uint32_t p = symbol.first_pin; p < symbol.first_pin + symbol.pin_count; p++)
      netlist.macro_pins.try_emplace({i, netlist.pins[p].name}, p);
  }
}

void index_external_pins(Netlist &netlist) {
  for (std::uint32_t i = 0; i < netlist.external_pins.size(); i++) {
    ExternalPin &pin = netlist.external_pins[i];
    if (add_name(netlist.external_by_pin, pin.pin, i) != i)
      add_fault(netlist, pin.line, "pin " + quoted(pin.pin) + " has two XPIN lines");
    pin.net = find_net(netlist, pin.net_name);
    if (pin.net == kNone)
      add_fault(netlist, pin.line, "there is no net " + quoted(pin.net_name) + " for pin " + quoted(pin.pin));
  }
}

std::string_view net_name_of(const Parser &parser, const Pin &pin) {
  const std::vector<Net> &nets = parser.netlist.nets;
  return pin.net < nets.size() ? nets[pin.net].name : parser.unknown[pin.net - nets.size()];
}

// The pin that an item of a net names, and that in turn names the net, or one of the same name.
EndPoint join_item(Parser &parser, NetIndex net_index, std::string_view item) {
  Netlist &netlist = parser.netlist;
  const Net &net = netlist.nets[net_index];
  const auto fault = [&](const std::string &why) {
    add_fault(netlist, net.line, "net " + quoted(net.name) + " names " + quoted(item) + ", " + why);
    return EndPoint{};
  };
  const std::size_t dot = item.rfind('.');
  if (dot == std::string_view::npos) return fault("which is not an instance and a pin");
  const SymbolIndex symbol = find_symbol(netlist, item.substr(0, dot));
  if (symbol == kNone) return fault("but there is no such symbol");
  const std::uint32_t found = find_pin(netlist, symbol, item.substr(dot + 1));
  if (found == kNone) return fault("but the symbol has no such pin");
  Pin &pin = netlist.pins[found];
  const bool is_on_net =
      pin.net == net_index || (pin.net < netlist.nets.size() && parser.firsts[pin.net] == parser.firsts[net_index]);
  if (!is_on_net) return fault("but that pin is on net " + quoted(net_name_of(parser, pin)));
  if (parser.joined[found]) return fault("which a net has named already");
  parser.joined[found] = true;
  pin.net = net_index;
  return {symbol, found};
}

void join(Parser &parser) {
  Netlist &netlist = parser.netlist;
  index_symbols(netlist);
  index_external_pins(netlist);
  parser.joined.resize(netlist.pins.size());
  auto item = parser.items.begin();
  reserve_large(netlist.destinations, parser.items.size());
  for (NetIndex i = 0; i < netlist.nets.size(); i++) {
    Net &net = netlist.nets[i];
    if (net.has_source) net.source = join_item(parser, i, *item++);
    for (std::uint32_t d = 0; d < net.destination_count; d++)
      netlist.destinations.push_back(join_item(parser, i, *item++));
  }
  for (const Symbol &symbol : netlist.symbols) {
    for (std::uint32_t p = symbol.first_pin; p < symbol.first_pin + symbol.pin_count; p++) {
      if (parser.joined[p]) continue;
      Pin &pin = netlist.pins[p];
      add_fault(netlist, symbol.line,
                "pin " + quoted(pin.name) + " of " + quoted(symbol.instance) + " is on net " +
                    quoted(net_name_of(parser, pin)) + ", which doesn't name it");
      pin.net = kNone;
    }
  }
}

} // namespace

bool parse_nxf(std::string text, Netlist &netlist, Finding &error) {
  netlist = Netlist();
  netlist.text = std::move(text);
  Parser parser{netlist, error, netlist.text};
  if (!parse_statements(parser)) return false;
  join(parser);
  return true;
}

bool read_nxf(const std::string &path, Netlist &netlist, std::ostream &errors) {
  std::string text;
  Finding error;
  const auto read = [&] { return read_file(path, text, error) && parse_nxf(std::move(text), netlist, error); };
  if (during("reading the netlist", read)) return true;
  print_finding(errors, path, error);
  return false;
}

bool load_nxf(const std::string &path, Netlist &netlist, std::ostream &errors) {
  if (!read_nxf(path, netlist, errors)) return false;
  for (const Finding &fault : netlist.faults) print_finding(errors, path, fault);
  return netlist.faults.empty();
}

} // namespace cubekit
