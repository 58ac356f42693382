// Reads an .nxf file into a Netlist, line by line. What a netlist must be beyond its form and its joints (drivers,
// widths, vocabulary) is judged by the check, not here.
//
// A file is first taken to be in order. Then the pins tell what a net leads to, and what the nets say is only held
// against them while the pins are read. A file that is not so, for whatever reason, is read once more, for its errors
// and faults, and joined by name at the end.
#include "kit/netlist/nxf_parser.h"

#include <array>
#include <cstring>
#include <ostream>
#include <string_view>
#include <utility>

#include "kit/netlist/nxf_join.h"
#include "kit/netlist/nxf_pins.h"
#include "kit/netlist/nxf_text.h"
#include "kit/util/progress.h"
#include "kit/util/words.h"
#include "util/text_hash.h"

namespace cubekit {

namespace {

struct Parser {
  Netlist &netlist;
  NxfText &text;
  Joints *joints; // null: joined by name
  PinReader pins{netlist, text, joints};

  // The kind of the last symbol of each primitive. Most are found by the first bytes of their text.
  struct ShortText {
    std::uint64_t bytes = 0; // with the blank behind it; 0: none
    const SymbolKind **kind = nullptr;
  };
  cubenet::TextMap<std::string_view, const SymbolKind *> last_kinds{};
  std::array<ShortText, 64> short_texts{};
};

// "\tKEY text;", when the line begins so; the text may be empty.
bool take_field(NxfText &text, std::string_view key, std::string_view tail, std::string_view &value) {
  if (!skip(text, key)) return true;
  const auto *stop =
      static_cast<const char *>(std::memchr(text.at, '\n', static_cast<std::size_t>(text.end - text.at)));
  const std::string_view rest{text.at, static_cast<std::size_t>((stop != nullptr ? stop : text.end) - text.at)};
  if (stop == nullptr || !rest.ends_with(tail)) return fail(text, "the line must end with '" + std::string(tail) + "'");
  value = rest.substr(0, rest.size() - tail.size());
  text.at = stop + 1;
  text.line++;
  return true;
}

bool parse_head(NxfText &text, Netlist &netlist) {
  return expect_line(text, "NXF 11.0.5 L;") && expect_line(text, "") && expect_line(text, "SECTION HEADER;") &&
         take_field(text, "\tDESIGN ", " 1.0.0;", netlist.design) &&
         take_field(text, "\tDESCRIPTION ", ";", netlist.description) && expect_line(text, "END;") &&
         expect_line(text, "") && expect_line(text, "SECTION DEVICE;") &&
         take_field(text, "\tTECHNOLOGY ", ";", netlist.technology) && take_field(text, "\tPART ", ";", netlist.part) &&
         expect_line(text, "END;") && expect_line(text, "") && expect_line(text, "SECTION LOGICAL;");
}

// XPIN pin IN|OUT|BIDI net;
bool parse_external_pins(NxfText &text, Netlist &netlist) {
  while (skip(text, "XPIN ")) {
    ExternalPin pin;
    pin.line = text.line;
    if (!take_word(text, pin.pin)) return fail(text, "XPIN without a pin name");
    if (!take_direction(text, pin.direction)) return false;
    if (!take_word(text, pin.net_name)) return fail(text, "XPIN without a net name");
    if (!end_statement(text, "XPIN")) return false;
    netlist.external_pins.push_back(pin);
  }
  return expect_line(text, "");
}

// " gate.pin ...", up to the ';'. Gives their number.
bool parse_destinations(NxfText &text, std::uint32_t &count) {
  std::string_view item;
  for (count = 0; skip(text, " "); count++)
    if (!take_word(text, item)) return fail(text, "a pin must stand here");
  return count > 0 || fail(text, "a pin must stand here");
}

// The same, unread: `first` is where the first item begins. False where something is odd.
bool pass_destinations(NxfText &text, const char *&first) {
  const auto *stop = static_cast<const char *>(std::memchr(text.at, ';', static_cast<std::size_t>(text.end - text.at)));
  if (stop == nullptr || *text.at != ' ' || stop[-1] == ' ') return false;
  first = text.at + 1;
  text.at = stop;
  return true;
}

// NET name [EXT] [SRC gate.pin] [DST gate.pin ...];  An empty line follows, but not behind an external input net.
bool parse_nets(Parser &parser) {
  constexpr std::size_t kBytesPerNet = 256; // with its symbol; where nets are shorter, the lists grow
  NxfText &text = parser.text;
  std::vector<Net> &nets = parser.netlist.nets;
  nets.reserve(parser.netlist.text.size() / kBytesPerNet);
  if (parser.joints != nullptr) parser.joints->open_items.reserve(parser.netlist.text.size() / kBytesPerNet);
  std::uint32_t destinations = 0;
  while (skip(text, "NET ")) {
    Net net;
    net.line = text.line;
    net.first_destination = destinations;
    if (!take_word(text, net.name)) return fail(text, "NET without a name");
    net.external = skip(text, " EXT");
    net.has_source = skip(text, " SRC ");
    std::string_view source;
    if (net.has_source && !take_word(text, source)) return fail(text, "SRC without a pin");
    const char *first_item = text.at;
    if (skip(text, " DST") && !(parser.joints != nullptr ? pass_destinations(text, first_item)
                                                         : parse_destinations(text, net.destination_count)))
      return false;
    destinations += net.destination_count;
    net.rail = !net.has_source && !net.external;
    if (!net.has_source && first_item == text.at) return fail(text, "a net without a source must have a DST");
    if (!end_statement(text, "NET")) return false;
    if ((net.has_source || net.rail) && !expect_line(text, "")) return false;
    nets.push_back(net);
    if (parser.joints != nullptr) parser.joints->open_items.push_back(first_item);
  }
  // Most symbols drive one net.
  parser.netlist.symbols.reserve(nets.size());
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

bool parse_rows(NxfText &text, std::size_t width, Symbol &symbol) {
  text.line++;
  symbol.rows = text.at;
  const std::size_t stride = width + kRowFrame;
  for (; !starts_with(text, "\tEND_PLA\n"); symbol.row_count++) {
    const bool fits = static_cast<std::size_t>(text.end - text.at) >= stride;
    if (!fits || *text.at != '\t' || std::memcmp(text.at + stride - 3, " 1\n", 3) != 0 || !is_row(text.at + 1, width))
      return fail(text, "a row of " + std::to_string(width) + " inputs or END_PLA must stand here");
    text.at += stride;
    text.line++;
  }
  return expect_line(text, "\tEND_PLA");
}

// Takes the name of a primitive, and finds where the kind of its last symbol is kept.
bool take_primitive(Parser &parser, std::string_view &primitive_text, const SymbolKind **&last) {
  const std::uint64_t bytes = load_bytes(parser.text.at);
  const std::size_t size = find_word_end(bytes);
  const std::uint64_t begin = size < 8 ? bytes & kFirstBytes[size + 1] : 0;
  Parser::ShortText &known = parser.short_texts[(begin * 0x9E3779B97F4A7C15U) >> 58];
  if (begin != 0 && known.bytes == begin) {
    primitive_text = {parser.text.at, size};
    parser.text.at += size + 1;
    last = known.kind;
    return true;
  }
  if (!take_word(parser.text, primitive_text) || !skip(parser.text, " "))
    return fail(parser.text, "SYM without a primitive");
  last = &parser.last_kinds[primitive_text];
  known = {begin, last};
  return true;
}

// SYM primitive instance [PROTECT|HARD];  pins, the rows of a PLA, END; and an empty line.
bool parse_symbol(Parser &parser) {
  NxfText &text = parser.text;
  Netlist &netlist = parser.netlist;
  Symbol symbol;
  SymbolHead head;
  const SymbolKind **kind = nullptr;
  symbol.line = text.line;
  symbol.first_pin = static_cast<std::uint32_t>(netlist.pin_nets.size());
  if (!take_primitive(parser, head.primitive_text, kind)) return false;
  if (!take_word(text, head.instance)) return fail(text, "SYM without an instance name");
  head.protect = skip(text, " PROTECT");
  head.hard = !head.protect && skip(text, " HARD");
  if (!end_statement(text, "SYM") || !read_pins(parser.pins, head, *kind)) return false;
  symbol.instance = head.instance;
  symbol.kind = *kind;
  if (skip(text, "\tBEGIN_PLA\n") && !parse_rows(text, symbol.kind->width, symbol)) return false;
  if (!expect_line(text, "END;") || !expect_line(text, "")) return false;
  netlist.symbols.push_back(symbol);
  return true;
}

bool parse_symbols(Parser &parser) {
  constexpr std::size_t kBytesPerPin = 20; // "\tPIN A1 IN name;\n"
  const auto left = static_cast<std::size_t>(parser.text.end - parser.text.at);
  if (parser.joints != nullptr) parser.netlist.pin_nets.reserve(left / kBytesPerPin);
  while (skip(parser.text, "SYM ")) {
    if (parser.joints != nullptr) add_symbol(*parser.joints);
    if (!parse_symbol(parser)) return false;
    if (parser.joints != nullptr && !join_some(*parser.joints)) return false;
  }
  return true;
}

bool parse_statements(Parser &parser) {
  NxfText &text = parser.text;
  if (!parse_head(text, parser.netlist) || !parse_external_pins(text, parser.netlist) || !parse_nets(parser))
    return false;
  if (parser.joints == nullptr)
    index_nets_by_name(parser.netlist);
  else if (!index_nets(*parser.joints))
    return false;
  if (!parse_symbols(parser)) return false;
  if (!expect_line(text, "END;") || !expect_line(text, "") || !expect_line(text, "END;") || !expect_line(text, ""))
    return false;
  return text.at == text.end || fail(text, "the file must end here");
}

bool read_in_order(Netlist &netlist) {
  Finding unused;
  NxfText text{netlist.text.data(), netlist.text.data() + netlist.text.size(), unused};
  Joints joints{netlist};
  Parser parser{netlist, text, &joints};
  return parse_statements(parser) && finish_joints(joints);
}

} // namespace

bool parse_nxf(FileText file_text, Netlist &netlist, Finding &error) {
  netlist = Netlist();
  netlist.text = std::move(file_text);
  return read_in_order(netlist) || parse_nxf_by_name(std::move(netlist.text), netlist, error);
}

bool parse_nxf_by_name(FileText file_text, Netlist &netlist, Finding &error) {
  netlist = Netlist();
  netlist.text = std::move(file_text);
  NxfText text{netlist.text.data(), netlist.text.data() + netlist.text.size(), error};
  Parser parser{netlist, text, nullptr};
  if (!parse_statements(parser)) return false;
  join_by_name(netlist, parser.pins.strangers);
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
