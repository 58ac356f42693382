// Checks the form of a constraints file without its truth table. Only the table says which signals the lists
// name and which lines older statements passed on; everything else is fixed.
#include <algorithm>
#include <array>
#include <string>

#include "constraints/constraints.h"
#include "kit/check/check.h"
#include "kit/table/read_design.h"
#include "kit/util/file.h"
#include "kit/util/run_program.h"
#include "model/characters.h"

namespace cubekit {

namespace {

// A '%' and a letter stand for a text: l a list of signals, n a signal, v one of the section's values, w a
// word, g a word that doesn't begin with a digit, f any text.
struct Section {
  std::string_view header;
  std::array<std::string_view, 7> lines; // in this order, each once, or any number of them after a '*'
  std::string_view values{};             // each between line ends
  bool is_closed = false;                // by an empty line
  bool has_other_lines = false;          // that are passed on
};

// clang-format off
constexpr auto kSections = std::to_array<Section>({
    {"[GLOBAL CONSTRAINTS]",      {"*%f;"}, "", true}, // see check_settings
    {"[Power]",                   {"Low = %l;", "High = %l;"}},
    {"[OUTDELAY]",                {"On=%l;", "Off=%l;\n"}},
    {"[SLEWRATE]",                {"SLOW=%l;", "FAST=%l;\n"}},
    {"[PULLUP]",                  {"UP=%l;", "OFF=%l;", "DOWN=%l;", "HOLD=%l;\n"}},
    {"[OSM ByPass]",              {"Bypass=%l;\n"}},
    {"[IO TYPES]",                {"*%n=%v,PIN,-,-;"}, "\nLVCMOS33\nLVCMOS25\nLVCMOS33_OD\nLVCMOS25_OD\n", true, true},
    {"[RESOURCE RESERVATIONS]",   {"Layer=off;", "*Pin=%n,bi_Z;"}, "", true},
    {"[LOCATION ASSIGNMENTS]",    {"*%n=pin,%w,-,-;"}, "", true, true},
    {"[symbol/MODULE attribute]", {"*%n=%v;"}, "\nON,GLB\nON,IOC\nON,-\nOFF,GLB\nOFF,IOC\n", true},
    {"[PTSABYPASS]",              {"BYPASS=%l;\n"}},
    {"[4PTs Bypass]",             {"BYPASS=%l;\n"}}, // instead of the one before
    {"[CLK]",                     {"CLK0=%l;", "CLK1=%l;", "CLK2=%l;", "IOCLK0=%l;", "IOCLK1=%l;", "FASTCLK=%l;",
                                   "SLOWCLK=%l;"}, "", true},
    {"[PRESERVE]",                {"PRESERVE=%l;\n"}},
    {"[GROUP ASSIGNMENTS]",       {"*%g=-,*,%l;"}},
});
// clang-format on

struct Checker {
  std::string_view left;
  const NameIndex &signals;
  Judgement &judgement;
  std::string_view section{}; // the header
  std::size_t line = 1;
  bool passed_on = false; // some line may have been: nothing after it is certain
};

bool fail(Checker &checker, std::string text) {
  (checker.passed_on ? checker.judgement.open : checker.judgement.wrong).push_back({checker.line, std::move(text)});
  return false;
}

std::string_view next_line(const Checker &checker) { return checker.left.substr(0, checker.left.find('\n')); }

// Returns the line that is skipped.
std::string_view take_line(Checker &checker) {
  const std::string_view line = next_line(checker);
  checker.left.remove_prefix(line.size() + 1);
  checker.line++;
  return line;
}

bool is_header(std::string_view line) {
  return std::ranges::any_of(kSections, [&](const Section &section) { return section.header == line; });
}

bool refuse_line(Checker &checker) {
  if (is_header(next_line(checker))) return fail(checker, "the section is out of order");
  if (checker.section.empty()) return fail(checker, "the line stands in no section");
  return fail(checker, "the line is none of section " + std::string(checker.section) + ", or out of order");
}

bool take_empty_line(Checker &checker) {
  if (!checker.left.starts_with('\n')) {
    if (checker.left.empty() || is_header(next_line(checker))) return fail(checker, "an empty line must stand here");
    return refuse_line(checker);
  }
  take_line(checker);
  return true;
}

bool is_word(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return cubenet::class_of(c) == cubenet::CHAR_LEGAL; });
}

// The names of a list that the netlists don't have: only the table says whether such signals exist.
void look_up(Checker &checker, std::string_view names, std::string_view separator) {
  for (std::size_t at = 0; at <= names.size();) {
    const std::size_t end = std::min(names.find(separator, at), names.size());
    const std::string_view name = names.substr(at, end - at);
    at = end + separator.size();
    if (find_name(checker.signals, name) == kNone)
      checker.judgement.open.push_back({checker.line, "only the truth table can tell of " + quoted(name)});
  }
}

// Whether the line matches the pattern. If so, looks its signals up.
bool is_line_of(Checker &checker, std::string_view line, std::string_view pattern, const Section &section) {
  std::string_view names;
  for (;;) {
    const std::size_t mark = pattern.find('%');
    if (!line.starts_with(pattern.substr(0, mark))) return false;
    if (mark == std::string_view::npos) {
      if (line != pattern) return false;
      break;
    }
    line.remove_prefix(mark);
    const char kind = pattern[mark + 1];
    pattern.remove_prefix(mark + 2);
    const std::size_t next_mark = pattern.find('%');
    const std::string_view behind = pattern.substr(0, next_mark);
    const std::size_t end = next_mark == std::string_view::npos ? line.rfind(behind) : line.find(behind);
    if (end == std::string_view::npos || end == 0) return false;
    const std::string_view text = line.substr(0, end);
    line.remove_prefix(end);
    if (kind == 'v' && section.values.find('\n' + std::string(text) + '\n') == std::string_view::npos) return false;
    if ((kind == 'w' || kind == 'g') && !is_word(text)) return false;
    if (kind == 'g' && cubenet::is_digit(text.front())) return false;
    if (kind == 'l' || kind == 'n') names = text;
  }
  if (!names.empty()) look_up(checker, names, section.header == "[Power]" ? ", " : ",");
  return true;
}

