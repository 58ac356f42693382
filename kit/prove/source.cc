// Reads a source: a PLA's points as functions, everything else through Yosys.
#include "kit/prove/source.h"

#include <iterator>
#include <sstream>
#include <unordered_set>

#include "kit/import/points.h"
#include "kit/util/finding.h"
#include "kit/util/progress.h"
#include "kit/util/run_program.h"
#include "util/output_file.h"

namespace cubekit {

namespace {

// Yosys reduces every design to one kind of flip-flop, one of latch, inverters and two-input ANDs.
constexpr const char *kPlainCells = "dfflegalize -cell $_DFFSR_PPP_ 01 -cell $_DLATCHSR_PPP_ 01; simplemap; aigmap";

Literal sum_of(const Draft &draft, Formulas &formulas, const Source &source, const std::vector<std::uint32_t> &terms) {
  std::vector<Literal> products, literals;
  for (const std::uint32_t term : terms) {
    literals.clear();
    for (const TermLiteral literal : literals_of(draft.terms, term))
      literals.push_back(invert(source.ports[signal_of(literal)].outside, !is_high(literal)));
    products.push_back(make_and(formulas, literals));
  }
  return make_or(formulas, products);
}

bool read_pla_source(std::string_view text, Formulas &formulas, Source &source, Draft &draft, Remark &fault) {
  Pla pla;
  if (!read_pla_points(text, draft, pla, fault)) return false;
  std::unordered_set<std::string> inputs;
  for (const DraftSignal &signal : draft.signals) {
    SourcePort &port = source.ports.emplace_back(SourcePort{signal.source, signal.port});
    if (port.kind != PortKind::IN) continue;
    port.outside = make_variable(formulas, port.name);
    inputs.insert(port.name);
  }
  for (std::size_t o = 0; o < pla.points.size(); o++) {
    SourcePort &port = source.ports[pla.inputs + o];
    if (inputs.contains(port.name)) port.name += kAsOutput;
    const PointLists &points = pla.points[o];
    const Literal on = sum_of(draft, formulas, source, points.on), off = sum_of(draft, formulas, source, points.off);
    const Literal free = sum_of(draft, formulas, source, points.free);
    const bool has_both = pla.lists.has_on && pla.lists.has_off;
    // On and off take precedence over free; points on no list are off, on, or free.
    port.value = pla.lists.has_on ? on : invert(make_or(formulas, {off, free}));
    port.care = has_both ? make_or(formulas, {on, off}) : make_or(formulas, {on, off, invert(free)});
    port.value = invert(port.value, !pla.phase.empty() && pla.phase[o] == '0');
  }
  return true;
}

std::vector<std::string> words_of(const std::string &line) {
  std::istringstream stream(line.substr(0, line.find('#')));
  return {std::istream_iterator<std::string>(stream), {}};
}

using ModelClocks = std::unordered_map<std::string, std::vector<std::string>>;

template <typename Visit> void for_each_line(const std::string &text, Visit visit) {
  std::istringstream stream(text);
  std::string model;
  for (std::string line; std::getline(stream, line);) {
    const std::vector<std::string> words = words_of(line);
    if (words.size() > 1 && words[0] == ".model") model = words[1];
    visit(model, line, words);
  }
}

// .latch INPUT OUTPUT [TYPE CONTROL] [INITIAL VALUE]
bool is_latch_without_clock(const std::vector<std::string> &words) {
  const bool has_control = words.size() >= 5;
  return words.size() >= 3 && words[0] == ".latch" && (!has_control || words[4] == "NIL");
}

// Yosys doesn't accept .clock, nor a latch without a clock of its own: clocks become inputs, and such latches
// get theirs. The first model is the top unless another is named. Line numbers stay the same.
std::string plain_blif(const std::string &text, ImportOptions &options) {
  ModelClocks clocks;
  for_each_line(text, [&](const std::string &model, const std::string &, const std::vector<std::string> &words) {
    if (options.top.empty()) options.top = model;
    if (!words.empty() && words[0] == ".clock")
      clocks[model].insert(clocks[model].end(), words.begin() + 1, words.end());
  });
  if (!options.clock.empty()) clocks[options.top] = {options.clock};
  std::string result;
  for_each_line(text, [&](const std::string &model, std::string line, const std::vector<std::string> &words) {
    if (!words.empty() && words[0] == ".clock") line.replace(line.find('.'), 6, ".inputs");
    if (is_latch_without_clock(words) && clocks[model].size() == 1) {
      const bool has_control = words.size() >= 5;
      line = ".latch " + words[1] + ' ' + words[2] + ' ' + (has_control ? words[3] : "re") + ' ' + clocks[model][0];
      if (words.size() % 2 == 0) line += ' ' + words.back();
    }
    if (words.size() > 1 && words[0] == ".model" && model == options.top && !options.clock.empty())
      line += "\n.inputs " + options.clock;
    result += line + '\n';
  });
  return result;
}

bool read_blif_source(std::string_view text, ImportOptions options, Draft &draft, std::string &json, Remark &fault) {
  const TempDirectory directory;
  const std::string path = directory.path / "source.blif", source = options.path;
  cubenet::OutputFile file;
  fault = {{}, "no temporary file could be written"};
  if (directory.path.empty() || !open_output(file, path)) return false;
  put(file, plain_blif(std::string(text), options));
  if (!close_output(file)) return false;
  options.path = path;
  if (run_yosys_on_gates(options, kPlainCells, draft, json, fault)) return true;
  for (std::string &name : draft.files)
    if (name == path) name = source;
  return false;
}

// Signals that BLIF lists both as input and as output are bidirectional to Yosys.
void split_ports(Source &source) {
  for (std::size_t i = 0, count = source.ports.size(); i < count; i++) {
    if (source.ports[i].kind != PortKind::INOUT) continue;
    source.ports[i].kind = PortKind::IN;
    SourcePort output{source.ports[i].name + kAsOutput, PortKind::OUT};
    output.value = source.ports[i].outside;
    source.ports.push_back(std::move(output));
  }
}

} // namespace

bool read_source(std::string_view text, const ImportOptions &options, Formulas &formulas, Source &source, Draft &draft,
                 Remark &fault) {
  draft.files = {options.path};
  if (options.kind == SourceKind::PLA)
    return during("reading", [&] { return read_pla_source(text, formulas, source, draft, fault); });
  std::string json;
  const auto run = [&] {
    Place loop;
    return options.kind == SourceKind::BLIF ? read_blif_source(text, options, draft, json, fault)
                                            : run_yosys(options, kPlainCells, draft, json, fault, loop);
  };
  if (!during("running yosys", run)) return false;
  fault = {};
  if (!during("reading", [&] { return read_source_json(json, formulas, source, fault.text); })) return false;
  if (options.kind == SourceKind::BLIF) split_ports(source);
  return true;
}

} // namespace cubekit
