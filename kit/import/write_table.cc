// Writes a draft as a truth table.
#include <algorithm>
#include <array>
#include <filesystem>
#include <ostream>

#include "kit/import/import.h"

namespace cubekit {

using cubenet::ExtensionCode;
using enum cubenet::ExtensionCode;

namespace {

struct Extension {
  ExtensionCode code;
  std::string_view text;
  int group; // of the output list; within a group signals keep their order
};
// clang-format off
constexpr auto kExtensions = std::to_array<Extension>({
    // code    text   group
    {EXT_NONE, "",    0},
    {EXT_D,    ".D",  0},
    {EXT_T,    ".T",  0},
    {EXT_OE,   ".OE", 1},
    {EXT_C,    ".C",  2},
    {EXT_LH,   ".LH", 2},
    {EXT_LE,   ".LE", 2},
    {EXT_CE,   ".CE", 3},
    {EXT_SP,   ".SP", 4},
    {EXT_SR,   ".SR", 5},
    {EXT_AP,   ".AP", 6},
    {EXT_AR,   ".AR", 7},
    {EXT_Q,    ".Q",  8},
    {EXT_PIN,  ".PIN", 8},
});
// clang-format on

const Extension &row_of(ExtensionCode code) { return *std::ranges::find(kExtensions, code, &Extension::code); }

std::vector<std::uint32_t> order_outputs(const Draft &draft) {
  std::vector<std::uint32_t> order;
  for (const DraftSignal &signal : draft.signals)
    if (signal.is_used) order.insert(order.end(), signal.equations.begin(), signal.equations.end());
  std::ranges::stable_sort(order, {}, [&](std::uint32_t e) { return row_of(draft.equations[e].extension).group; });
  return order;
}

std::vector<std::uint32_t> order_terms(const Draft &draft, const std::vector<std::uint32_t> &equations) {
  std::vector<bool> seen(term_count(draft.terms));
  std::vector<std::uint32_t> order;
  for (const std::uint32_t e : equations)
    for (const auto *list : {&draft.equations[e].terms, &draft.equations[e].free})
      for (const std::uint32_t term : *list) {
        if (!seen[term]) order.push_back(term);
        seen[term] = true;
      }
  if (draft.has_term_order) std::ranges::sort(order);
  return order;
}

std::vector<std::uint32_t> order_columns(const Draft &draft, const TableLayout &layout) {
  std::vector<bool> is_read(draft.signals.size());
  for (const std::uint32_t term : layout.rows)
    for (const TermLiteral literal : literals_of(draft.terms, term)) is_read[signal_of(literal)] = true;
  std::vector<std::uint32_t> columns;
  for (std::uint32_t s = 0; s < draft.signals.size(); s++)
    if (is_read[s] || draft.signals[s].port == PortKind::IN) columns.push_back(s);
  // A table needs at least one column.
  if (columns.empty()) columns.push_back(draft.equations[layout.equations[0]].signal);
  return columns;
}

void write_declarations(std::ostream &stream, const Draft &draft) {
  for (const bool are_pins : {true, false}) {
    std::size_t count = 0;
    const auto is_one = [&](const DraftSignal &signal) {
      return signal.is_used && (signal.port != PortKind::NONE) == are_pins;
    };
    for (const DraftSignal &signal : draft.signals) count += is_one(signal) ? 1 : 0;
    if (count == 0) continue;
    stream << "#$ " << (are_pins ? "PINS " : "NODES ") << count;
    for (const DraftSignal &signal : draft.signals)
      if (is_one(signal)) stream << ' ' << signal.name;
    stream << '\n';
  }
}

void write_lists(std::ostream &stream, const Draft &draft, const TableLayout &layout) {
  stream << ".i " << layout.columns.size() << "\n.o " << layout.equations.size() << "\n.ilb";
  for (const std::uint32_t s : layout.columns)
    stream << ' ' << draft.signals[s].name << row_of(read_form(draft, draft.signals[s])).text;
  stream << "\n.ob";
  for (const std::uint32_t e : layout.equations) {
    const Equation &equation = draft.equations[e];
    stream << ' ' << draft.signals[equation.signal].name << row_of(equation.extension).text
           << (equation.inverted ? "-" : "");
  }
  stream << '\n';
}

// Which outputs each row is for, row after row.
struct Marks {
  std::vector<std::size_t> starts;
  std::vector<std::uint32_t> outputs; // 2 * output + (1 when it is free there)
};

Marks mark_outputs(const Draft &draft, const TableLayout &layout) {
  Marks marks{std::vector<std::size_t>(term_count(draft.terms) + 1), {}};
  const auto for_each = [&](auto visit) {
    for (std::uint32_t o = 0; o < layout.equations.size(); o++) {
      // The later entry wins: a point that is both on and free is on.
      for (const std::uint32_t term : draft.equations[layout.equations[o]].free) visit(term, 2 * o + 1);
      for (const std::uint32_t term : draft.equations[layout.equations[o]].terms) visit(term, 2 * o);
    }
  };
  for_each([&](std::uint32_t term, std::uint32_t) { marks.starts[term + 1]++; });
  for (std::size_t t = 1; t < marks.starts.size(); t++) marks.starts[t] += marks.starts[t - 1];
  marks.outputs.resize(marks.starts.back());
  std::vector<std::size_t> next(marks.starts.begin(), marks.starts.end() - 1);
  for_each([&](std::uint32_t term, std::uint32_t mark) { marks.outputs[next[term]++] = mark; });
  return marks;
}

void write_rows(std::ostream &stream, const Draft &draft, const TableLayout &layout) {
  std::vector<std::uint32_t> column_of(draft.signals.size());
  for (std::uint32_t c = 0; c < layout.columns.size(); c++) column_of[layout.columns[c]] = c;
  const std::string blank =
      std::string(layout.columns.size(), '-') + ' ' + std::string(layout.equations.size(), '0') + '\n';
  const std::size_t first_output = layout.columns.size() + 1;
  const Marks marks = mark_outputs(draft, layout);
  stream << ".p " << std::max<std::size_t>(layout.rows.size(), 1) << '\n';
  std::string row;
  for (const std::uint32_t term : layout.rows) {
    row = blank;
    for (const TermLiteral literal : literals_of(draft.terms, term))
      row[column_of[signal_of(literal)]] = is_high(literal) ? '1' : '0';
    for (std::size_t m = marks.starts[term]; m < marks.starts[term + 1]; m++)
      row[first_output + marks.outputs[m] / 2] = marks.outputs[m] % 2 == 0 ? '1' : '-';
    stream << row;
  }
  if (layout.rows.empty()) stream << blank; // a table must have terms
}

} // namespace

ExtensionCode read_form(const Draft &draft, const DraftSignal &signal) {
  if (find_equation(draft, signal, EXT_OE) != kNone) return signal.port == PortKind::NONE ? EXT_NONE : EXT_PIN;
  return is_storage(draft, signal) ? EXT_Q : EXT_NONE;
}

TableLayout lay_out_table(const Draft &draft) {
  TableLayout layout;
  layout.equations = order_outputs(draft);
  layout.rows = order_terms(draft, layout.equations);
  layout.columns = order_columns(draft, layout);
  layout.size = std::uint64_t{layout.rows.size()} * (layout.columns.size() + layout.equations.size() + 2);
  return layout;
}

void write_table(std::ostream &stream, const Draft &draft, const TableLayout &layout) {
  std::string file = std::filesystem::path(draft.files[0]).filename();
  std::ranges::replace_if(
      file, [](unsigned char c) { return c < ' '; }, '?');
  stream << "# Imported from " << file << '\n' << "#$ MODULE " << draft.module << '\n';
  if (!draft.part.empty()) stream << "#$ PROPERTY corvane PART " << draft.part << '\n';
  write_declarations(stream, draft);
  write_lists(stream, draft, layout);
  const auto has_free = [&](std::uint32_t e) { return !draft.equations[e].free.empty(); };
  if (std::ranges::any_of(layout.equations, has_free)) stream << ".type fd\n";
  write_rows(stream, draft, layout);
  stream << ".end\n";
}

} // namespace cubekit
