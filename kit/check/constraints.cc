// Judges a constraints file: its sections are fixed and so are their lines; what the lines name is looked up in the
// truth table or, as far as that goes, in the netlist.
#include <algorithm>
#include <array>
#include <string>

#include "kit/check/check.h"
#include "kit/check/settings.h"
#include "kit/check/signals.h"
#include "model/attribute_codes.h"
#include "model/characters.h"
#include "model/names.h"

namespace cubekit {

using namespace cubenet;

namespace {

struct Parser {
  std::string_view left;
  const Signals &signals;
  Judgement &judgement;
  ParameterSet &parameters;
  std::string_view section{}; // its header
  std::size_t line = 1;
};

bool fail(Parser &parser, std::string text) {
  parser.judgement.wrong.push_back({parser.line, std::move(text)});
  return false;
}

bool refuse_line(Parser &parser) {
  return fail(parser, "the line is none of section " + std::string(parser.section) + ", or out of order");
}

// False at an answer of no.
[[nodiscard]] bool settle(Parser &parser, Answer answer, std::string_view text) {
  if (answer == Answer::UNKNOWN)
    parser.judgement.open.push_back(
        {parser.line, "only the truth table can tell whether " + quoted(text) + " may stand here"});
  if (answer != Answer::NO) return true;
  return fail(parser, parser.signals.table != nullptr
                          ? "the truth table doesn't ask for " + quoted(text) + " here, or not in this order"
                          : quoted(text) + " has no place here, or is out of order");
}

bool at_end(const Parser &parser) { return parser.left.empty(); }
std::string_view next_line(const Parser &parser) { return parser.left.substr(0, parser.left.find('\n')); }

bool take_line(Parser &parser) {
  const std::size_t end = parser.left.find('\n');
  if (end == std::string_view::npos) {
    parser.left = {};
    return fail(parser, "the last line has no end");
  }
  parser.left.remove_prefix(end + 1);
  parser.line++;
  return true;
}

bool take_empty_line(Parser &parser) {
  if (at_end(parser) || !next_line(parser).empty()) return fail(parser, "an empty line must stand here");
  return take_line(parser);
}

// Takes the text off the end; false when it doesn't stand there.
bool drop_end(std::string_view &text, std::string_view end) {
  if (!text.ends_with(end)) return false;
  text.remove_suffix(end.size());
  return true;
}

// Names with a separator between them, each of which must be asked for. `otherwise` is the answer where one isn't.
bool take_names(Parser &parser, Walk walk, std::string_view names, std::string_view separator, const Asked &asked,
                Answer otherwise = Answer::NO) {
  for (;;) {
    const std::size_t end = std::min(names.find(separator), names.size());
    const std::string_view name = names.substr(0, end);
    const Answer answer = take_next(parser.signals, walk, name, {&asked, 1});
    if (!settle(parser, answer == Answer::NO ? otherwise : answer, name)) return false;
    if (end == names.size()) return true;
    names.remove_prefix(end + separator.size());
  }
}

// ---- sections of lists

struct ListRow {
  std::string_view header, key;
  NameList names;
  Asked asked;
  bool spaced = false;          // an empty line follows
  std::string_view copied = {}; // name of the statements whose texts join the list
  std::string_view separator = ",";

