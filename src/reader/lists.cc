// The pin, node, input and output lists. Which checks an item meets, and in which order, is told by the function that
// reads one item; the first check that fails ends the item, except for a sign behind a node.
#include "reader/lists.h"

#include <algorithm>
#include <climits>

#include "model/attributes.h"
#include "model/names.h"
#include "reader/tokens.h"
#include "report/messages.h"

namespace cubenet {

namespace {

// An item from its first '+', '-' or ':' on.
struct Suffix {
  std::string name;             // what stands before
  char first_sign = 0;          // '+', '-' or none
  std::string_view extra_signs; // the signs that follow it at once
  std::string tail;             // what follows the signs
};

Suffix split_suffix(const Token &item) {
  Suffix suffix;
  suffix.name = item.text.substr(0, item.sign);
  if (item.sign == std::string_view::npos) return suffix;
  std::string_view rest = item.text.substr(item.sign);
  if (rest.front() != ':') {
    suffix.first_sign = rest.front();
    rest.remove_prefix(1);
    suffix.extra_signs = rest.substr(0, rest.find_first_not_of("+-"));
    rest.remove_prefix(suffix.extra_signs.size());
  }
  suffix.tail = rest;
  return suffix;
}

bool is_inverted(const Suffix &suffix) { return suffix.first_sign == '-'; }

// Reads every item of a list into `names` and makes that as long as the list, whatever became of the items.
template <typename ReadItem>
void read_items(ReaderState &state, std::string_view text, std::vector<std::string> &names, std::size_t count,
                ReadItem read_item) {
  names.reserve(count);
  for (Token item; next_token(text, item);)
    if (!read_item(state, cut_token(item))) state.failed = true;
  names.resize(count);
}

int count_items(std::string_view text) { return static_cast<int>(std::min<std::size_t>(count_tokens(text), INT_MAX)); }

// ---- pins and nodes

struct DeclarationNouns {
  int missing_count, different_count; // message numbers
  const char *one, *many;
};
constexpr DeclarationNouns kPinNouns{31521, 31523, "pin", "pins"};
constexpr DeclarationNouns kNodeNouns{31522, 31524, "node", "nodes"};

// Takes the count off the front of a pin or node list and returns the number of items behind it. A first word that is
// no count is the first item.
std::size_t take_count(const ReaderState &state, std::string_view &text, const DeclarationNouns &nouns) {
  std::string_view rest = text;
  Token first;
  const bool is_found = next_token(rest, first);
  const int given = std::max(is_found ? scan_decimal(first.text).value_or(0) : 0, 0);
  if (given > 0)
    text = rest;
  else
    report_warning(nouns.missing_count, "Number of %s is not specified on %s list in file '%s'", nouns.many, nouns.one,
                   state.file_name);
  const int items = count_items(text);
  if (given != items)
    report_warning(nouns.different_count,
                   "Specified number of %s, %d, and number of items on %s list, %d, do not match; number of items on "
                   "%s list overrides specified number of %s",
                   nouns.many, given, nouns.one, items, nouns.one, nouns.many);
  return static_cast<std::size_t>(items);
}

void add_location(ReaderState &state, const std::string &pin, std::string_view location) {
  Property &property = state.design.properties.emplace_back();
  property.attr_name = CODE_LOCK;
  property.pin_node_name = pin;
  property.attribute_value = location;
}

bool check_pin_name(const Token &item, const std::string &text) {
  if (item.kind == TOKEN_ILLEGAL)
    report_error(31214, "Pin name '%s' contains illegal character '%s'; pin name is invalid", text.c_str(),
                 item.illegal.data());
  else if (item.kind == TOKEN_DIGIT)
    report_error(31215, "The first character of pin name '%s' is a digit; pin name '%s' is invalid", text.c_str(),
                 text.c_str());
  else if (item.sign == 0)
    report_error(31215, "The first character of pin '%s' is illegal; pin '%s' is invalid", text.c_str(), text.c_str());
  else if (item.dot != std::string_view::npos)
    report_error(31216, "Pin declaration '%s' contains dot extension; pin '%s' is invalid", text.c_str(), text.c_str());
  else
    return true;
  return false;
}

// The package pin belongs to the name even when that turns out to be too long.
bool read_package_pin(ReaderState &state, const Suffix &suffix, const std::string &text) {
  if (suffix.tail.empty()) return true;
  if (suffix.tail.front() != ':')
    report_error(31227, "Character(s) '%s' after '+' or '-' sign is illegal; pin declaration '%s' is invalid",
                 suffix.tail.c_str(), text.c_str());
  else if (suffix.tail.size() == 1)
    report_error(31238, "Package pin number is not specified in pin declaration '%s'", text.c_str());
  else
    add_location(state, suffix.name, std::string_view(suffix.tail).substr(1));
  return suffix.tail.size() > 1 && suffix.tail.front() == ':';
}

bool read_pin(ReaderState &state, const Token &item) {
  const std::string text(item.text);
  if (!check_pin_name(item, text)) return false;
  const Suffix suffix = split_suffix(item);
  const char *name = suffix.name.c_str();
  if (!suffix.extra_signs.empty())
    report_warning(31525,
                   "Pin '%s' is followed by more than one '+' or '-' sign; extra '+' or '-' sign with pin '%s' is "
                   "ignored",
                   name, name);
  if (!read_package_pin(state, suffix, text)) return false;
  if (suffix.name.size() > kNameLimit) {
    report_error(31218, "Pin '%s' is longer than 50 characters; pin '%s' is invalid", name, name);
    return false;
  }
  if (is_inverted(suffix)) set_bit(state.design.pin_inversion, state.design.pin_names.size());
  state.design.pin_names.push_back(suffix.name);
  return true;
}

bool check_node_name(const Token &item, const std::string &text) {
  if (item.kind == TOKEN_ILLEGAL)
    report_error(31222, "Node '%s' contains illegal character '%s'; node '%s' is invalid", text.c_str(),
                 item.illegal.data(), text.c_str());
  else if (item.kind == TOKEN_DIGIT)
    report_error(31223, "The first character of node '%s' is a digit; node '%s' is invalid", text.c_str(),
                 text.c_str());
  else if (item.sign == 0)
    report_error(31223, "The first character of node '%s' is illegal; node '%s' is invalid", text.c_str(),
                 text.c_str());
  else if (item.dot != std::string_view::npos)
    report_error(31224, "Node declaration '%s' contains dot extension; node '%s' is invalid", text.c_str(),
                 text.c_str());
  else
    return true;
  return false;
}

bool check_node_tail(const Suffix &suffix, const std::string &text) {
  if (suffix.tail.empty()) return true;
  const char *name = suffix.name.c_str();
  const char *location = suffix.tail.c_str() + 1;
  if (suffix.tail.front() != ':')
    report_error(31227, "Character(s) '%s' after '+' or '-' sign is illegal; node declaration '%s' is invalid",
                 suffix.tail.c_str(), text.c_str());
  else if (suffix.tail.size() == 1)
    report_error(31223, "Node declaration '%s' is followed by illegal character ':'; node '%s' is invalid", name, name);
  else if (suffix.tail.find_first_not_of("0123456789", 1) != std::string::npos)
    report_error(31221, "Node '%s' is locked to an invalid package pin number '%s'", name, location);
  else {
    report_warning(31527,
                   "Signal '%s' is declared as node and assigned to package pin '%s'; pin assignment to pin '%s' is "
                   "ignored",
                   name, location, location);
    return true;
  }
  return false;
}

bool read_node(ReaderState &state, const Token &item) {
  const std::string text(item.text);
  if (!check_node_name(item, text)) return false;
  const Suffix suffix = split_suffix(item);
  const char *name = suffix.name.c_str();
  const bool has_minus = is_inverted(suffix) || suffix.extra_signs.find('-') != std::string_view::npos;
  if (has_minus) // the later checks are still made
    report_error(31220,
                 "Using attribute 'invert' with node '%s' is invalid; attribute 'invert' can only be used with "
                 "registered pin",
                 name);
  if (!check_node_tail(suffix, text)) return false;
  if (suffix.name.size() > kNameLimit) {
    report_error(31219, "Node '%s' is longer than 50 characters; node '%s' is invalid", name, name);
    return false;
  }
  if (!has_minus) state.design.node_names.push_back(suffix.name);
  return !has_minus;
}

// ---- inputs and outputs

struct ColumnNouns {
  int different_count; // message number
  const char *variables, *list;
};
constexpr ColumnNouns kInputNouns{31212, "input", "ilb"};
constexpr ColumnNouns kOutputNouns{31213, "output", "ob"};

// The number of items of an input or output list. It must equal the count that the file gave before; when it doesn't,
// it takes that count's place. 0: no count was given, and the list is not to be stored.
std::size_t settle_columns(ReaderState &state, std::string_view text, int &given, const ColumnNouns &nouns) {
  if (given < 1) return 0;
  const int items = count_items(text);
  if (items != given) {
    report_error(nouns.different_count,
                 "Specified number of %s variables, %d, and number of items on %s list, %d, do not match",
                 nouns.variables, given, nouns.list, items);
    state.failed = true;
    given = items;
  }
  return static_cast<std::size_t>(given);
}

bool check_signal_name(const Token &item, const std::string &text) {
  if (item.kind == TOKEN_ILLEGAL)
    report_error(31225, "Signal '%s' contains illegal character '%s'; signal '%s' is invalid", text.c_str(),
                 item.illegal.data(), text.c_str());
  else if (item.kind == TOKEN_DIGIT)
    report_error(31226, "The first character of signal '%s' is a digit; signal '%s' is invalid", text.c_str(),
                 text.c_str());
  else if (item.sign == 0)
    report_error(31226, "The first character of signal '%s' is illegal; signal '%s' is invalid", text.c_str(),
                 text.c_str());
  else
    return true;
  return false;
}

bool check_signal_tail(const Suffix &suffix) {
  const char *name = suffix.name.c_str();
  const std::size_t dot = suffix.name.find('.');
  if (suffix.tail.starts_with(':'))
    report_error(31225, "Signal '%s' is followed by illegal character ':'; signal '%s' is invalid", name, name);
  else if (!suffix.tail.empty())
    report_error(31227, "Character(s) '%s' after '+' or '-' sign is illegal; signal '%s' is invalid",
                 suffix.tail.c_str(), name);
  else if (suffix.name.size() > kNameLimit)
    report_error(31228, "Signal '%s' is longer than 50 characters; signal '%s' is invalid", name, name);
  else if (dot + 1 == suffix.name.size())
    report_error(31229, "Dot extension is not specified in signal '%s'", name);
  else
    return true;
  return false;
}

void store_signal(const std::string &text, std::vector<std::string> &names, std::vector<std::string> &extensions) {
  const std::size_t dot = std::min(text.find('.'), text.size());
  names.push_back(text.substr(0, dot));
  extensions.push_back(upper_case(std::string_view(text).substr(std::min(dot + 1, text.size()))));
}

bool read_input(ReaderState &state, const Token &item) {
  if (!check_signal_name(item, std::string(item.text))) return false;
  const Suffix suffix = split_suffix(item);
  const char *name = suffix.name.c_str();
  if (suffix.first_sign != 0)
    report_warning(31528,
                   "Signal '%s' on ilb list is followed by '+' or '-' sign; '+' or '-' sign in signal '%s' is ignored",
                   name, name);
  if (!check_signal_tail(suffix)) return false;
  store_signal(suffix.name, state.design.ILB, state.design.IB_EXT);
  return true;
}

bool read_output(ReaderState &state, const Token &item) {
  if (!check_signal_name(item, std::string(item.text))) return false;
  const Suffix suffix = split_suffix(item);
  const char *name = suffix.name.c_str();
  if (!suffix.extra_signs.empty())
    report_warning(31529,
                   "Signal '%s' on ob list is followed by more than one '+' or '-' signs; extra '+' or '-' sign with "
                   "signal '%s' is ignored",
                   name, name);
  if (!check_signal_tail(suffix)) return false;
  if (is_inverted(suffix)) set_bit(state.design.output_inversion, state.design.OLB.size());
  store_signal(suffix.name, state.design.OLB, state.design.OB_EXT);
  return true;
}

} // namespace

void read_pin_list(ReaderState &state, std::string_view text) {
  Design &design = state.design;
  const std::size_t count = take_count(state, text, kPinNouns);
  design.pin_inversion = make_empty_set(count);
  read_items(state, text, design.pin_names, count, read_pin);
}

void read_node_list(ReaderState &state, std::string_view text) {
  const std::size_t count = take_count(state, text, kNodeNouns);
  read_items(state, text, state.design.node_names, count, read_node);
}

void read_input_list(ReaderState &state, std::string_view text) {
  const std::size_t count = settle_columns(state, text, state.NI, kInputNouns);
  if (count == 0) return;
  state.design.IB_EXT.reserve(count);
  read_items(state, text, state.design.ILB, count, read_input);
  state.design.IB_EXT.resize(count);
}

void read_output_list(ReaderState &state, std::string_view text) {
  Design &design = state.design;
  const std::size_t count = settle_columns(state, text, state.NO, kOutputNouns);
  if (count == 0) return;
  design.output_inversion = make_empty_set(count);
  design.OB_EXT.reserve(count);
  read_items(state, text, design.OLB, count, read_output);
  design.OB_EXT.resize(count);
}

} // namespace cubenet
