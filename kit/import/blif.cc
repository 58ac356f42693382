// Reads a BLIF netlist: models of logic (.names), storage (.latch), and other models of the file (.subckt),
// which replace their instances.
#include <algorithm>
#include <array>
#include <unordered_map>

#include "kit/import/import.h"
#include "kit/util/finding.h"
#include "util/text_hash.h"

namespace cubekit {

using cubenet::ExtensionCode;
using cubenet::TextSet;
using enum cubenet::ExtensionCode;

namespace {

using Words = std::vector<std::string_view>;

// A line with its continuations, or a row of a cover.
struct Statement {
  std::size_t line = 0;
  Words words{};
  std::size_t first_row = 0, row_count = 0; // .names: into Blif::rows
};
struct Row {
  std::size_t line = 0;
  std::string_view inputs, output;
};

struct Model {
  std::string_view name;
  std::size_t line = 0;
  Words inputs{}, outputs{}, clocks{};
  std::vector<Statement> logic{}; // .names, .latch, .subckt
  std::string_view instance{};
  std::uint64_t size = 0; // statements, including placed models; 0: not known yet
  bool is_open = false;
};

struct Blif {
  std::string_view text;
  const ImportOptions &options;
  Draft &draft;
  Remark &fault;
  std::vector<Model> models{};
  std::vector<Row> rows{};
  std::unordered_map<std::string_view, std::size_t> by_name{};
  std::size_t lost_values = 0, lost_line = 0; // initial values
};

// More than any useful table can hold.
constexpr std::uint64_t kMostStatements = 1'000'000;

bool fail(Blif &blif, std::size_t line, std::string text) {
  blif.fault = {{0, line}, std::move(text)};
  return false;
}

// The next line that isn't empty, with the lines that a '\' at its end joins to it. Its number is that of the
// first.
class Lines {
public:
  explicit Lines(std::string_view text) : text_(text) {}

  bool next(std::size_t &line, Words &words) {
    words.clear();
    while (words.empty() && at_ < text_.size()) {
      line = line_ + 1;
      while (add_line(words)) {
      }
    }
    return !words.empty();
  }

private:
  static constexpr std::string_view kBlanks = " \t\r\f\v";

  // True when the line goes on.
  bool add_line(Words &words) {
    if (at_ >= text_.size()) return false;
    const std::size_t end = std::min(text_.find('\n', at_), text_.size());
    std::string_view line = text_.substr(at_, end - at_);
    at_ = end + 1;
    line_++;
    line = line.substr(0, line.find('#'));
    const std::size_t last = line.find_last_not_of(kBlanks);
    line = line.substr(0, last + 1);
    const bool goes_on = line.ends_with('\\');
    if (goes_on) line.remove_suffix(1);
    for (std::size_t at = 0; (at = line.find_first_not_of(kBlanks, at)) != std::string_view::npos;) {
      const std::size_t word_end = std::min(line.find_first_of(kBlanks, at), line.size());
      words.push_back(line.substr(at, word_end - at));
      at = word_end;
    }
    return goes_on;
  }