  std::string_view setting() const { return key.substr(0, key.size() - 1); } // with which such texts begin
};

// clang-format off
constexpr int kCrit = 34, kPreserve = 36, kProtect = 37, kClock = 39, kBypass = 45, kLowPower = 47, kHighPower = 48;
constexpr auto kLists = std::to_array<ListRow>({
    {"[Power]",        "Low = ",    NameList::INPUTS,        {kLowPower},         false, "", ", "},
    {"[Power]",        "High = ",   NameList::INPUTS,        {kHighPower},        false, "", ", "},
    {"[OUTDELAY]",     "On=",       NameList::PINS,          {CODE_OUTDELAY_ON}},
    {"[OUTDELAY]",     "Off=",      NameList::PINS,          {CODE_OUTDELAY_OFF}, true},
    {"[SLEWRATE]",     "SLOW=",     NameList::PINS,          {CODE_SLEW_SLOW},    false, "SLEW"},
    {"[SLEWRATE]",     "FAST=",     NameList::PINS,          {CODE_SLEW_FAST},    true,  "SLEW"},
    {"[PULLUP]",       "UP=",       NameList::PINS,          {CODE_PULL_UP},      false, "PULL"},
    {"[PULLUP]",       "OFF=",      NameList::PINS,          {CODE_PULL_OFF},     false, "PULL"},
    {"[PULLUP]",       "DOWN=",     NameList::PINS,          {CODE_PULL_DOWN},    false, "PULL"},
    {"[PULLUP]",       "HOLD=",     NameList::PINS,          {CODE_PULL_HOLD},    true,  "PULL"},
    {"[OSM ByPass]",   "Bypass=",   NameList::PINS,          {kCrit},             true},
    {"[PTSABYPASS]",   "BYPASS=",   NameList::INPUTS_FIRST,  {kBypass},           true},
    {"[4PTs Bypass]",  "BYPASS=",   NameList::OUTPUTS,       {kBypass},           true},
    {"[CLK]",          "CLK0=",     NameList::OUTPUTS_FIRST, {kClock, "CLK0"}},
    {"[CLK]",          "CLK1=",     NameList::OUTPUTS_FIRST, {kClock, "CLK1"}},
    {"[CLK]",          "CLK2=",     NameList::OUTPUTS_FIRST, {kClock, "CLK2"}},
    {"[CLK]",          "IOCLK0=",   NameList::OUTPUTS_FIRST, {kClock, "IOCLK0"}},
    {"[CLK]",          "IOCLK1=",   NameList::OUTPUTS_FIRST, {kClock, "IOCLK1"}},
    {"[CLK]",          "FASTCLK=",  NameList::OUTPUTS_FIRST, {kClock, "FASTCLK"}},
    {"[CLK]",          "SLOWCLK=",  NameList::OUTPUTS_FIRST, {kClock, "SLOWCLK"}},
    {"[PRESERVE]",     "PRESERVE=", NameList::INPUTS_FIRST,  {kPreserve},         true},
});
// clang-format on

// What stands between the '=' of each copied text and its ';', joined as the list has them.
std::string copied_members(const Signals &signals, const ListRow &row, bool &any) {
  std::string members;
  for (std::string_view text : copied_texts(signals, row.copied, row.setting())) {
    const std::size_t equals = text.find('=');
    if (equals == std::string_view::npos) continue;
    text.remove_prefix(equals + 1);
    members.append(any ? "," : "").append(text.substr(0, text.find(';')));
    any = true;
  }
  return members;
}

bool take_list(Parser &parser, const ListRow &row) {
  std::string_view names = next_line(parser).substr(row.key.size());
  if (!drop_end(names, ";")) return refuse_line(parser);
  bool copied = false, own = true;
  const bool with_table = parser.signals.table != nullptr;
  if (!row.copied.empty() && with_table) {
    const std::string members = copied_members(parser.signals, row, copied);
    if (copied && !drop_end(names, members)) return settle(parser, Answer::NO, names);
    own = !copied || drop_end(names, ",");
    if (!own && !names.empty()) return settle(parser, Answer::NO, names);
  }
  const Answer otherwise = row.copied.empty() || with_table ? Answer::NO : Answer::UNKNOWN;
  if (own && !take_names(parser, {row.names}, names, row.separator, row.asked, otherwise)) return false;
  return take_line(parser) && (!row.spaced || take_empty_line(parser));
}

bool take_lists(Parser &parser) {
  bool any = false;
  for (const ListRow &row : kLists) {
    if (row.header != parser.section || !next_line(parser).starts_with(row.key)) continue;
    any = true;
    if (!take_list(parser, row)) return false;
  }
  return any || refuse_line(parser);
}

// ---- switches and parameters

constexpr std::string_view kParameter = "Tarvex_";

std::string_view option_value(const Parser &parser, std::size_t slot) {
  const std::string_view option = parser.signals.table->header.option[slot];
  return option.substr(option.rfind(' ') + 1);
}

bool is_set(const Parser &parser, std::size_t slot, std::string_view value) {
  const bool is_rate = kSwitches[slot].key == "SLEWRATE";
  if (!is_one_of(value, kSwitches[slot].values) || (is_rate && value != upper_case(value))) return false;
  if (parser.signals.table == nullptr) return true;
  if (is_rate) return is_one_of(option_value(parser, slot), value.empty() ? "OFF|SLOW" : "ON|FAST");
  return option_value(parser, slot) == value;
}

// A slew rate that is neither on nor off leaves its line open.
bool may_be_open(const Parser &parser, std::size_t slot) {
  if (kSwitches[slot].key != "SLEWRATE") return false;
  if (parser.signals.table == nullptr) return true;
  const std::string_view set = option_value(parser, slot);
  return !set.empty() && !is_one_of(set, "ON|FAST|OFF|SLOW");
}

// Tarvex_KEY=VALUE;
bool take_parameter(Parser &parser, std::string_view line) {
  line.remove_prefix(kParameter.size());
  const std::size_t equals = std::min(line.find('='), line.size());
  std::string_view value = line.substr(std::min(equals + 1, line.size()));
  if (!drop_end(value, ";") || !add_parameter(parser.parameters, line.substr(0, equals), value, true))
    return refuse_line(parser);
  const Parameter &added = parser.parameters.list.back();
  if (parser.signals.table == nullptr ||
      parser.signals.table->par[added.slot] == std::string(parameter_keyword(added)).append(" ").append(value))
    return true;
  return settle(parser, Answer::NO, value);
}

// SWITCH=VALUE; from the given slot on. What follows an open one stands on its line.
bool take_switch(Parser &parser, std::string_view line, std::size_t &slot) {
  for (; slot < std::size(kSwitches); slot++) {
    const std::string_view key = kSwitches[slot].key;
    if (!line.starts_with(key) || !line.substr(key.size()).starts_with('=')) continue;
    std::string_view value = line.substr(key.size() + 1);
    if (drop_end(value, ";") && is_set(parser, slot, value)) {
      slot++;
      return true;
    }
    if (!may_be_open(parser, slot)) continue;
    line.remove_prefix(key.size() + 1);
    if (line.empty()) return true;
    if (line.starts_with(kParameter)) return take_parameter(parser, line);
  }
  return refuse_line(parser);
}

bool take_settings(Parser &parser) {
  for (std::size_t slot = 0;;) {
    const std::string_view line = next_line(parser);
    if (line.starts_with(kParameter) ? !take_parameter(parser, line) : !take_switch(parser, line, slot)) return false;
    if (!take_line(parser)) return false;
    if (line.ends_with('=')) return true; // the end of an open line was that of the section
    if (!parser.parameters.list.empty()) slot = std::size(kSwitches);
    if (next_line(parser).empty()) return take_empty_line(parser);
  }
}

// ---- sections of lines

// How many of the first texts the last lines are: copied lines may look like those before them.
struct TextMatch {
  std::vector<std::string_view> texts;
  std::vector<std::size_t> shorter{}; // per text: how many of the first ones end there, too
  std::size_t count = 0;
};

void match_line(TextMatch &match, std::string_view line) {
  const std::size_t all = match.texts.size();
  while (match.count > 0 && (match.count == all || match.texts[match.count] != line))
    match.count = match.shorter[match.count - 1];
  if (match.count < all && match.texts[match.count] == line) match.count++;
}

TextMatch make_match(std::vector<std::string_view> texts) {
  TextMatch match{std::move(texts)};
  match.shorter.resize(match.texts.size());
  for (std::size_t i = 1; i < match.texts.size(); i++) {
    match_line(match, match.texts[i]);
    match.shorter[i] = match.count;
  }
  match.count = 0;
  return match;
}

// Lines of the section's own form, as `judge` knows them, then those that are copied as they are, up to an empty line.
template <typename Judge> bool take_lines(Parser &parser, std::string_view copied, const Judge &judge) {
  TextMatch match = make_match(copied_texts(parser.signals, copied, ""));
  std::size_t lines = 0, own = 0;
  for (;; lines++) {
    const std::string_view line = next_line(parser);
    if (line.empty() && match.count == match.texts.size()) break;
    const Answer answer = own == lines && !line.empty() ? judge(line) : Answer::NO;
    match_line(match, line);
    if (answer != Answer::NO) own++;
    const bool is_copied = !at_end(parser) && lines + 1 - match.count <= own;
    if (!settle(parser, answer == Answer::NO && is_copied ? Answer::YES : answer, line) || !take_line(parser))
      return false;
  }
  return lines > 0 ? take_empty_line(parser) : refuse_line(parser);
}

// A line that is not of the section's form may be a copied one.
Answer judge_other(const Parser &parser) { return parser.signals.table == nullptr ? Answer::UNKNOWN : Answer::NO; }

// PIN=TYPE,PIN,-,-;
bool take_io_types(Parser &parser) {
  struct TypeRow {
    std::string_view end;
    std::array<Asked, 2> asked;
  };
  constexpr TypeRow kTypes[] = {
      {"=LVCMOS33,PIN,-,-;", {{{CODE_OPENDRAIN_OFF}, {CODE_VOLTAGE_VCC}}}},
      {"=LVCMOS25,PIN,-,-;", {{{CODE_OPENDRAIN_OFF}, {CODE_VOLTAGE_VVCIO}}}},
      {"=LVCMOS33_OD,PIN,-,-;", {{{CODE_OPENDRAIN_ON}, {CODE_VOLTAGE_VCC}}}},
      {"=LVCMOS25_OD,PIN,-,-;", {{{CODE_OPENDRAIN_ON}, {CODE_VOLTAGE_VVCIO}}}},
  };
  Walk walk{NameList::PINS};
  return take_lines(parser, "IO_TYPES", [&](std::string_view line) {
    for (const TypeRow &row : kTypes)
      if (std::string_view pin = line; drop_end(pin, row.end)) return take_next(parser.signals, walk, pin, row.asked);
    return judge_other(parser);
  });
}

// Layer=off; then Pin=PIN,bi_Z;
bool take_reservations(Parser &parser) {
  if (next_line(parser) != "Layer=off;") return refuse_line(parser);
  if (!take_line(parser)) return false;
  parser.parameters.reserves = true;
  return take_lines(parser, "", [&](std::string_view line) {
    if (!line.starts_with("Pin=") || !drop_end(line, ",bi_Z;")) return Answer::NO;
    return find_statement(parser.signals, CODE_RESERVE_PIN, line.substr(4), "");
  });
}

bool is_location(std::string_view text) {
  return !text.empty() &&
         std::ranges::all_of(text, [](char c) { return class_of(c) == CHAR_LEGAL || class_of(c) == CHAR_SIGN; });
}

// PIN=pin,LOCATION,-,-;
bool take_locations(Parser &parser) {
  return take_lines(parser, "LOC", [&](std::string_view line) {
    constexpr std::string_view kPin = "=pin,";
    const std::size_t at = line.find(kPin);
    std::string_view location = at == std::string_view::npos ? "" : line.substr(at + kPin.size());
    if (!drop_end(location, ",-,-;") || !is_location(location)) return judge_other(parser);
    return find_statement(parser.signals, CODE_LOCK, line.substr(0, at), location);
  });
}

// SIGNAL=ON|OFF,GLB|IOC|-;
bool take_symbol_attributes(Parser &parser) {
  struct MarkRow {
    std::string_view end;
    bool is_protected;
    std::string_view type;
  };
  constexpr MarkRow kMarks[] = {
      {"=ON,GLB;", true, "GLB"},   {"=ON,IOC;", true, "IOC"},   {"=ON,-;", true, ""},
      {"=OFF,GLB;", false, "GLB"}, {"=OFF,IOC;", false, "IOC"},
  };
  Walk walk{NameList::INPUTS_FIRST};
  return take_lines(parser, "", [&](std::string_view line) {
    for (const MarkRow &row : kMarks) {
      std::string_view name = line;
      if (!drop_end(name, row.end)) continue;
      std::vector<Asked> asked;
      if (row.is_protected) asked.push_back({kProtect});
      if (!row.type.empty()) asked.push_back({CODE_REGTYPE, row.type});
      return take_next(parser.signals, walk, name, asked);
    }
    return Answer::NO;
  });
}

bool is_group_name(std::string_view text) {
  return !text.empty() && !is_digit(text.front()) &&
         std::ranges::all_of(text, [](char c) { return class_of(c) == CHAR_LEGAL; });
}

// GROUP=-,*,SIGNAL,...;
bool take_groups(Parser &parser) {
  constexpr std::string_view kMembers = "=-,*,";
  do {
    const std::string_view line = next_line(parser);
    const std::size_t at = std::min(line.find(kMembers), line.size());
    std::string_view members = line.substr(std::min(at + kMembers.size(), line.size()));
    if (!is_group_name(line.substr(0, at)) || !drop_end(members, ";")) return refuse_line(parser);
    const Asked asked{CODE_GROUP, line.substr(0, at)};
    if (!take_names(parser, {NameList::INPUTS_FIRST}, members, ",", asked) || !take_line(parser)) return false;
  } while (!at_end(parser));
  return true;
}

// ---- the file

struct SectionRow {
  std::string_view header;
  bool (*take)(Parser &parser);
  bool spaced = false;         // an empty line ends it
  std::string_view other = {}; // a header that may stand in its place
};

constexpr auto kSections = std::to_array<SectionRow>({
    {"[GLOBAL CONSTRAINTS]", take_settings},
    {"[Power]", take_lists},
    {"[OUTDELAY]", take_lists},
    {"[SLEWRATE]", take_lists},
    {"[PULLUP]", take_lists},
    {"[OSM ByPass]", take_lists},
    {"[IO TYPES]", take_io_types},
    {"[RESOURCE RESERVATIONS]", take_reservations},
    {"[LOCATION ASSIGNMENTS]", take_locations},
    {"[symbol/MODULE attribute]", take_symbol_attributes},
    {"[PTSABYPASS]", take_lists, false, "[4PTs Bypass]"},
    {"[CLK]", take_lists, true},
    {"[PRESERVE]", take_lists},
    {"[GROUP ASSIGNMENTS]", take_groups},
});

// kSections.size() when the line is no header.
std::size_t find_section(std::string_view line) {
  const auto is_it = [&](const SectionRow &row) { return !line.empty() && (row.header == line || row.other == line); };
  return static_cast<std::size_t>(std::ranges::find_if(kSections, is_it) - kSections.begin());
}

bool take_section(Parser &parser, std::size_t &next) {
  const std::size_t found = find_section(next_line(parser));
  if (found == kSections.size())
    return parser.section.empty() ? fail(parser, "the line stands in no section") : refuse_line(parser);
  if (found < next) fail(parser, "the section is out of order");
  next = found + 1;
  parser.section = next_line(parser);
  return take_line(parser) && kSections[found].take(parser) && (!kSections[found].spaced || take_empty_line(parser));
}

} // namespace

Judgement check_constraints(std::string_view text, const Signals &signals, ParameterSet &parameters) {
  Judgement judgement;
  Parser parser{text, signals, judgement, parameters};
  for (std::size_t next = 0; !at_end(parser);) {
    if (take_section(parser, next)) continue;
    // What follows is judged from the next header on.
    while (!at_end(parser) && (find_section(next_line(parser)) == kSections.size()) && take_line(parser)) {
    }
  }
  return judgement;
}

} // namespace cubekit
