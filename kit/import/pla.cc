// Reads a two-level table in the common PLA format. What the output part of a term says depends on the type:
// points may be listed as on (F), off (R) and free (D). Points on no list are off when there is no R, on when
// there is no F, and free when there are both.
#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <string_view>
#include <unordered_set>

#include "kit/import/import.h"
#include "kit/import/points.h"
#include "kit/util/finding.h"

namespace cubekit {

namespace {

struct Reader {
  std::string_view text;
  Draft &draft;
  Remark &fault;
  std::size_t at = 0, line = 1;
  std::size_t inputs = 0, outputs = 0;
  std::vector<std::string> input_names{}, output_names{};
  std::size_t input_line = 0, output_line = 0; // of the lists of names
  std::string phase{}, type{};                 // empty: not said
  PlaType lists{};                             // of points
  bool has_terms = false, is_done = false;
  std::vector<PointLists> points{};      // of the outputs
  std::vector<std::size_t> term_lines{}; // the first of each
};

bool fail(Reader &reader, std::size_t line, std::string text) {
  reader.fault = {{0, line}, std::move(text)};
  return false;
}
bool fail(Reader &reader, std::string text) { return fail(reader, reader.line, std::move(text)); }

constexpr bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\f' || c == '\v'; }

std::string shown(char c) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  if (c > ' ' && c < 0x7F) return std::string{'\'', c, '\''};
  const auto byte = static_cast<unsigned char>(c);
  return std::string("byte ") + kDigits[byte >> 4] + kDigits[byte & 0xFU];
}

// The words up to the end of the line or to a comment.
std::vector<std::string> read_words(Reader &reader) {
  std::vector<std::string> words;
  bool is_open = false;
  for (; reader.at < reader.text.size(); reader.at++) {
    const char c = reader.text[reader.at];
    if (c == '\n') break;
    if (c == '#') {
      reader.at = std::min(reader.text.find('\n', reader.at), reader.text.size());
      break;
    }
    if (is_blank(c)) {
      is_open = false;
      continue;
    }
    if (!is_open) words.emplace_back();
    is_open = true;
    words.back() += c;
  }
  return words;
}

bool read_count(Reader &reader, const std::vector<std::string> &words, std::size_t &count) {
  if (count != 0) return fail(reader, "a second '" + words[0] + "'");
  std::uint32_t value = 0;
  const std::string &text = words.size() == 2 ? words[1] : words[0];
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc{} || end != text.data() + text.size() || value == 0)
    return fail(reader, "'" + words[0] + "' needs one number above 0");
  count = value;
  return true;
}

bool read_names(Reader &reader, const std::vector<std::string> &words, std::vector<std::string> &names,
                std::size_t &line) {
  if (line != 0) return fail(reader, "a second '" + words[0] + "'");
  names.assign(words.begin() + 1, words.end());
  line = reader.line;
  return true;
}

bool read_type(Reader &reader, const std::vector<std::string> &words) {
  if (reader.has_terms) return fail(reader, "'.type' behind a term");
  if (!reader.type.empty()) return fail(reader, "a second '.type'");
  constexpr auto kTypes = std::to_array<std::string_view>({"f", "r", "fd", "fr", "dr", "fdr"});
  reader.type = words.size() == 2 ? words[1] : "";
  if (std::ranges::find(kTypes, reader.type) == kTypes.end())
    return fail(reader, "the type is none of f, r, fd, fr, dr and fdr");
  reader.lists.has_on = reader.type.find('f') != std::string::npos;
  reader.lists.has_off = reader.type.find('r') != std::string::npos;
  reader.lists.has_free = reader.type.find('d') != std::string::npos;
  return true;
}

bool read_header(Reader &reader) {
  const std::vector<std::string> words = read_words(reader);
  const std::string &keyword = words[0];
  if (keyword == ".i") return read_count(reader, words, reader.inputs);
  if (keyword == ".o") return read_count(reader, words, reader.outputs);
  if (keyword == ".ilb") return read_names(reader, words, reader.input_names, reader.input_line);
  if (keyword == ".ob") return read_names(reader, words, reader.output_names, reader.output_line);
  if (keyword == ".type") return read_type(reader, words);
  if (keyword == ".p") return true; // terms are counted, not announced
  if (keyword == ".e" || keyword == ".end") return reader.is_done = true;
  if (keyword == ".phase") {
    if (!reader.phase.empty()) return fail(reader, "a second '.phase'");
    reader.phase = words.size() == 2 ? words[1] : "";
    if (reader.phase.empty() || reader.phase.find_first_not_of("01") != std::string::npos)
      return fail(reader, "'.phase' needs a 0 or 1 for each output");
    return true;
  }
  if (keyword == ".mv" || keyword.starts_with(".symbolic") || keyword == ".kiss" || keyword == ".start_kiss" ||
      keyword == ".label" || keyword == ".pair")
    return fail(reader, "'" + keyword + "' is not supported: import takes inputs and outputs of two values");
  return fail(reader, quoted(keyword) + " is no line of a PLA");
}

// At the first term the header is complete.
bool begin_terms(Reader &reader) {
  if (reader.has_terms) return true;
  if (reader.inputs == 0 || reader.outputs == 0) return fail(reader, "a term, and no '.i' and '.o' in front of it");
  if (reader.inputs + reader.outputs > reader.text.size()) return fail(reader, "a term is cut short");
  reader.points.resize(reader.outputs);
  return reader.has_terms = true;
}