  std::string_view text_;
  std::size_t at_ = 0, line_ = 0;
};

// Lines that don't affect what the design computes.
constexpr auto kIgnored = std::to_array<std::string_view>({
    ".area",
    ".attr",
    ".clock_event",
    ".cname",
    ".cycle",
    ".default_input_arrival",
    ".default_input_drive",
    ".default_max_input_load",
    ".default_output_load",
    ".default_output_required",
    ".delay",
    ".input_arrival",
    ".input_drive",
    ".input_required",
    ".latch_order",
    ".max_input_load",
    ".output_arrival",
    ".output_load",
    ".output_required",
    ".param",
    ".wire",
    ".wire_load_slope",
});
constexpr auto kRefused = std::to_array<std::string_view>({
    ".exdc",
    ".mlatch",
    ".gate",
    ".blackbox",
    ".search",
    ".start_kiss",
    ".i",
    ".o",
    ".p",
    ".s",
    ".r",
    ".code",
    ".end_kiss",
    ".mv",
    ".table",
    ".short",
    ".conn",
});

bool read_row(Blif &blif, std::size_t line, const Words &words, bool is_open) {
  Model &model = blif.models.back();
  if (!is_open)
    return fail(blif, line, quoted(words[0]) + " is no statement, and there is no cover that it could belong to");
  Statement &names = model.logic.back();
  const std::size_t inputs = names.words.size() - 2;
  const bool is_whole = words.size() == (inputs == 0 ? 1U : 2U);
  const Row row{line, inputs == 0 ? "" : words[0], words.back()};
  if (!is_whole || row.inputs.size() != inputs || row.output.size() != 1)
    return fail(blif, line, "a row of this cover needs " + std::to_string(inputs) + " inputs and one output");
  if (row.inputs.find_first_not_of("01-") != std::string_view::npos || (row.output != "0" && row.output != "1"))
    return fail(blif, line, "a row of a cover has only 0, 1 and -");
  if (names.row_count > 0 && blif.rows[names.first_row].output != row.output)
    return fail(blif, line, "the rows of a cover say either when it is 1 or when it is 0, not both");
  if (names.row_count++ == 0) names.first_row = blif.rows.size();
  blif.rows.push_back(row);
  return true;
}

bool read_statement(Blif &blif, std::size_t line, const Words &words, bool &is_open) {
  const std::string_view keyword = words[0];
  const bool continues_cover = is_open;
  is_open = keyword == ".names";
  if (keyword == ".model") {
    if (words.size() > 2) return fail(blif, line, "'.model' needs one name");
    blif.models.push_back({words.size() == 2 ? words[1] : "", line});
    if (!blif.by_name.emplace(blif.models.back().name, blif.models.size() - 1).second)
      return fail(blif, line, "a second model " + quoted(blif.models.back().name));
    return true;
  }
  if (blif.models.empty()) {
    if (keyword[0] != '.') return fail(blif, line, "no BLIF: " + quoted(keyword) + " stands in front of any model");
    blif.models.push_back({"", line});
  }
  Model &model = blif.models.back();
  if (keyword[0] != '.') {
    is_open = continues_cover;
    return read_row(blif, line, words, is_open);
  }
  if (keyword == ".inputs" || keyword == ".outputs" || keyword == ".clock") {
    Words &list = keyword == ".inputs" ? model.inputs : keyword == ".outputs" ? model.outputs : model.clocks;
    list.insert(list.end(), words.begin() + 1, words.end());
    return true;
  }
  if (keyword == ".names" || keyword == ".latch" || keyword == ".subckt") {
    if (words.size() < 2 || (keyword == ".latch" && (words.size() < 3 || words.size() > 6)))
      return fail(blif, line, quoted(keyword) + " with too few or too many names");
    model.logic.push_back({line, words});
    return true;
  }
  if (std::ranges::find(kIgnored, keyword) != kIgnored.end()) return true;
  if (std::ranges::find(kRefused, keyword) != kRefused.end())
    return fail(blif, line, quoted(keyword) + " is not supported: import takes .names, .latch and .subckt");
  return fail(blif, line, quoted(keyword) + " is no statement of BLIF");
}

bool read_models(Blif &blif) {
  Lines lines(blif.text);
  std::size_t line = 0;
  Words words;
  bool is_open = false, is_ended = false; // a cover, a model
  while (lines.next(line, words)) {
    if (words[0] == ".end") {
      is_open = false;
      is_ended = true;
      continue;
    }
    if (is_ended && words[0] != ".model" && words[0] != ".exdc") return fail(blif, line, "this stands behind '.end'");
    is_ended = false;
    if (!read_statement(blif, line, words, is_open)) return false;
  }
  if (blif.models.empty()) return fail(blif, 0, "no BLIF: there is no model in it");
  return true;
}

// Models are looked up, and their full sizes computed, before anything is built.
bool measure(Blif &blif, std::size_t index, std::size_t depth) {
  constexpr std::size_t kDeepest = 1000;
  if (blif.models[index].size != 0) return true;
  if (blif.models[index].is_open || depth > kDeepest)
    return fail(blif, blif.models[index].line, "model " + quoted(blif.models[index].name) + " is placed in itself");
  blif.models[index].is_open = true;
  std::uint64_t size = 1;
  for (const Statement &statement : blif.models[index].logic) {
    size++;
    if (statement.words[0] != ".subckt") continue;
    const auto found = blif.by_name.find(statement.words[1]);
    if (found == blif.by_name.end())
      return fail(blif, statement.line, "there is no model " + quoted(statement.words[1]) + " in the file");
    if (!measure(blif, found->second, depth + 1)) return false;
    size += blif.models[found->second].size;
    if (size > kMostStatements) return fail(blif, statement.line, "with all models in place the design is too large");
  }
  blif.models[index].size = size;
  blif.models[index].is_open = false;
  return true;
}

// One placed model: which signals its names mean.
struct Scope {
  const Model &model;
  std::string prefix; // of its inner names
  std::unordered_map<std::string_view, std::uint32_t> signals{};
};

std::uint32_t signal_at(Blif &blif, Scope &scope, std::string_view name, std::size_t line) {
  const auto [found, is_new] = scope.signals.try_emplace(name, 0);
  if (is_new) found->second = add_signal(blif.draft, scope.prefix + std::string(name), PortKind::NONE, {0, line});
  return found->second;
}

bool drive(Blif &blif, std::uint32_t signal, std::size_t line) {
  DraftSignal &driven = blif.draft.signals[signal];
  if (driven.port == PortKind::IN) return fail(blif, line, quoted(driven.source) + " is an input, and driven here");
  if (!driven.equations.empty()) return fail(blif, line, quoted(driven.source) + " is driven a second time");
  driven.place.line = line;
  return true;
}

bool place_cover(Blif &blif, Scope &scope, const Statement &statement) {
  const Words &words = statement.words;
  std::vector<std::uint32_t> inputs;
  for (std::size_t i = 1; i + 1 < words.size(); i++) inputs.push_back(signal_at(blif, scope, words[i], statement.line));
  const std::uint32_t output = signal_at(blif, scope, words.back(), statement.line);
  if (!drive(blif, output, statement.line)) return false;
  Equation &equation = add_equation(blif.draft, output, EXT_NONE, {0, statement.line});
  for (std::size_t r = statement.first_row; r < statement.first_row + statement.row_count; r++) {
    const Row &row = blif.rows[r];
    equation.inverted = row.output == "0";
    std::vector<TermLiteral> literals;
    for (std::size_t i = 0; i < inputs.size(); i++)
      if (row.inputs[i] != '-') literals.push_back(2 * inputs[i] + (row.inputs[i] == '1' ? 1 : 0));
    add_product(blif.draft, equation, std::move(literals));
  }
  return true;
}

struct LatchType {
  std::string_view name;
  ExtensionCode extension;
  bool is_high; // the control's level, or the level after its edge
};
// clang-format off
constexpr auto kLatchTypes = std::to_array<LatchType>({
    {"re", EXT_C,  true},
    {"fe", EXT_C,  false},
    {"ah", EXT_LH, true},
    {"al", EXT_LE, true}, // open at 0
});
// clang-format on

// The signal that a latch without a control is clocked by; kNone when there is none.
std::uint32_t common_clock(Blif &blif, Scope &scope, std::size_t line) {
  if (!blif.options.clock.empty()) {
    for (std::uint32_t s = 0; s < blif.draft.signals.size(); s++)
      if (blif.draft.signals[s].port == PortKind::IN && blif.draft.signals[s].source == blif.options.clock) return s;
  } else if (scope.model.clocks.size() == 1) {
    return signal_at(blif, scope, scope.model.clocks[0], line);
  }
  return kNone;
}

// .latch INPUT OUTPUT [TYPE CONTROL] [INITIAL VALUE]
bool place_latch(Blif &blif, Scope &scope, const Statement &statement) {
  const Words &words = statement.words;
  const std::size_t line = statement.line;
  const bool has_control = words.size() >= 5;
  const std::string_view value = words.size() % 2 == 0 ? words.back() : "3";
  if (value.size() != 1 || value[0] < '0' || value[0] > '3')
    return fail(blif, line, "the initial value of a latch is one of 0 to 3");
  const auto type = has_control ? std::ranges::find(kLatchTypes, words[3], &LatchType::name) : kLatchTypes.begin();
  if (type == kLatchTypes.end())
    return fail(blif, line,
                words[3] == "as" ? "a latch of type 'as' has no clock, and no counterpart in a table"
                                 : "the type of a latch is one of fe, re, ah, al and as");
  const std::uint32_t data = signal_at(blif, scope, words[1], line), output = signal_at(blif, scope, words[2], line);
  const std::uint32_t control =
      has_control && words[4] != "NIL" ? signal_at(blif, scope, words[4], line) : common_clock(blif, scope, line);
  if (control == kNone)
    return fail(blif, line, "latch " + quoted(words[2]) + " names no clock; --clock NAME gives it one");
  if (!drive(blif, output, line)) return false;
  if (value == "0" || value == "1") {
    if (blif.lost_values++ == 0) blif.lost_line = line;
  }
  add_product(blif.draft, add_equation(blif.draft, output, EXT_D, {0, line}), {2 * data + 1});
  add_product(blif.draft, add_equation(blif.draft, output, type->extension, {0, line}),
              {2 * control + (type->is_high ? 1U : 0U)});
  return true;
}

bool place_model(Blif &blif, Scope &scope);

// .subckt MODEL FORMAL=ACTUAL ...
bool place_instance(Blif &blif, Scope &scope, const Statement &statement, std::size_t number) {
  const Words &words = statement.words;
  const Model &model = blif.models[blif.by_name.at(words[1])];
  Scope inner{model, scope.prefix + std::string(model.name) + std::to_string(number) + '/'};
  const auto is_port = [&](std::string_view name) {
    for (const Words *list : {&model.inputs, &model.outputs, &model.clocks})
      if (std::ranges::find(*list, name) != list->end()) return true;
    return false;
  };
  for (std::size_t i = 2; i < words.size(); i++) {
    const std::size_t middle = words[i].find('=');
    if (middle == 0 || middle >= words[i].size() - 1)
      return fail(blif, statement.line, quoted(words[i]) + " is no connection: it needs FORMAL=ACTUAL");
    const std::string_view formal = words[i].substr(0, middle), actual = words[i].substr(middle + 1);
    if (!is_port(formal))
      return fail(blif, statement.line, "model " + quoted(model.name) + " has no port " + quoted(formal));
    if (!inner.signals.emplace(formal, signal_at(blif, scope, actual, statement.line)).second)
      return fail(blif, statement.line, "port " + quoted(formal) + " is connected twice");
  }
  for (const Words *list : {&model.inputs, &model.clocks})
    for (const std::string_view input : *list)
      if (!inner.signals.contains(input))
        return fail(blif, statement.line, "input " + quoted(input) + " of the instance is not connected");
  return place_model(blif, inner);
}

bool place_model(Blif &blif, Scope &scope) {
  std::unordered_map<std::string_view, std::size_t> instances;
  for (const Statement &statement : scope.model.logic) {
    const std::string_view keyword = statement.words[0];
    const bool is_placed = keyword == ".names" ? place_cover(blif, scope, statement)
                           : keyword == ".latch"
                               ? place_latch(blif, scope, statement)
                               : place_instance(blif, scope, statement, instances[statement.words[1]]++);
    if (!is_placed) return false;
  }
  return true;
}

bool add_inputs(Blif &blif, Scope &scope) {
  for (const Words *list : {&scope.model.inputs, &scope.model.clocks})
    for (const std::string_view name : *list) {
      if (scope.signals.contains(name)) {
        if (list == &scope.model.clocks) continue; // a clock may be among the inputs too
        return fail(blif, scope.model.line, quoted(name) + " is twice among the inputs");
      }
      scope.signals[name] = add_signal(blif.draft, std::string(name), PortKind::IN, {0, scope.model.line});
    }
  const std::string &clock = blif.options.clock;
  if (clock.empty() || scope.signals.contains(clock)) return true;
  scope.signals[clock] = add_signal(blif.draft, clock, PortKind::IN, {0, scope.model.line});
  return true;
}

bool add_outputs(Blif &blif, Scope &scope) {
  TextSet<std::string_view> seen;
  for (const std::string_view name : scope.model.outputs) {
    if (!seen.insert(name).second) return fail(blif, scope.model.line, quoted(name) + " is twice among the outputs");
    const std::uint32_t output = add_signal(blif.draft, std::string(name), PortKind::OUT, {0, scope.model.line});
    const auto [known, is_new] = scope.signals.try_emplace(name, output);
    if (is_new) continue;
    // An input that is an output too.
    add_product(blif.draft, add_equation(blif.draft, output, EXT_NONE, {0, scope.model.line}), {2 * known->second + 1});
  }
  if (scope.model.outputs.empty()) return fail(blif, scope.model.line, "the model has no outputs");
  return true;
}

bool find_undriven(Blif &blif) {
  for (const DraftSignal &signal : blif.draft.signals)
    if (signal.equations.empty() && signal.port != PortKind::IN)
      return fail(blif, signal.place.line, quoted(signal.source) + " is driven by nothing");
  return true;
}

} // namespace

bool read_blif(std::string_view text, const ImportOptions &options, Draft &draft, Remark &fault) {
  Blif blif{text, options, draft, fault};
  if (!read_models(blif)) return false;
  std::size_t top = 0;
  if (!options.top.empty()) {
    const auto found = blif.by_name.find(options.top);
    if (found == blif.by_name.end()) return fail(blif, 0, "there is no model " + quoted(options.top) + " in the file");
    top = found->second;
  }
  if (!measure(blif, top, 0)) return false;
  Scope scope{blif.models[top], ""};
  draft.module = scope.model.name;
  if (!add_inputs(blif, scope) || !add_outputs(blif, scope) || !place_model(blif, scope) || !find_undriven(blif))
    return false;
  if (blif.lost_values > 0)
    draft.remarks.push_back(
        {{0, blif.lost_line},
         (blif.lost_values == 1 ? "the initial value of 1 latch is"
                                : "the initial values of " + std::to_string(blif.lost_values) + " latches are") +
             std::string(" lost: a table has none")});
  return true;
}

} // namespace cubekit
