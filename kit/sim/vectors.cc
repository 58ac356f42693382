// Reads input vectors line by line.
#include "kit/sim/vectors.h"

#include <algorithm>
#include <string_view>

namespace cubekit {

namespace {

constexpr std::string_view kBlanks = " \t\r";

bool fail(VectorReader &reader, std::string text) {
  reader.error = {reader.line, std::move(text)};
  return false;
}

// The next line that isn't empty, without its comment.
bool next_line(VectorReader &reader, std::string &text) {
  while (std::getline(reader.stream, text)) {
    reader.line++;
    text.erase(std::min(text.find('#'), text.size()));
    if (text.find_first_not_of(kBlanks) != std::string::npos) return true;
  }
  return false;
}

bool add_column(VectorReader &reader, std::string_view name) {
  const std::uint32_t pin = find_name(reader.netlist.external_by_pin, name);
  const std::string quoted = "'" + std::string(name) + "'";
  if (pin == kNone) return fail(reader, "the design has no pin " + quoted);
  if (reader.netlist.external_pins[pin].direction == Direction::OUT)
    return fail(reader, "pin " + quoted + " is an output");
  if (reader.row[pin] != Value::OPEN) return fail(reader, "pin " + quoted + " has a column already");
  reader.row[pin] = Value::UNKNOWN; // marks it
  reader.columns.push_back(pin);
  return true;
}

bool read_value(char c, Value &value) {
  constexpr std::string_view kValues = "01xX-";
  constexpr std::array kMeanings{Value::LOW, Value::HIGH, Value::UNKNOWN, Value::UNKNOWN, Value::OPEN};
  const std::size_t at = kValues.find(c);
  if (at == std::string_view::npos) return false;
  value = kMeanings[at];
  return true;
}

} // namespace

bool read_columns(VectorReader &reader) {
  reader.row.assign(reader.netlist.external_pins.size(), Value::OPEN);
  std::string text;
  if (!next_line(reader, text)) return fail(reader, "a line with the names of input pins must stand here");
  const std::string_view names = text;
  std::size_t at = names.find_first_not_of(kBlanks);
  while (at < names.size()) {
    const std::size_t end = std::min(names.find_first_of(kBlanks, at), names.size());
    if (!add_column(reader, names.substr(at, end - at))) return false;
    at = names.find_first_not_of(kBlanks, end);
  }
  return true;
}

bool read_row(VectorReader &reader) {
  std::string text;
  if (!next_line(reader, text)) return false;
  std::size_t column = 0;
  for (const char c : text) {
    if (kBlanks.find(c) != std::string_view::npos) continue;
    Value value = Value::OPEN;
    if (!read_value(c, value)) return fail(reader, "a value must be 0, 1, x or -");
    if (column < reader.columns.size()) reader.row[reader.columns[column]] = value;
    column++;
  }
  if (column == reader.columns.size()) return true;
  return fail(reader, "the row has " + std::to_string(column) + " values for " + std::to_string(reader.columns.size()) +
                          " columns");
}

} // namespace cubekit
