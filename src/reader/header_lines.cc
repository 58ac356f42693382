// Header lines: the counts, the input and output lists, the phase, and the end mark.
#include "reader/header_lines.h"

#include <algorithm>
#include <array>

#include "model/names.h"
#include "reader/lists.h"
#include "reader/tokens.h"
#include "report/messages.h"

namespace cubenet {

namespace {

void read_ilb(ReaderState &state, std::string_view text) {
  if (text.empty())
    report_warning(31517, "Ilb list in file '%s' has no parameters; ilb list is ignored", state.file_name);
  else if (!state.design.ILB.empty())
    report_warning(31518, "Ilb list has been read; extra ilb list at line %d in file '%s' is ignored",
                   state.line_number, state.file_name);
  else
    read_input_list(state, text);
}

void read_ob(ReaderState &state, std::string_view text) {
  if (text.empty())
    report_warning(31519, "Ob list in file '%s' has no parameters; ob list is ignored", state.file_name);
  else if (!state.design.OLB.empty())
    report_warning(31520, "Ob list has been read; extra ob list at line %d in file '%s' is ignored", state.line_number,
                   state.file_name);
  else
    read_output_list(state, text);
}

struct CountLine {
  int is_repeated, is_missing, is_invalid; // message numbers
  const char *keyword, *noun;
};
constexpr CountLine kInputCount{31501, 31401, 31402, ".i", "inputs"};
constexpr CountLine kOutputCount{31502, 31403, 31404, ".o", "outputs"};

// Reads the count of ".i" or ".o"; false if the line gives none, which is an error unless an earlier line
// did.
bool read_count(ReaderState &state, std::string_view text, const CountLine &line, int &count) {
  if (count > 0) {
    report_warning(line.is_repeated, "Line '%s' has been read; extra '%s' on line %d in file '%s' is ignored",
                   line.keyword, line.keyword, state.line_number, state.file_name);
    return false;
  }
  Token token;
  const bool is_found = next_token(text, token);
  const int value = is_found ? scan_decimal(token.text).value_or(0) : 0;
  if (!is_found)
    report_error(line.is_missing, "Number of %s is not specified on line %d in file '%s'", line.noun, state.line_number,
                 state.file_name);
  else if (value < 1)
    report_error(line.is_invalid, "Number of %s, '%s', is invalid on line %d in file '%s'", line.noun,
                 shown(token.text).c_str(), state.line_number, state.file_name);
  else
    count = value;
  if (count == 0) state.failed = true;
  return count > 0;
}

void read_i(ReaderState &state, std::string_view text) { (void)read_count(state, text, kInputCount, state.NI); }

void read_o(ReaderState &state, std::string_view text) {
  if (!read_count(state, text, kOutputCount, state.NO)) return;
  if (state.NI > 0)
    return set_cube_layout(state.cubes, static_cast<std::size_t>(state.NI), static_cast<std::size_t>(state.NO));
  report_error(31405, "'.i' must be declared before '.o'");
  state.failed = true;
}

// One character per output; a text that is too short is treated as ending in a bad character. The claimed
// count sizes nothing: the text is stored as written.
bool check_phase(const ReaderState &state, std::string_view text, std::string_view rest) {
  const auto outputs = static_cast<std::size_t>(state.NO);
  const std::string_view phase = text.substr(0, outputs);
  const auto is_phase = [](char c) { return c == '0' || c == '1'; };
  const auto good = static_cast<std::size_t>(std::count_if(phase.begin(), phase.end(), is_phase));
  const std::size_t bad = phase.size() - good + (phase.size() < outputs ? 1 : 0);
  for (std::size_t i = 0; i < bad; i++) report_error(31408, "only '0' or '1' are allowed in phase description");
  const bool is_long = text.size() > outputs || !rest.empty();
  if (is_long) report_error(31409, "Phase description in file '%s' is too long", state.file_name);
  return bad == 0 && !is_long;
}

bool read_phase_text(ReaderState &state, std::string_view text) {
  Token token;
  if (!has_layout(state.cubes)) {
    report_error(31406, "PLA size must be declared before '.phase'");
  } else if (state.has_phase) {
    report_error(31407, "Line '.phase' is repeated in file '%s'", state.file_name);
  } else if (!next_token(text, token)) {
    report_error(31408, "Only '0' or '1' are allowed in phase description");
  } else {
    state.has_phase = true;
    state.phase = token.text;
    return check_phase(state, token.text, text);
  }
  return false;
}

void read_phase(ReaderState &state, std::string_view text) {
  if (!read_phase_text(state, text)) state.failed = true;
}

void end_reading(ReaderState &state, std::string_view /*text*/) { state.is_ended = true; }

struct HeaderRow {
  std::string_view keyword;
  void (*read)(ReaderState &, std::string_view);
};

// Keywords without effect (.p, .type, .kiss, .symbolic, .symbolic-output, .label, .pair) have no row: they
// are skipped like unknown ones. The number of terms is counted, not taken from .p.
constexpr std::array<HeaderRow, 7> kHeaderLines{{
    {".ilb", read_ilb},
    {".ob", read_ob},
    {".i", read_i},
    {".o", read_o},
    {".phase", read_phase},
    {".e", end_reading},
    {".end", end_reading},
}};

} // namespace

void read_header_line(ReaderState &state, std::string_view line) {
  Token keyword;
  if (!next_token(line, keyword)) return;
  for (const HeaderRow &row : kHeaderLines)
    if (equal_ignoring_case(keyword.text, row.keyword)) return row.read(state, line);
}

} // namespace cubenet
