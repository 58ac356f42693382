// Reads an .nxf file into a Netlist: first the statements, line by line, then the joints between nets and symbols. Nets
// stand before the symbols that they name, so their items wait as text until all symbols are known. What a netlist must
// be beyond that (drivers, widths, vocabulary) is judged by the check, not here.
#include "kit/nxf_parser.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <ostream>
#include <string_view>

namespace cubekit {

namespace {

// A symbol's pins up to this number are searched one by one.
constexpr std::uint32_t kFewPins = 8;

struct Parser {
  Netlist &netlist;
  Finding &error;
  const char *at;
  const char *end;
  std::uint32_t line = 1;
  std::vector<std::string_view> sources{};      // per net, empty for none
  std::vector<std::string_view> destinations{}; // of all nets, in order
};

bool fail(Parser &parser, std::string text) {
  parser.error = {parser.line, std::move(text)};
  return false;
}

bool starts_with(const Parser &parser, std::string_view text) {
  return static_cast<std::size_t>(parser.end - parser.at) >= text.size() &&
         std::memcmp(parser.at, text.data(), text.size()) == 0;
}

bool skip(Parser &parser, std::string_view text) {
  if (!starts_with(parser, text)) return false;
  parser.at += text.size();
  return true;
}

// A whole line of fixed text.
bool expect_line(Parser &parser, std::string_view text) {
  const char *start = parser.at;
  if (!skip(parser, text) || !skip(parser, "\n")) {
    parser.at = start;
    return fail(parser, text.empty() ? "an empty line must stand here" : "'" + std::string(text) + "' must stand here");
  }
  parser.line++;
  return true;
}

bool is_word_end(char c) { return c == ' ' || c == ';' || c == '\n'; }

// A word ends at a blank or a ';', which stays.
bool take_word(Parser &parser, std::string_view &word) {
  const char *start = parser.at;
  while (parser.at < parser.end && !is_word_end(*parser.at)) parser.at++;
  word = {start, static_cast<std::size_t>(parser.at - start)};
  return !word.empty() && parser.at < parser.end && *parser.at != '\n';
}

bool end_statement(Parser &parser, std::string_view what) {
  if (!skip(parser, ";\n")) return fail(parser, std::string(what) + " must end here with ';'");
  parser.line++;
  return true;
}

// "\tKEY text;", when the line begins so; the text may be empty.
bool take_field(Parser &parser, std::string_view key, std::string_view tail, std::string_view &value) {
  if (!skip(parser, key)) return true;
  const auto *stop =
      static_cast<const char *>(std::memchr(parser.at, '\n', static_cast<std::size_t>(parser.end - parser.at)));
  const std::string_view rest{parser.at, static_cast<std::size_t>((stop != nullptr ? stop : parser.end) - parser.at)};
  if (stop == nullptr || !rest.ends_with(tail))
    return fail(parser, "the line must end with '" + std::string(tail) + "'");
  value = rest.substr(0, rest.size() - tail.size());
  parser.at = stop + 1;
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

// NET name [EXT] [SRC gate.pin] [DST gate.pin ...];  An empty line follows, but not behind an external input net.
bool parse_nets(Parser &parser) {
  while (skip(parser, "NET ")) {
    Net net;
    net.line = parser.line;
    net.first_destination = static_cast<std::uint32_t>(parser.destinations.size());
    if (!take_word(parser, net.name)) return fail(parser, "NET without a name");
    net.external = skip(parser, " EXT");
    net.has_source = skip(parser, " SRC ");
    std::string_view source;
    if (net.has_source && !take_word(parser, source)) return fail(parser, "SRC without a pin");
    if (skip(parser, " DST")) {
      while (skip(parser, " ")) {
        if (!take_word(parser, parser.destinations.emplace_back())) return fail(parser, "a pin must stand here");
      }
    }
    net.destination_count = static_cast<std::uint32_t>(parser.destinations.size()) - net.first_destination;
    net.rail = !net.has_source && !net.external;
    if (!net.has_source && net.destination_count == 0) return fail(parser, "a net without a source must have a DST");
    if (!end_statement(parser, "NET")) return false;
    if ((net.has_source || net.rail) && !expect_line(parser, "")) return false;
    parser.netlist.nets.push_back(net);
    parser.sources.push_back(source);
  }
  return true;
}

// Every byte of the word is '0', '1' or '-'.
bool is_row_word(std::uint64_t word) {
  constexpr std::uint64_t kOnes = 0x0101010101010101U, kHigh = 0x80 * kOnes, kLow = 0x7F * kOnes;
  const std::uint64_t digit = ((word & 0xFE * kOnes) ^ '0' * kOnes) + kLow;
  const std::uint64_t dash = (word ^ '-' * kOnes) + kLow;
  return (((digit & dash) | word) & kHigh) == 0;
}

bool is_row(const char *at, std::size_t width) {
  std::uint64_t word = 0;
  for (; width >= 8; at += 8, width -= 8) {
    std::memcpy(&word, at, 8);
    if (!is_row_word(word)) return false;
  }
  for (; width > 0; at++, width--)
    if (*at != '0' && *at != '1' && *at != '-') return false;
  return true;
}

bool parse_rows(Parser &parser, Symbol &symbol) {
  parser.line++;
  const char *start = parser.at;
  const std::size_t stride = symbol.width + kRowFrame;
  while (!starts_with(parser, "\tEND_PLA\n")) {
    const bool fits = static_cast<std::size_t>(parser.end - parser.at) >= stride;
    if (!fits || *parser.at != '\t' || std::memcmp(parser.at + stride - 3, " 1\n", 3) != 0 ||
        !is_row(parser.at + 1, symbol.width))
      return fail(parser, "a row of " + std::to_string(symbol.width) + " inputs or END_PLA must stand here");
    parser.at += stride;
    parser.line++;
  }
  symbol.rows = {start, static_cast<std::size_t>(parser.at - start)};
  return expect_line(parser, "\tEND_PLA");
}

// "\tPIN pin IN|OUT|BIDI net;" as often as it stands.
bool parse_pins(Parser &parser, Symbol &symbol) {
  symbol.first_pin = static_cast<std::uint32_t>(parser.netlist.pins.size());
  while (skip(parser, "\tPIN ")) {
    Pin pin;
    if (!take_word(parser, pin.name)) return fail(parser, "PIN without a name");
    if (!take_direction(parser, pin.direction)) return false;
    if (!take_word(parser, pin.net_name)) return fail(parser, "PIN without a net name");
    if (!end_statement(parser, "PIN")) return false;
    parser.netlist.pins.push_back(pin);
  }
  symbol.pin_count = static_cast<std::uint32_t>(parser.netlist.pins.size()) - symbol.first_pin;
  return true;
}

// SYM primitive instance [PROTECT|HARD];  pins, the rows of a PLA, END; and an empty line.
bool parse_symbols(Parser &parser) {
  Symbol last;
  while (skip(parser, "SYM ")) {
    Symbol symbol;
    symbol.line = parser.line;
    if (!take_word(parser, symbol.primitive_text) || !skip(parser, " ")) return fail(parser, "SYM without a primitive");
    if (symbol.primitive_text == last.primitive_text)
      symbol.primitive = last.primitive, symbol.width = last.width;
    else
      symbol.primitive = parse_primitive(symbol.primitive_text, symbol.width);
    last = symbol;
    if (!take_word(parser, symbol.instance)) return fail(parser, "SYM without an instance name");
    symbol.protect = skip(parser, " PROTECT");
    symbol.hard = !symbol.protect && skip(parser, " HARD");
    if (symbol.hard) symbol.primitive = kMacro; // whatever its name
    if (!end_statement(parser, "SYM") || !parse_pins(parser, symbol)) return false;
    const PrimitiveRow &primitive = primitive_of(symbol);
    if (primitive.numbered && !primitive.width_in_name) symbol.width = symbol.pin_count > 0 ? symbol.pin_count - 1 : 0;
    if (skip(parser, "\tBEGIN_PLA\n") && !parse_rows(parser, symbol)) return false;
    if (!expect_line(parser, "END;") || !expect_line(parser, "")) return false;
    parser.netlist.symbols.push_back(symbol);
  }
  return true;
}

bool parse_statements(Parser &parser) {
  if (!parse_head(parser) || !parse_external_pins(parser) || !parse_nets(parser) || !parse_symbols(parser))
    return false;
  if (!expect_line(parser, "END;") || !expect_line(parser, "") || !expect_line(parser, "END;") ||
      !expect_line(parser, ""))
    return false;
  return parser.at == parser.end || fail(parser, "the file must end here");
}

std::string quoted(std::string_view text) { return "'" + std::string(text) + "'"; }

void add_fault(Netlist &netlist, std::size_t line, std::string text) {
  netlist.faults.push_back({line, std::move(text)});
}

void index_names(Netlist &netlist) {
  for (NetIndex i = 0; i < netlist.nets.size(); i++) {
    const Net &net = netlist.nets[i];
    if (add_name(netlist.nets_by_name, net.name, i) != i)
      add_fault(netlist, net.line, "net " + quoted(net.name) + " has two statements");
  }
  for (SymbolIndex i = 0; i < netlist.symbols.size(); i++) {
    const Symbol &symbol = netlist.symbols[i];
    if (add_name(netlist.symbols_by_instance, symbol.instance, i) != i)
      add_fault(netlist, symbol.line, "two symbols are named " + quoted(symbol.instance));
    if (symbol.primitive != kMacro || symbol.pin_count <= kFewPins) continue;
    NameIndex &ports = netlist.large_macros[i];
    for (std::uint32_t p = symbol.first_pin; p < symbol.first_pin + symbol.pin_count; p++)
      add_name(ports, netlist.pins[p].name, p);
  }
  for (std::uint32_t i = 0; i < netlist.external_pins.size(); i++) {
    ExternalPin &pin = netlist.external_pins[i];
    if (add_name(netlist.external_by_pin, pin.pin, i) != i)
      add_fault(netlist, pin.line, "pin " + quoted(pin.pin) + " has two XPIN lines");
    pin.net = find_net(netlist, pin.net_name);
    if (pin.net == kNone)
      add_fault(netlist, pin.line, "there is no net " + quoted(pin.net_name) + " for pin " + quoted(pin.pin));
  }
}

// Joins one item of a net with the pin it names; the pin must name the net in turn.
EndPoint join(Netlist &netlist, NetIndex net_index, std::string_view item) {
  const Net &net = netlist.nets[net_index];
  const auto fault = [&](const std::string &why) {
    add_fault(netlist, net.line, "net " + quoted(net.name) + " names " + quoted(item) + ", " + why);
    return EndPoint{};
  };
  const std::size_t dot = item.rfind('.');
  if (dot == std::string_view::npos) return fault("which is not an instance and a pin");
  const SymbolIndex symbol = find_symbol(netlist, item.substr(0, dot));
  if (symbol == kNone) return fault("but there is no such symbol");
  const std::uint32_t pin_index = find_pin(netlist, symbol, item.substr(dot + 1));
  if (pin_index == kNone) return fault("but the symbol has no such pin");
  Pin &pin = netlist.pins[pin_index];
  if (pin.net_name != net.name) return fault("but that pin is on net " + quoted(pin.net_name));
  if (pin.net != kNone) return fault("which a net has named already");
  pin.net = net_index;
  return {symbol, pin_index};
}

void join_nets(Parser &parser) {
  Netlist &netlist = parser.netlist;
  netlist.destinations.reserve(parser.destinations.size());
  for (NetIndex i = 0; i < netlist.nets.size(); i++) {
    Net &net = netlist.nets[i];
    if (net.has_source) net.source = join(netlist, i, parser.sources[i]);
    for (std::uint32_t d = 0; d < net.destination_count; d++)
      netlist.destinations.push_back(join(netlist, i, parser.destinations[net.first_destination + d]));
  }
  for (const Symbol &symbol : netlist.symbols) {
    for (std::uint32_t p = symbol.first_pin; p < symbol.first_pin + symbol.pin_count; p++) {
      const Pin &pin = netlist.pins[p];
      if (pin.net != kNone) continue;
      add_fault(netlist, symbol.line,
                "pin " + quoted(pin.name) + " of " + quoted(symbol.instance) + " is on net " + quoted(pin.net_name) +
                    ", which doesn't name it");
    }
  }
}

} // namespace

PrimitiveIndex parse_primitive(std::string_view text, std::uint32_t &width) {
  width = 0;
  const PrimitiveIndex exact = find_primitive(text);
  if (exact != kMacro && !kPrimitives[exact].width_in_name) return exact;
  const std::size_t digits = text.find_first_of("0123456789");
  if (digits == std::string_view::npos || text[digits] == '0') return kMacro;
  const PrimitiveIndex gate = find_primitive(text.substr(0, digits));
  if (gate == kMacro || !kPrimitives[gate].width_in_name) return kMacro;
  const char *end = text.data() + text.size();
  std::uint32_t number = 0;
  const auto [stop, fault] = std::from_chars(text.data() + digits, end, number);
  if (fault != std::errc() || stop != end) return kMacro;
  width = number;
  return gate;
}

std::uint32_t find_pin(const Netlist &netlist, SymbolIndex symbol_index, std::string_view name) {
  const Symbol &symbol = netlist.symbols[symbol_index];
  // Numbered inputs stand at the place that their number tells.
  std::uint32_t number = 0;
  const char *end = name.data() + name.size();
  if (name.size() > 1 && name[0] == 'A' && std::from_chars(name.data() + 1, end, number).ptr == end &&
      number < symbol.pin_count && netlist.pins[symbol.first_pin + number].name == name)
    return symbol.first_pin + number;
  if (symbol.primitive == kMacro && symbol.pin_count > kFewPins) {
    const auto ports = netlist.large_macros.find(symbol_index);
    return ports == netlist.large_macros.end() ? kNone : find_name(ports->second, name);
  }
  // Other pins stand behind them.
  const std::uint32_t few = std::min(symbol.pin_count, kFewPins);
  for (std::uint32_t p = symbol.first_pin + symbol.pin_count - few; p < symbol.first_pin + symbol.pin_count; p++)
    if (netlist.pins[p].name == name) return p;
  return kNone;
}

NetIndex net_at(const Netlist &netlist, SymbolIndex symbol, std::string_view pin) {
  const std::uint32_t found = find_pin(netlist, symbol, pin);
  return found == kNone ? kNone : netlist.pins[found].net;
}

bool read_file(const std::string &path, std::vector<char> &text, Finding &error) {
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  struct stat status {};
  if (descriptor < 0 || ::fstat(descriptor, &status) != 0) {
    error = {0, std::strerror(errno)};
    if (descriptor >= 0) ::close(descriptor);
    return false;
  }
  text.resize(static_cast<std::size_t>(status.st_size));
  std::size_t used = 0;
  ssize_t got = 0;
  while (used < text.size() && (got = ::read(descriptor, text.data() + used, text.size() - used)) > 0)
    used += static_cast<std::size_t>(got);
  if (got < 0) error = {0, std::strerror(errno)};
  ::close(descriptor);
  text.resize(used);
  return got >= 0;
}

bool parse_nxf(std::vector<char> text, Netlist &netlist, Finding &error) {
  netlist = Netlist();
  netlist.text = std::move(text);
  const char *start = netlist.text.data();
  Parser parser{netlist, error, start, start + netlist.text.size()};
  if (!parse_statements(parser)) return false;
  index_names(netlist);
  join_nets(parser);
  return true;
}

bool load_nxf(const std::string &path, Netlist &netlist, std::ostream &errors) {
  std::vector<char> text;
  Finding error;
  if (!read_file(path, text, error) || !parse_nxf(std::move(text), netlist, error)) {
    print_finding(errors, path, error);
    return false;
  }
  for (const Finding &fault : netlist.faults) print_finding(errors, path, fault);
  return netlist.faults.empty();
}

void print_finding(std::ostream &stream, const std::string &path, const Finding &finding) {
  stream << path;
  if (finding.line != 0) stream << ':' << finding.line;
  stream << ": " << finding.text << '\n';
}

} // namespace cubekit
