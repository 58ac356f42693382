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

// "\tPIN A12 IN ", as two words of eight bytes.
struct PinPattern {
  std::uint64_t first, rest;
  std::uint64_t rest_mask;
  std::uint32_t size; // 0: the text has more than sixteen bytes
  Direction direction;
};

struct Parser {
  Netlist &netlist;
  Finding &error;
  const char *at;
  const char *end;
  Joints joints;
  std::uint32_t line = 1;
  HashIndex pin_names{};                                     // into netlist.pin_names
  std::vector<PinPattern> pin_patterns{};                    // as netlist.pin_names, where they were met first
  cubenet::TextMap<std::string_view, std::uint32_t> kinds{}; // the last one of each primitive text
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

[[gnu::always_inline]] inline bool end_statement(Parser &parser, const char *what) {
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
  parser.joints.open_items.reserve(parser.netlist.text.size() / kBytesPerNet);
  std::uint32_t destinations = 0;
  while (skip(parser, "NET ")) {
    Net net;
    net.line = parser.line;
    net.first_destination = destinations;
    if (!take_word(parser, net.name)) return fail(parser, "NET without a name");
    net.external = skip(parser, " EXT");
    net.has_source = skip(parser, " SRC ");
    std::string_view source;
    if (net.has_source && !take_word(parser, source)) return fail(parser, "SRC without a pin");
    const char *first_item = nullptr;
    if (skip(parser, " DST")) {
      first_item = parser.at + 1;
      if (!parse_destinations(parser, net.destination_count)) return false;
    }
    if (net.destination_count == 0) first_item = parser.at;
    destinations += net.destination_count;
    net.rail = !net.has_source && !net.external;
    if (!net.has_source && net.destination_count == 0) return fail(parser, "a net without a source must have a DST");
    if (!end_statement(parser, "NET")) return false;
    if ((net.has_source || net.rail) && !expect_line(parser, "")) return false;
    parser.netlist.nets.push_back(net);
    parser.joints.open_items.push_back(first_item);
  }
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

// The name as all pins have it that share it. There can't be more than kMostPinNames.
bool share_name(Parser &parser, std::string_view name, Pin &pin) {
  std::vector<std::string_view> &names = parser.netlist.pin_names;
  const auto next = static_cast<std::uint32_t>(names.size());
  const std::uint32_t shared =
      add_value(parser.pin_names, hash_name(name), next, [&](std::uint32_t other) { return names[other] == name; });
  pin.name = shared & (kMostPinNames - 1);
  if (shared != next) return true;
  if (next == kMostPinNames) return fail(parser, "the symbols have too many names of pins");
  names.push_back(name);
  // An item of a net breaks at its last dot.
  if (name.find('.') != std::string_view::npos) parser.joints.in_order = false;
  return true;
}

// The statement begins at `start` and stands at its net's name.
void add_pattern(Parser &parser, const char *start, Direction direction) {
  const auto size = static_cast<std::size_t>(parser.at - start);
  const bool fits = size >= 8 && size <= 16;
  const std::uint64_t rest_mask = fits ? kFirstBytes[size - 8] : 0;
  parser.pin_patterns.push_back({load_bytes(start), load_bytes(start + 8) & rest_mask, rest_mask,
                                 static_cast<std::uint32_t>(fits ? size : 0), direction});
}

// The name of a net and the end of the statement. The name is looked up later, for the pin that netlist.pins gets next.
bool take_net_of_pin(Parser &parser, Pin &pin) {
  const char *const start = parser.at;
  const char *at = start;
  cubenet::TextHasher hasher;
  std::size_t last = 0;
  for (;; at += 8) {
    const std::uint64_t bytes = load_bytes(at);
    last = find_word_end(bytes);
    hasher.add(bytes & kFirstBytes[last]);
    if (last < 8) break;
  }
  parser.at = at + last;
  const auto size = static_cast<std::size_t>(parser.at - start);
  if (size == 0) return fail(parser, "PIN without a net name");
  pin.net = kNone;
  parser.joints.lookups.push_back({start, static_cast<std::uint32_t>(size),
                                   static_cast<std::uint32_t>(hasher.finish(size)),
                                   static_cast<std::uint32_t>(parser.netlist.pins.size())});
  return end_statement(parser, "PIN");
}

// The same for a net that is known to have many readers; nullptr when it is another. Returns the place behind.
[[gnu::always_inline]] inline const char *take_busy_net(Parser &parser, const char *at, Pin &pin) {
  BusyNets::Name name;
  if (!name.take(at)) return nullptr;
  const BusyNets::Entry &entry = parser.joints.busy_nets.at(name);
  const char *stop = at + name.size;
  if (entry.name.first != name.first || entry.name.rest != name.rest || stop + 2 > parser.end || stop[1] != '\n')
    return nullptr;
  pin.net = entry.net;
  return stop + 2;
}

// The same for the net that is most likely the next to be driven.
[[gnu::always_inline]] inline const char *take_next_driven(Parser &parser, const char *at, Pin &pin) {
  const std::vector<Net> &nets = parser.netlist.nets;
  if (parser.joints.next_driven >= nets.size()) return nullptr;
  const std::string_view name = nets[parser.joints.next_driven].name;
  if (static_cast<std::size_t>(parser.end - at) < name.size() + 2 || !same_bytes(at, name.data(), name.size()))
    return nullptr;
  at += name.size();
  if (at[0] != ';' || at[1] != '\n') return nullptr;
  pin.net = parser.joints.next_driven++;
  return at + 2;
}

// The pins that the symbol has like the last one of its primitive.
bool take_expected_pins(Parser &parser, const SymbolKind &kind) {
  std::vector<Pin> &pins = parser.netlist.pins;
  for (std::uint32_t p = kind.first_pin; p < kind.first_pin + kind.pin_count; p++) {
    Pin pin = pins[p];
    const PinPattern &pattern = parser.pin_patterns[pin.name];
    if (load_bytes(parser.at) != pattern.first || (load_bytes(parser.at + 8) & pattern.rest_mask) != pattern.rest ||
        pattern.size == 0 || pattern.direction != pin.direction)
      break;
    parser.at += pattern.size;
    const char *end = pin.direction == Direction::OUT ? take_next_driven(parser, parser.at, pin)
                                                      : take_busy_net(parser, parser.at, pin);
    if (end != nullptr) {
      parser.at = end;
      parser.line++;
    } else if (!take_net_of_pin(parser, pin)) {
      return false;
    }
    pins.push_back(pin);
  }
  return true;
}

// "\tPIN pin IN|OUT|BIDI net;"
bool take_other_pin(Parser &parser, const char *start) {
  Pin pin;
  std::string_view name;
  Direction direction = Direction::IN;
  if (!take_word(parser, name)) return fail(parser, "PIN without a name");
  if (!take_direction(parser, direction) || !share_name(parser, name, pin)) return false;
  pin.direction = direction;
  if (parser.pin_patterns.size() < parser.netlist.pin_names.size()) add_pattern(parser, start, direction);
  if (!take_net_of_pin(parser, pin)) return false;
  parser.netlist.pins.push_back(pin);
  return true;
}

// The first `alike` pins are known to be those of the kind.
bool is_of_kind(const Netlist &netlist, const Symbol &symbol, const SymbolKind &kind, std::size_t alike) {
  if (symbol.hard != kind.hard || symbol.pin_count != kind.pin_count) return false;
  const Pin *pins = netlist.pins.data() + symbol.first_pin, *others = netlist.pins.data() + kind.first_pin;
  return std::equal(pins + alike, pins + symbol.pin_count, others + alike,
                    [](Pin a, Pin b) { return a.name == b.name && a.direction == b.direction; });
}

std::uint32_t add_kind(Netlist &netlist, const Symbol &symbol, std::string_view primitive) {
  SymbolKind kind{primitive, kMacro, symbol.hard, 0, symbol.first_pin, symbol.pin_count};
  if (!symbol.hard) kind.primitive = parse_primitive(primitive, kind.width); // a macro's name may be any
  const PrimitiveRow &row = kPrimitives[kind.primitive];
  if (row.numbered && !row.width_in_name) kind.width = symbol.pin_count > 0 ? symbol.pin_count - 1 : 0;
  netlist.kinds.push_back(kind);
  return static_cast<std::uint32_t>(netlist.kinds.size() - 1);
}

// The pins of the symbol, and with them its kind.
bool parse_pins(Parser &parser, std::string_view primitive, Symbol &symbol) {
  Netlist &netlist = parser.netlist;
  symbol.first_pin = static_cast<std::uint32_t>(netlist.pins.size());
  const auto [last, is_new] = parser.kinds.try_emplace(primitive, 0);
  if (!is_new && !take_expected_pins(parser, netlist.kinds[last->second])) return false;
  const std::size_t alike = netlist.pins.size() - symbol.first_pin;
  for (const char *start = parser.at; skip(parser, "\tPIN "); start = parser.at)
    if (!take_other_pin(parser, start)) return false;
  symbol.pin_count = static_cast<std::uint32_t>(netlist.pins.size()) - symbol.first_pin;
  if (is_new || !is_of_kind(netlist, symbol, netlist.kinds[last->second], alike))
    last->second = add_kind(netlist, symbol, primitive);
  const SymbolKind &kind = netlist.kinds[last->second];
  symbol.kind = last->second;
  symbol.primitive = kind.primitive;
  symbol.width = kind.width;
  return true;
}

// SYM primitive instance [PROTECT|HARD];  pins, the rows of a PLA, END; and an empty line.
bool parse_symbols(Parser &parser) {
  constexpr std::size_t kLookups = 64; // enough to wait for memory, few enough to stay in the nearest of it
  while (skip(parser, "SYM ")) {
    Symbol symbol;
    std::string_view primitive;
    symbol.line = parser.line;
    if (!take_word(parser, primitive) || !skip(parser, " ")) return fail(parser, "SYM without a primitive");
    if (!take_word(parser, symbol.instance)) return fail(parser, "SYM without an instance name");
    symbol.protect = skip(parser, " PROTECT");
    symbol.hard = !symbol.protect && skip(parser, " HARD");
    if (!end_statement(parser, "SYM") || !parse_pins(parser, primitive, symbol)) return false;
    if (skip(parser, "\tBEGIN_PLA\n") && !parse_rows(parser, symbol)) return false;
    if (!expect_line(parser, "END;") || !expect_line(parser, "")) return false;
    parser.netlist.symbols.push_back(symbol);
    if (parser.joints.lookups.size() >= kLookups) join_pins(parser.joints);
  }
  join_pins(parser.joints);
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
  Parser parser{netlist, error, start, start + netlist.text.size(), Joints{netlist}};
  if (!parse_statements(parser)) return false;
  finish_joints(parser.joints);
  return true;
}

bool read_nxf(const std::string &path, Netlist &netlist, std::ostream &errors) {
  FileText text;
  Finding error;
  const auto read = [&] { return read_file(path, text, error) && parse_nxf(std::move(text), netlist, error); };
  if (!during("reading the netlist", read)) {
    print_finding(errors, path, error);
    return false;
  }
  list_destinations(netlist);
  return true;
}

bool load_nxf(const std::string &path, Netlist &netlist, std::ostream &errors) {
  if (!read_nxf(path, netlist, errors)) return false;
  for (const Finding &fault : netlist.faults) print_finding(errors, path, fault);
  return netlist.faults.empty();
}

} // namespace cubekit
