// EXTERNAL and INSTANCE statements. Lists are reversed once at the end, so that putting the newest first
// costs nothing per statement.
#include "reader/macros.h"

#include <algorithm>

#include "model/names.h"
#include "reader/tokens.h"

namespace cubenet {

namespace {

constexpr std::string_view kPortDelimiters = " '";

// Removes the next piece between delimiters from the front of `text`; empty if none is left.
std::string_view take_piece(std::string_view &text, std::string_view delimiters) {
  text.remove_prefix(std::min(text.find_first_not_of(delimiters), text.size()));
  const std::string_view piece = text.substr(0, text.find_first_of(delimiters));
  text.remove_prefix(piece.size());
  return piece;
}

void add_port(Macro &macro, std::string_view text) {
  const std::string_view port = take_piece(text, kPortDelimiters);
  const std::string_view direction = take_piece(text, kPortDelimiters);
  if (equal_ignoring_case(direction, "i")) macro.inputs.emplace_back(port);
  if (equal_ignoring_case(direction, "o")) macro.outputs.emplace_back(port);
}

// A net without a name can't be connected.
bool read_connections(std::string_view &text, std::size_t count, std::vector<Connection> &connections) {
  for (Token token; connections.size() < count;) {
    if (!next_token(text, token) || token.dot == 0) return false;
    Connection &connection = connections.emplace_back();
    connection.name = token.text.substr(0, token.dot);
    if (token.dot != std::string_view::npos) connection.pin_part = token.text.substr(token.dot + 1);
  }
  return true;
}

} // namespace

void read_external(ReaderState &state, std::string_view text) {
  Token token;
  if (!next_token(text, token)) return;
  Macro &macro = state.design.macros.emplace_back();
  macro.name = token.text;
  const int count = next_token(text, token) ? scan_decimal(token.text).value_or(0) : 0;
  for (int port = 0; port < count && next_token(text, token); port++) add_port(macro, token.text);
  state.macros_by_name[macro.name] = state.design.macros.size() - 1;
}

bool read_instance(ReaderState &state, std::string_view text) {
  Token name, macro_name, count;
  if (!next_token(text, name) || !next_token(text, macro_name) || !next_token(text, count)) return false;
  const auto found = state.macros_by_name.find(macro_name.text);
  if (found == state.macros_by_name.end()) return false;
  const Macro &macro = state.design.macros[found->second];
  const std::int64_t ports = static_cast<std::int64_t>(macro.inputs.size() + macro.outputs.size());
  if (scan_decimal(count.text) != ports) return false;

  Instance instance;
  instance.name = name.text;
  instance.macro = found->second;
  if (!read_connections(text, macro.inputs.size(), instance.inputs)) return false;
  if (!read_connections(text, macro.outputs.size(), instance.outputs)) return false;
  state.design.instances.push_back(std::move(instance));
  return true;
}

void finish_macros(Design &design) {
  std::reverse(design.macros.begin(), design.macros.end());
  std::reverse(design.instances.begin(), design.instances.end());
  for (Instance &instance : design.instances) instance.macro = design.macros.size() - 1 - instance.macro;
}

} // namespace cubenet