// Skips what has no meaning in terms. False at the end of the text, and where a header line begins.
bool skip_to_term(Reader &reader) {
  for (bool is_line_start = reader.at == 0 || reader.text[reader.at - 1] == '\n'; reader.at < reader.text.size();
       reader.at++) {
    const char c = reader.text[reader.at];
    if (c == '#') {
      reader.at = std::min(reader.text.find('\n', reader.at), reader.text.size()) - 1;
    } else if (c == '\n') {
      reader.line++;
      is_line_start = true;
    } else if (!is_blank(c) && c != '|') {
      return !(c == '.' && is_line_start);
    }
  }
  return false;
}

bool read_character(Reader &reader, std::size_t first_line, char &c) {
  if (!skip_to_term(reader)) return fail(reader, first_line, "a term is cut short");
  c = reader.text[reader.at++];
  return true;
}

// INPUTS OUTPUTS, a character each; blanks, line ends and '|' are ignored.
bool read_term(Reader &reader) {
  if (!begin_terms(reader)) return false;
  const std::size_t first_line = reader.line;
  std::vector<TermLiteral> literals;
  char c = 0;
  for (std::uint32_t i = 0; i < reader.inputs; i++) {
    if (!read_character(reader, first_line, c)) return false;
    if (c == '0' || c == '1')
      literals.push_back(2 * i + (c == '1' ? 1 : 0));
    else if (c != '-' && c != '2')
      return fail(reader, shown(c) + " in the input part of a term, which has only 0, 1, - and 2");
  }
  const std::uint32_t term = add_term(reader.draft.terms, literals);
  if (term == reader.term_lines.size()) reader.term_lines.push_back(first_line);
  for (PointLists &lists : reader.points) {
    if (!read_character(reader, first_line, c)) return false;
    switch (c) {
    case '1':
    case '4':
      if (reader.lists.has_on) lists.on.push_back(term);
      break;
    case '0':
      if (reader.lists.has_off) lists.off.push_back(term);
      break;
    case '-':
    case '2':
      if (reader.lists.has_free) lists.free.push_back(term);
      break;
    case '~':
    case '3': break;
    default: return fail(reader, shown(c) + " in the output part of a term, which has only 0 to 4, - and ~");
    }
  }
  return true;
}

bool add_ports(Reader &reader, std::vector<std::string> &names, std::size_t count, std::size_t line, PortKind port) {
  const bool is_input = port == PortKind::IN;
  if (line == 0)
    for (std::size_t i = 0; i < count; i++) names.push_back((is_input ? "in" : "out") + std::to_string(i));
  else if (names.size() != count)
    return fail(reader, line,
                std::to_string(names.size()) +
                    (is_input ? " names of inputs, and '.i " : " names of outputs, and '.o ") + std::to_string(count) +
                    "'");
  std::unordered_set<std::string_view> known;
  for (const std::string &name : names)
    if (!known.insert(name).second) return fail(reader, line, "'" + name + "' is listed twice");
  for (std::string &name : names) add_signal(reader.draft, std::move(name), port, {0, line});
  return true;
}

void make_equations(Draft &draft, Pla &pla) {
  for (std::size_t o = 0; o < pla.points.size(); o++) {
    const auto signal = static_cast<std::uint32_t>(pla.inputs + o);
    Equation &equation = add_equation(draft, signal, cubenet::EXT_NONE, draft.signals[signal].place);
    equation.inverted = !pla.phase.empty() && pla.phase[o] == '0';
    equation.terms = std::move(pla.points[o].on);
    equation.free = std::move(pla.points[o].free);
  }
}

} // namespace

bool read_pla_points(std::string_view text, Draft &draft, Pla &pla, Remark &fault) {
  Reader reader{text, draft, fault};
  draft.has_term_order = true;
  while (!reader.is_done) {
    if (skip_to_term(reader)) {
      if (!read_term(reader)) return false;
    } else if (reader.at == text.size()) {
      break;
    } else if (!read_header(reader)) {
      return false;
    }
  }
  if (reader.inputs == 0 || reader.outputs == 0) return fail(reader, 0, "no PLA: it has no '.i' or no '.o'");
  if (!reader.has_terms && reader.inputs + reader.outputs > std::max<std::size_t>(text.size(), 1000))
    return fail(reader, 0, "no term");
  if (!reader.phase.empty() && reader.phase.size() != reader.outputs)
    return fail(reader, 0, "'.phase' has not one digit for each output");
  if (!add_ports(reader, reader.input_names, reader.inputs, reader.input_line, PortKind::IN)) return false;
  if (!add_ports(reader, reader.output_names, reader.outputs, reader.output_line, PortKind::OUT)) return false;
  reader.points.resize(reader.outputs);
  pla = {reader.lists, reader.inputs, std::move(reader.phase), std::move(reader.points), std::move(reader.term_lines)};
  return true;
}

bool read_pla(std::string_view text, Draft &draft, Remark &fault) {
  Pla pla;
  if (!read_pla_points(text, draft, pla, fault)) return false;
  if (!complete_points(draft, pla.inputs, pla.lists, pla.points, pla.term_lines, fault)) return false;
  make_equations(draft, pla);
  return true;
}

} // namespace cubekit
