// Sorts the lines as the reader does: lines that begin with '#' or '.' and empty lines are not terms.
#include "kit/minimize/table_text.h"

#include <algorithm>
#include <numeric>

#include "model/names.h"
#include "reader/line_reader.h"
#include "reader/tokens.h"

namespace cubekit {

namespace {

// Calls visit(column, character) for each column of a term, inputs first.
template <typename Text, typename Visit> void for_each_column(Text &term, std::size_t columns, Visit visit) {
  for (std::size_t at = 0, column = 0; column < columns; at++)
    if (term[at] != ' ' && term[at] != '\t' && term[at] != '|') visit(column++, term[at]);
}

// Reads a header line; true at the end of the table.
bool read_header(std::string_view line, TableText &table) {
  cubenet::Token keyword, value;
  static_cast<void>(cubenet::next_token(line, keyword));
  const auto is = [&](std::string_view word) { return cubenet::equal_ignoring_case(keyword.text, word); };
  if (is(".e") || is(".end")) return true;
  if (!cubenet::next_token(line, value)) return false;
  if (is(".p")) table.counts.push_back(value.text);
  if (is(".type")) table.has_free = cubenet::equal_ignoring_case(value.text, "fd");
  return false;
}

// Spelled like the table's first term, with the columns of the cube.
std::string spell(std::string_view first, const Cover &cover, Cube cube) {
  std::string term(first);
  for_each_column(term, cover.inputs + cover.outputs, [&](std::size_t column, char &c) {
    if (column < cover.inputs)
      c = "?01-"[literal_at(cube, column)];
    else
      c = drives_output(cover, cube, column - cover.inputs) ? '1' : '0';
  });
  return term;
}

// By the first outputs, then by the first inputs.
std::vector<std::string> spell_all(std::string_view first, const Cover &cover) {
  std::vector<std::size_t> order(cover.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  const auto is_before = [&](std::size_t a, std::size_t b) {
    for (std::size_t j = 0; j < cover.outputs; j++)
      if (drives_output(cover, cover[a], j) != drives_output(cover, cover[b], j))
        return drives_output(cover, cover[a], j);
    for (std::size_t k = 0; k < cover.inputs; k++)
      if (literal_at(cover[a], k) != literal_at(cover[b], k)) return literal_at(cover[a], k) < literal_at(cover[b], k);
    return false;
  };
  std::sort(order.begin(), order.end(), is_before);
  std::vector<std::string> terms;
  for (const std::size_t c : order) terms.push_back(spell(first, cover, cover[c]));
  return terms;
}

} // namespace

TableText find_terms(std::string_view text) {
  TableText table{text, {}, {}};
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t size = std::min(text.find('\n', at), text.size() - 1) + 1 - at;
    const std::string_view line = cubenet::cut_line(text.substr(at, text[at + size - 1] == '\n' ? size - 1 : size));
    if (!line.empty() && line.front() == '.' && read_header(line, table)) break;
    if (!line.empty() && line.front() != '.' && line.front() != '#') table.terms.push_back(text.substr(at, size));
    at += size;
  }
  return table;
}

Cover read_free_points(const TableText &table, std::size_t inputs, std::size_t outputs) {
  Cover free(inputs, outputs);
  for (const std::string_view term : table.has_free ? table.terms : std::vector<std::string_view>()) {
    CubeWord *cube = add_cube(free);
    bool any = false;
    for_each_column(term, inputs + outputs, [&](std::size_t column, char c) {
      if (column >= inputs && (c == '-' || c == '2')) {
        set_output(free, cube, column - inputs);
        any = true;
      } else if (column < inputs && (c == '0' || c == '1')) {
        set_literal(cube, column, c == '0' ? cubenet::LITERAL_COMPLEMENT : cubenet::LITERAL_TRUE);
      }
    });
    if (!any) free.bits.resize(free.bits.size() - free.words);
  }
  return free;
}

std::string replace_terms(const TableText &table, const Cover &cover) {
  struct Piece {
    std::string_view old;
    bool is_term;
  };
  std::vector<Piece> pieces;
  for (const std::string_view term : table.terms) pieces.push_back({term, true});
  for (const std::string_view count : table.counts) pieces.push_back({count, false});
  std::sort(pieces.begin(), pieces.end(), [](const Piece &a, const Piece &b) { return a.old.data() < b.old.data(); });
  std::string text;
  const char *copied = table.text.data();
  for (const Piece &piece : pieces) {
    text.append(copied, piece.old.data());
    copied = piece.old.data() + piece.old.size();
    if (!piece.is_term)
      text += std::to_string(cover.size());
    else if (piece.old.data() == table.terms.front().data())
      for (const std::string &term : spell_all(piece.old, cover)) text += term;
  }
  return text.append(copied, table.text.data() + table.text.size());
}

} // namespace cubekit
