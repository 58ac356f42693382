// Gathers names from the ddf netlist and from the truth table as the translator's reader leaves it.
#include "kit/check/signals.h"

#include <algorithm>
#include <numeric>

#include "kit/check/renamed.h"
#include "model/attribute_codes.h"
#include "model/names.h"

namespace cubekit {

using namespace cubenet;

namespace {

std::string statement_key(int code, std::string_view name, std::string_view value) {
  return std::to_string(code).append(" ").append(name).append(" ").append(value);
}

void add_statement(Signals &signals, const Property &property) {
  const int code = property.attr_name;
  const std::string &name = property.pin_node_name, &value = property.attribute_value;
  if (code == CODE_LOCK || code == CODE_RESERVE_PIN) {
    signals.statements.insert(statement_key(code, name, value));
    return;
  }
  signals.statements.insert(statement_key(code, upper_case(name), ""));
  signals.statements.insert(statement_key(code, upper_case(name), code == CODE_GROUP ? value : upper_case(value)));
}

void add_with_base(NameIndex &names, std::string_view name) {
  add_name(names, name, 0);
  add_name(names, name.substr(0, name.rfind('_')), 0);
}

bool is_in_netlist(const Signals &signals, std::string_view name) { return find_name(signals.netlist, name) != kNone; }

// What a name may have been before it was rewritten: itself at least.
std::vector<std::string_view> former_names(std::string_view name) {
  std::vector<std::string_view> names{name};
  for (const std::string_view plain : {name, without_number(name)})
    for (const std::string_view guard : {"", "_RES", "_RES_"})
      if (plain.starts_with(guard) && may_become(plain.substr(guard.size()), name) && plain.size() > guard.size() &&
          plain.substr(guard.size()) != name)
        names.push_back(plain.substr(guard.size()));
  return names;
}

template <typename Names> Places index_places(const Names &names) {
  Places index;
  std::vector<std::uint32_t> numbers;
  numbers.reserve(names.size());
  for (const std::string_view name : names) {
    numbers.push_back(add_name(index.names, name, static_cast<std::uint32_t>(index.starts.size())));
    if (numbers.back() == index.starts.size()) index.starts.push_back(0);
  }
  for (const std::uint32_t number : numbers) index.starts[number]++;
  index.starts.push_back(0);
  std::exclusive_scan(index.starts.begin(), index.starts.end(), index.starts.begin(), 0U);
  index.places.resize(names.size());
  std::vector<std::uint32_t> next = index.starts;
  for (std::uint32_t place = 0; place < numbers.size(); place++) index.places[next[numbers[place]]++] = place;
  return index;
}

// The first place of the name from the given one on; kNone.
std::uint32_t next_place(const Places &index, std::string_view name, std::uint32_t at) {
  const std::uint32_t number = find_name(index.names, name);
  if (number == kNone) return kNone;
  const auto end = index.places.begin() + index.starts[number + 1];
  const auto found = std::lower_bound(index.places.begin() + index.starts[number], end, at);
  return found == end ? kNone : *found;
}

// The same in a list of the design, where the second half of two is counted on from the first.
std::uint32_t next_place(const Signals &signals, const Walk &walk, std::string_view name) {
  const bool turned = walk.list == NameList::OUTPUTS || walk.list == NameList::OUTPUTS_FIRST;
  const bool both = walk.list == NameList::INPUTS_FIRST || walk.list == NameList::OUTPUTS_FIRST;
  const Places &first = walk.list == NameList::PINS ? signals.pins : turned ? signals.outputs : signals.inputs;
  const std::uint32_t place = next_place(first, name, walk.at);
  if (!both || place != kNone) return place;
  const auto size = static_cast<std::uint32_t>(first.places.size());
  const std::uint32_t behind =
      next_place(turned ? signals.inputs : signals.outputs, name, walk.at > size ? walk.at - size : 0);
  return behind == kNone ? kNone : size + behind;
}

// Declared pins that the netlist doesn't have under any name.
NameIndex find_unread_pins(const DdfReading &ddf, const Design &table) {
  NameIndex former, unread;
  for (const std::string_view pin : ddf.pins)
    for (const std::string_view name : former_names(pin)) add_name(former, name, 0);
  for (const std::string &pin : table.pin_names)
    if (find_name(former, pin) == kNone) add_name(unread, pin, 0);
  return unread;
}

// Whether a name of the constraints is what has become of the declared one. The netlist has it then, unless nothing
// reads the pin.
bool is_name_of(const Signals &signals, std::string_view declared, std::string_view name) {
  if (declared == name) return true;
  return may_become(declared, name) && (is_in_netlist(signals, name) || find_name(signals.unread, declared) != kNone);
}

bool is_asked(const Signals &signals, std::string_view declared, std::span<const Asked> asked) {
  return std::ranges::all_of(asked, [&](const Asked &each) {
    return signals.statements.contains(statement_key(each.code, upper_case(declared), each.value));
  });
}

} // namespace

Signals gather_signals(const DdfReading &ddf, const Design *table) {
  Signals signals{table};
  for (const std::string_view pin : ddf.pins) add_name(signals.netlist, pin, 0);
  for (const DdfNet &net : ddf.netlist.nets) add_with_base(signals.netlist, net.name);
  for (const DdfSymbol &symbol : ddf.netlist.symbols) add_with_base(signals.netlist, symbol.instance);
  if (table == nullptr) {
    signals.pins = index_places(ddf.pins);
    return signals;
  }
  signals.unread = find_unread_pins(ddf, *table);
  signals.pins = index_places(table->pin_names);
  signals.inputs = index_places(table->ILB);
  signals.outputs = index_places(table->OLB);
  for (const Property &property : table->properties)
    if (property.attr_name != CODE_NONE) add_statement(signals, property);
  return signals;
}

Answer take_next(const Signals &signals, Walk &walk, std::string_view name, std::span<const Asked> asked) {
  if (name.empty()) return Answer::NO;
  if (signals.table == nullptr && !is_in_netlist(signals, name)) return Answer::UNKNOWN;
  if (signals.table == nullptr && walk.list != NameList::PINS) return Answer::YES;
  std::uint32_t next = kNone;
  for (const std::string_view declared : former_names(name))
    if (signals.table == nullptr ? declared == name
                                 : is_name_of(signals, declared, name) && is_asked(signals, declared, asked))
      next = std::min(next, next_place(signals, walk, declared));
  if (next == kNone) return Answer::NO;
  walk.at = next + 1;
  return Answer::YES;
}

Answer find_statement(const Signals &signals, int code, std::string_view name, std::string_view value) {
  if (signals.table == nullptr) return is_in_netlist(signals, name) ? Answer::YES : Answer::UNKNOWN;
  return signals.statements.contains(statement_key(code, name, value)) ? Answer::YES : Answer::NO;
}

std::vector<std::string_view> copied_texts(const Signals &signals, std::string_view name, std::string_view begin) {
  std::vector<std::string_view> texts;
  if (signals.table == nullptr) return texts;
  for (const auto &[entry, text] : signals.table->name_values)
    if (entry == name && text.starts_with(begin)) texts.emplace_back(text);
  return texts;
}

} // namespace cubekit