bool take_other_lines(Checker &checker) {
  const auto is_at_end = [&] {
    if (checker.left.empty()) return true;
    const std::string_view behind = checker.left.substr(next_line(checker).size() + 1);
    return checker.left.starts_with('\n') && (behind.empty() || is_header(behind.substr(0, behind.find('\n'))));
  };
  bool any = false;
  for (; !is_at_end(); any = true) {
    checker.judgement.open.push_back({checker.line, "only the truth table can tell of " + quoted(next_line(checker))});
    take_line(checker);
  }
  return any;
}

bool take_section(Checker &checker, const Section &section) {
  if (next_line(checker) != section.header) return true;
  if (section.header == "[4PTs Bypass]" && checker.section == "[PTSABYPASS]") return true;
  checker.section = take_line(checker);
  bool any = false;
  for (std::string_view pattern : section.lines) {
    if (pattern.empty()) break;
    const bool repeats = pattern.starts_with('*'), is_last = pattern.ends_with('\n');
    pattern = pattern.substr(repeats ? 1 : 0, pattern.size() - (repeats ? 1 : 0) - (is_last ? 1 : 0));
    while (!checker.left.empty() && is_line_of(checker, next_line(checker), pattern, section)) {
      take_line(checker);
      any = true;
      if (is_last && !take_empty_line(checker)) return false;
      if (!repeats) break;
    }
  }
  if (section.has_other_lines) {
    checker.passed_on |= take_other_lines(checker) || !any; // an empty one reads like the end
    any = true;
  }
  if (!any) return fail(checker, "a line of section " + std::string(section.header) + " must stand here");
  return !section.is_closed || take_empty_line(checker);
}

// The truth table statements that lead to such settings.
std::string statements_of(std::string_view settings) {
  constexpr std::array<std::array<std::string_view, 2>, 5> kKeys{{
      // in the file, in a statement
      {"SLEWRATE=FAST", "SLOWSLEW ON"},
      {"SLEWRATE=", "SLOWSLEW OFF"},
      {"Tarvex_Max_GLB_Inputs=", "MAX_GLB_IN "},
      {"Tarvex_GLB_Outputs=", "MAX_GLB_OUT "},
      {"Tarvex_Timing_Analysis=", "TIMING_ANALYZER "},
  }};
  // The file doesn't say which of these a voltage is for.
  constexpr std::array<std::string_view, 3> kVoltages{"INPUT ", "OUTPUT ", "BIDI "};
  constexpr std::string_view kPrefix = "Tarvex_", kVoltage = "VOLTAGE ";
  std::string statements;
  std::size_t voltages = 0;
  for (std::size_t at = 0; at < settings.size();) {
    std::string line(settings.substr(at, settings.find('\n', at) - at));
    at += line.size() + 1;
    if (line.ends_with(';')) line.pop_back();
    for (const auto &[key, keyword] : kKeys)
      if (line.starts_with(key)) line.replace(0, key.size(), keyword);
    if (line.starts_with(kPrefix)) line.erase(0, kPrefix.size());
    if (const std::size_t equals = line.find('='); equals != std::string::npos) line[equals] = ' ';
    if (line.starts_with(kVoltage) && voltages < kVoltages.size()) line.insert(kVoltage.size(), kVoltages[voltages++]);
    statements += "#$ PROPERTY corvane " + line + '\n';
  }
  return statements;
}

// Compares the settings with what is written for a truth table that leads to them. Fills in the parameters.
bool check_settings(Checker &checker, std::string_view settings, std::string &parameters) {
  const auto design = read_statements(statements_of(settings.substr(settings.find('\n') + 1)), "");
  if (design == nullptr) return fail(checker, "the settings can't be told in a truth table");
  for (const std::string &parameter : design->par)
    if (!parameter.empty()) parameters += parameter + '\n';
  const TempDirectory directory;
  const std::string path = directory.path / "settings";
  std::string written;
  Finding error{0, "no temporary directory could be made"};
  if (!directory.path.empty()) cubenet::write_constraints(path, *design);
  if (directory.path.empty() || !read_temporary(path, written, error)) {
    checker.judgement.open.push_back({1, "the settings can't be judged: " + error.text});
    return true;
  }
  return !find_difference(settings, written, checker.judgement.wrong);
}

bool judge(Checker &checker, std::string &parameters) {
  const std::string_view text = checker.left;
  if (!text.empty() && !text.ends_with('\n')) return fail(checker, "the last line has no end");
  for (const Section &section : kSections) {
    if (!take_section(checker, section)) return false;
    const bool is_settings = &section == kSections.begin() && checker.line > 1;
    if (is_settings && !check_settings(checker, text.substr(0, text.size() - checker.left.size()), parameters))
      return false;
  }
  return checker.left.empty() || refuse_line(checker);
}

} // namespace

Judgement check_constraints(std::string_view text, const NameIndex &signals, const std::string &response) {
  Judgement judgement;
  std::string parameters;
  Checker checker{text, signals, judgement};
  if (!judge(checker, parameters) && !judgement.wrong.empty()) return judgement;
  if (text.find("[RESOURCE RESERVATIONS]\n") != std::string_view::npos)
    parameters += "RESERVE_PIN_FILE " + response + '\n';
  if (!parameters.empty()) judgement.parameters = parameters + "END\n";
  return judgement;
}

} // namespace cubekit
