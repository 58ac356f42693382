// Reads an .nxf file into a Netlist: first the statements, line by line, then the joints between nets and symbols. Nets
// stand before the symbols that they name, so their items wait as text until all symbols are known. What a netlist must
// be beyond that (drivers, widths, vocabulary) is judged by the check, not here.
#include "kit/nxf_parser.h"

#include <algorithm>
#include <cstring>
#include <ostream>
#include <string_view>
#include <utility>

#include "kit/nxf_join.h"
#include "kit/progress.h"
#include "kit/words.h"

namespace cubekit {

namespace {

// "A12 IN ", in eight bytes.
struct InputPattern {
  std::uint64_t bytes, mask;
  std::size_t size;
};

struct Parser {
  Netlist &netlist;
  Finding &error;
  const char *at;
  const char *end;
  Joints joints;
  std::uint32_t line = 1;
  HashIndex pin_names{};                         // into netlist.pin_names
  std::vector<InputPattern> input_patterns{};    // of netlist.input_names, as far as they fit
  NetIndex last_nets[3] = {kNone, kNone, kNone}; // of the last pin of each direction
};

bool fail(Parser &parser, std::string text) {
  parser.error = {parser.line, std::move(text)};
  return false;
}

[[gnu::always_inline]] inline bool starts_with(const Parser &parser, std::string_view text) {
  return static_cast<std::size_t>(parser.end - parser.at) >= text.size() &&
         std::memcmp(parser.at, text.data(), text.size()) == 0;
}

[[gnu::always_inline]] inline bool skip(Parser &parser, std::string_view text) {
  if (!starts_with(parser, text)) return false;
  parser.at += text.size();
  return true;
}

// A whole line of fixed text.
[[gnu::always_inline]] inline bool expect_line(Parser &parser, std::string_view text) {
  const char *start = parser.at;
  if (!skip(parser, text) || !skip(parser, "\n")) {
    parser.at = start;
    return fail(parser, text.empty() ? "an empty line must stand here" : "'" + std::string(text) + "' must stand here");
  }
  parser.line++;
  return true;
}

// A word ends at a blank or a ';', which stays.
bool take_word(Parser &parser, std::string_view &word) {
  const char *start = parser.at;
  parser.at = find_word_end(start);
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

// The blanks between two places, or kNone when there is something else than words with one blank before each.
std::size_t count_blanks(const char *at, const char *stop) {
  std::size_t blanks = 0;
  bool odd = at == stop || stop[-1] == ' ';
  while (at < stop && !odd) {
    const auto size = std::min<std::ptrdiff_t>(stop - at, 255);
    std::uint8_t met = 0, wrong = 0; // bytes, so that many are looked at at once
    for (std::ptrdiff_t i = 0; i < size; i++) {
      const std::uint8_t blank = at[i] == ' ';
      met = static_cast<std::uint8_t>(met + blank);
      wrong |= (blank & (at[i + 1] == ' ')) | (at[i] == '\n');
    }
    blanks += met;
    odd = wrong != 0;
    at += size;
  }
  return odd ? kNone : blanks;
}

// [ gate.pin ...], up to the ';'
bool parse_destinations(Parser &parser, std::uint32_t &count) {
  count = 0;
  const auto left = static_cast<std::size_t>(parser.end - parser.at);
  const auto *stop = static_cast<const char *>(std::memchr(parser.at, ';', left));
  if (stop != nullptr && starts_with(parser, " ")) {
    if (const std::size_t blanks = count_blanks(parser.at, stop); blanks != kNone) {
      count = static_cast<std::uint32_t>(blanks);
      parser.at = stop;
      return true;
    }
  }
  std::string_view item;
  for (; skip(parser, " "); count++)
    if (!take_word(parser, item)) return fail(parser, "a pin must stand here");
  return true;
}

// NET name [EXT] [SRC gate.pin] [DST gate.pin ...];  An empty line follows, but not behind an external input net.
bool parse_nets(Parser &parser) {
  constexpr std::size_t kBytesPerNet = 256; // with its symbol; where nets are shorter, the lists grow
  parser.netlist.nets.reserve(parser.netlist.text.size() / kBytesPerNet);
  parser.joints.open_nets.reserve(parser.netlist.text.size() / kBytesPerNet);
  std::uint32_t destinations = 0;
  while (skip(parser, "NET ")) {
    Net net;
    Joints::OpenNet open;
    net.line = parser.line;
    net.in_order = true;
    net.first_destination = open.next_destination = destinations;
    if (!take_word(parser, net.name)) return fail(parser, "NET without a name");
    net.external = skip(parser, " EXT");
    net.has_source = skip(parser, " SRC ");
    std::string_view source;
    if (net.has_source && !take_word(parser, source)) return fail(parser, "SRC without a pin");
    if (net.has_source) open.source = source.data();
    if (skip(parser, " DST")) {
      open.destination = parser.at + 1;
      if (!parse_destinations(parser, net.destination_count)) return false;
    }
    if (net.destination_count == 0) open.destination = parser.at;
    destinations += net.destination_count;
    net.rail = !net.has_source && !net.external;
    if (!net.has_source && net.destination_count == 0) return fail(parser, "a net without a source must have a DST");
    if (!end_statement(parser, "NET")) return false;
    if ((net.has_source || net.rail) && !expect_line(parser, "")) return false;
    parser.netlist.nets.push_back(net);
    parser.joints.open_nets.push_back(open);
  }
  parser.netlist.destinations.resize(destinations);
  // In a sound netlist every item of a net is a pin, and most symbols drive one net.
  parser.netlist.pins.reserve(destinations + parser.netlist.nets.size());
  parser.netlist.symbols.reserve(parser.netlist.nets.size());
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

bool is_numbered(std::string_view name, std::size_t number) { return name == "A" + std::to_string(number); }

// The name as all pins have it that share it.
PinName share_name(Parser &parser, std::string_view name) {
  std::deque<std::string_view> &names = parser.netlist.pin_names;
  const auto next = static_cast<std::uint32_t>(names.size());
  const std::uint32_t at =
      add_value(parser.pin_names, hash_name(name), next, [&](std::uint32_t other) { return names[other] == name; });
  if (at == next) {
    names.push_back(name);
    // An item of a net breaks at its last dot.
    if (name.find('.') != std::string_view::npos) parser.joints.in_order = false;
  }
  return {&names[at]};
}

// The next input in its place: the pattern of the places to come grows with the symbols.
void add_input_name(Parser &parser, PinName name) {
  parser.netlist.input_names.push_back(name);
  const std::string text = std::string(std::string_view(name)) + " IN ";
  if (text.size() > 8) return;
  char bytes[8] = {};
  text.copy(bytes, sizeof bytes);
  parser.input_patterns.push_back({load_bytes(bytes), kFirstBytes[text.size()], text.size()});
}

// "A12 IN " in its place among the pins, or any other name and direction.
bool take_pin_name(Parser &parser, std::size_t place, Pin &pin) {
  if (place < parser.input_patterns.size()) {
    const InputPattern &pattern = parser.input_patterns[place];
    if ((load_bytes(parser.at) & pattern.mask) == pattern.bytes) {
      pin.name = parser.netlist.input_names[place];
      parser.at += pattern.size;
      return true;
    }
  }
  std::string_view name;
  if (!take_word(parser, name)) return fail(parser, "PIN without a name");
  if (!take_direction(parser, pin.direction)) return false;
  pin.name = share_name(parser, name);
  if (place == parser.netlist.input_names.size() && is_numbered(name, place)) add_input_name(parser, pin.name);
  return true;
}

// Nets and symbols come in like order: often the net is the one behind that of the last such pin.
bool take_net_of_pin(Parser &parser, Pin &pin) {
  const std::vector<Net> &nets = parser.netlist.nets;
  NetIndex &last = parser.last_nets[static_cast<std::size_t>(pin.direction)];
  const NetIndex next = last + 1;
  if (next < nets.size()) {
    const std::string_view name = nets[next].name;
    if (static_cast<std::size_t>(parser.end - parser.at) > name.size() &&
        same_bytes(parser.at, name.data(), name.size()) && parser.at[name.size()] == ';') {
      parser.at += name.size();
      pin.net = last = next;
      return true;
    }
  }
  std::string_view name;
  if (!take_word(parser, name)) return fail(parser, "PIN without a net name");
  pin.net = find_value(parser.netlist.nets_by_name, hash_name(name), [&](NetIndex net) {
    return nets[net].name.size() == name.size() && same_bytes(nets[net].name.data(), name.data(), name.size());
  });
  if (pin.net != kNone) {
    last = pin.net;
  } else {
    parser.joints.strangers.emplace_back(parser.netlist.pins.size(), name);
    parser.joints.in_order = false;
  }
  return true;
}

// "\tPIN pin IN|OUT|BIDI net;" as often as it stands.
bool parse_pins(Parser &parser, Symbol &symbol) {
  Netlist &netlist = parser.netlist;
  const auto symbol_index = static_cast<SymbolIndex>(netlist.symbols.size());
  symbol.first_pin = static_cast<std::uint32_t>(netlist.pins.size());
  while (skip(parser, "\tPIN ")) {
    Pin pin;
    const auto index = static_cast<std::uint32_t>(netlist.pins.size());
    if (!take_pin_name(parser, index - symbol.first_pin, pin) || !take_net_of_pin(parser, pin) ||
        !end_statement(parser, "PIN"))
      return false;
    netlist.pins.push_back(pin);
    join_pin(parser.joints, symbol_index, symbol.instance, index);
  }
  symbol.pin_count = static_cast<std::uint32_t>(netlist.pins.size()) - symbol.first_pin;
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
  if (!parse_head(parser) || !parse_external_pins(parser) || !parse_nets(parser)) return false;
  index_nets(parser.joints);
  if (!parse_symbols(parser)) return false;
  if (!expect_line(parser, "END;") || !expect_line(parser, "") || !expect_line(parser, "END;") ||
      !expect_line(parser, ""))
    return false;
  return parser.at == parser.end || fail(parser, "the file must end here");
}

} // namespace

bool parse_nxf(FileText text, Netlist &netlist, Finding &error) {
  netlist = Netlist();
  netlist.text = std::move(text);
  const char *start = netlist.text.data();
  Parser parser{netlist, error, start, start + netlist.text.size(), Joints{netlist, true, {}, {}}};
  if (!parse_statements(parser)) return false;
  finish_joints(parser.joints);
  return true;
}

bool load_nxf(const std::string &path, Netlist &netlist, std::ostream &errors) {
  FileText text;
  Finding error;
  const auto read = [&] { return read_file(path, text, error) && parse_nxf(std::move(text), netlist, error); };
  if (!during("reading the netlist", read)) {
    print_finding(errors, path, error);
    return false;
  }
  for (const Finding &fault : netlist.faults) print_finding(errors, path, fault);
  return netlist.faults.empty();
}

} // namespace cubekit
