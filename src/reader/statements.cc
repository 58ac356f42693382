// Attribute statements: pin and node lists, macros, device, module name, title and properties.
#include "reader/statements.h"

#include <algorithm>
#include <array>

#include "model/names.h"
#include "reader/lists.h"
#include "reader/macros.h"
#include "reader/properties.h"
#include "reader/tokens.h"
#include "report/messages.h"

namespace cubenet {

namespace {

void read_pins(ReaderState &state, std::string_view text) {
  if (text.empty())
    report_warning(31503, "Pin list in file '%s' has no parameters; pin list is ignored", state.file_name);
  else if (!state.design.pin_names.empty())
    report_warning(31504, "Pin list has been read; extra pin list on line %d in file '%s' is ignored",
                   state.line_number, state.file_name);
  else
    read_pin_list(state, text);
}

void read_nodes(ReaderState &state, std::string_view text) {
  if (text.empty())
    report_warning(31505, "Node list in file '%s' has no parameters; node list is ignored", state.file_name);
  else if (!state.design.node_names.empty())
    report_warning(31506, "Node list has been read; extra node list on line %d in file '%s' is ignored",
                   state.line_number, state.file_name);
  else
    read_node_list(state, text);
}

void place_instance(ReaderState &state, std::string_view text) {
  if (!read_instance(state, text)) state.failed = true;
}

void read_device(ReaderState &state, std::string_view text) {
  if (text.empty())
    report_warning(31507, "Device name is not specified on line %d in file '%s'; line %d is ignored", state.line_number,
                   state.file_name, state.line_number);
  else if (!state.device_name.empty())
    report_warning(31508, "Device name has been read; extra device name '%s' is ignored", shown(text).c_str());
  else
    state.device_name = text;
}

// What makes a module name invalid; '+' and '-' don't.
bool check_module_name(const Token &token, const std::string &name) {
  const bool has_colon = token.sign != std::string_view::npos && token.text[token.sign] == ':';
  const char *illegal = token.kind == TOKEN_ILLEGAL  ? token.illegal.data()
                        : token.kind == TOKEN_DOTTED ? "."
                        : has_colon                  ? ":"
                                                     : nullptr;
  if (token.kind == TOKEN_DIGIT)
    report_warning(31511, "The first character of module name '%s' is a digit; invalid module name '%s' is ignored",
                   name.c_str(), name.c_str());
  else if (illegal != nullptr)
    report_warning(31511, "Module name '%s' contains illegal character '%s'; module name '%s' is ignored", name.c_str(),
                   illegal, name.c_str());
  return token.kind != TOKEN_DIGIT && illegal == nullptr;
}

void read_module(ReaderState &state, std::string_view text) {
  std::string &design = state.design.header.design;
  const std::string_view whole = text;
  Token token;
  if (!next_token(text, token))
    return report_warning(31509, "Module name is not specified on line %d in file '%s'; line %d is ignored",
                          state.line_number, state.file_name, state.line_number);
  if (!design.empty())
    return report_warning(31510, "Module name has been read; extra module name '%s' is ignored", shown(whole).c_str());
  const std::string name = shown(token.text);
  if (!check_module_name(token, name)) return;
  design = name.substr(0, kTextLimit);
  if (name.size() > kTextLimit)
    report_warning(31512, "Module/Design name '%s' is truncated to 255 characters", name.c_str());
}

// Titles are joined by spaces up to kTextLimit characters; the rest is cut.
void read_title(ReaderState &state, std::string_view line_text) {
  if (line_text.empty()) return;
  std::string text = shown(line_text);
  std::replace(text.begin(), text.end(), ';', ' ');
  std::string &title = state.design.header.desc;
  const std::size_t room = kTextLimit - std::min(kTextLimit, title.empty() ? 0 : title.size() + 1);
  const bool is_cut = state.is_title_full || text.size() > room;
  if (!state.is_title_full && room > 0) {
    if (!title.empty()) title += ' ';
    title.append(text, 0, room);
  }
  state.is_title_full = is_cut || text.size() == room;
  if (is_cut)
    report_warning(31513, "Title/description is longer than 255 characters; title/description '%s' is truncated",
                   text.c_str());
}

void read_property_line(ReaderState &state, std::string_view text) {
  if (text.empty())
    report_warning(31514, "Technology is not specified on line %d in file '%s', '#$ PROPERTY'; line %d is ignored",
                   state.line_number, state.file_name, state.line_number);
  else
    read_property(state, text);
}

struct StatementRow {
  std::string_view keyword;
  void (*read)(ReaderState &, std::string_view);
};

constexpr std::array<StatementRow, 10> kStatements{{
    {"PROPERTY", read_property_line},
    {"PINS", read_pins},
    {"PIN", read_pins},
    {"NODES", read_nodes},
    {"NODE", read_nodes},
    {"EXTERNAL", read_external},
    {"INSTANCE", place_instance},
    {"DEVICE", read_device},
    {"MODULE", read_module},
    {"TITLE", read_title},
}};

} // namespace

void read_comment_line(ReaderState &state, std::string_view line) {
  Token token;
  const bool is_statement = next_token(line, token) && token.text.size() > 1 && token.text[1] == '$';
  if (!is_statement || !next_token(line, token)) return;
  for (const StatementRow &row : kStatements)
    if (equal_ignoring_case(token.text, row.keyword)) return row.read(state, line);
}

} // namespace cubenet
