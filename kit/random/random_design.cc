// Draws a design: signals with their kinds and names, the references that read them, then terms for every
// equation.
#include "kit/random/random_design.h"

#include <algorithm>

#include "kit/random/design_text.h"
#include "model/names.h"

namespace cubekit {

namespace {

// A generator of its own, so that a seed gives the same design with every standard library.
struct Random {
  std::uint64_t state;
};

std::uint64_t draw(Random &random) {
  std::uint64_t z = random.state += 0x9E3779B97F4A7C15U;
  z = (z ^ z >> 30) * 0xBF58476D1CE4E5B9U;
  z = (z ^ z >> 27) * 0x94D049BB133111EBU;
  return z ^ z >> 31;
}

std::size_t below(Random &random, std::size_t limit) { return static_cast<std::size_t>(draw(random) % limit); }
bool chance(Random &random, std::size_t percent) { return below(random, 100) < percent; }
template <typename List> const auto &pick(Random &random, const List &list) { return list[below(random, list.size())]; }

struct Signal {
  std::string name;
  bool pin = true, input = false, enabled = false, macro = false;
  const SignalKind *kind = nullptr; // null: input, or driven by a macro
};

struct Generator {
  Random random;
  int series;
  DesignText design{};
  std::vector<Signal> signals{};
};

// clang-format off
constexpr auto kOddNames = std::to_array<std::string_view>({
    "GND", "vcc", "Gnd", "_PLA7", "_pla_x", "_PLA0_a", "_PLO_x", "_PLN_1", "_PLI_0", "_PLO_0_0_0", "_RES_q", "_RES_PLA7",
    "A", "q", "x_", "_", "PLA", "END",
});
constexpr auto kEndings = std::to_array<std::string_view>({
    "_X1", "_X2", "_DX1", "_GX2", "_TX1", "_D", "_REG", "_T", "_S", "_R", "_J", "_K", "_C", "_LH", "_Q", "_Z", "_SP",
    "_SR", "_AR", "_AP", "_PR", "_PIN", "_B", "_X1B", "_DX1B", "_REGB", "_LHB", "_LEB", "_CEB", "_OEB", "_1", "_2", "_3",
    "_4", "_5", "_6", "_7", "_8", "_9", "_OE", "_CE", "_LE", "_RE", "_FB", "_H", "_CB", "_DB", "_TB", "_JB", "_KB", "_RB",
    "_SB", "_QB", "_BD", "_d",
});
// Names that the program generates without suffixes.
constexpr auto kMadeNames = std::to_array<std::string_view>({
    "_PLN_0", "_PLN_1", "_PLN_0_0_0", "_PLI_0", "_PLI_1", "_PLO_0_0_0", "_PLA_AND_0", "_PLA_AND_1", "_PLA_INV_0",
    "_PLA_OR_0_0_0", "inst_2", "loose_H", "loose_H_2",
});
constexpr auto kMadeFronts = std::to_array<std::string_view>({
    "", "", "_PLA0_", "_PLA1_", "_RES_", "_RES_PLA0_", "_RES_RES_",
});
// clang-format on

bool is_taken(const Generator &generator, const std::string &name) {
  return std::ranges::any_of(generator.signals,
                             [&](const Signal &signal) { return cubenet::equal_ignoring_case(signal.name, name); });
}

std::string draw_name(Generator &generator) {
  for (;;) {
    std::string name;
    const std::size_t style = below(generator.random, 100);
    if (style < 15 && !generator.signals.empty())
      name = pick(generator.random, generator.signals).name + std::string(pick(generator.random, kEndings));
    else if (style < 22)
      name = pick(generator.random, kOddNames);
    else
      name = "s" + std::to_string(below(generator.random, 1000));
    if (name.size() <= 40 && !is_taken(generator, name)) return name;
  }
}

Controls draw_controls(Generator &generator, const SignalKind &kind) {
  Random &random = generator.random;
  Controls controls;
  const bool latch = kind.may_latch && chance(random, 35);
  controls.clock = latch ? (chance(random, 50) ? "LE" : "LH") : "C";
  controls.CE = !latch && chance(random, 35);
  controls.SP = !latch && chance(random, 30);
  controls.SR = !latch && chance(random, 30);
  if (chance(random, 40)) controls.reset = chance(random, 50) ? "AR" : "RE";
  // Both at once only where the device has both.
  if (chance(random, 40) && (controls.reset.empty() || generator.series >= 2))
    controls.preset = chance(random, 50) ? "AP" : "PR";
  return controls;
}

void declare(Generator &generator, const Signal &signal, bool inverted) {
  (signal.pin ? generator.design.pins : generator.design.nodes).push_back(signal.name + (inverted ? "-" : ""));
  generator.signals.push_back(signal);
}

void draw_signals(Generator &generator) {
  Random &random = generator.random;
  const std::size_t inputs = chance(random, 10) ? 20 + below(random, 8) : 1 + below(random, 6);
  for (std::size_t i = 0; i < inputs; i++) declare(generator, {draw_name(generator), true, true}, false);
  const std::size_t driven = 1 + below(random, 7);
  for (std::size_t i = 0; i < driven; i++) {
    Signal signal{draw_name(generator), chance(random, 65)};
    signal.kind =
        &kSignalKinds[chance(random, 40) ? below(random, kFirstRegister) : below(random, kSignalKinds.size())];
    signal.enabled = (signal.pin || generator.series == 8) && chance(random, 25);
    declare(generator, signal, signal.pin && signal.kind->registered && chance(random, 30));
    if (signal.kind->registered)
      add_register_outputs(generator.design, signal.name, *signal.kind, draw_controls(generator, *signal.kind));
    else
      for (std::size_t d = 0; d < 2 && (d == 0 || !signal.kind->data[d].empty()); d++)
        generator.design.outputs.push_back({signal.name, std::string(signal.kind->data[d])});
    if (signal.enabled) generator.design.outputs.push_back({signal.name, "OE"});
  }
  if (chance(random, 10)) generator.design.pins.push_back("never_used");
}

// A name that only macros use, often one that the program generates for something else.
std::string draw_macro_name(Generator &generator, const std::string &usual) {
  Random &random = generator.random;
  if (chance(random, 30)) return usual;
  if (chance(random, 30)) return std::string(pick(random, kMadeNames));
  const std::string base = std::string(pick(random, kMadeFronts)) + pick(random, generator.signals).name;
  return chance(random, 30) ? base : base + std::string(pick(random, kEndings));
}

std::string draw_plain_net(Generator &generator) {
  for (;;)
    if (std::string name = draw_macro_name(generator, "loose"); !is_taken(generator, name)) return name;
}

// A macro that reads two signals and drives one more, or a net that nothing declares. Another macro may read
// it.
void draw_macros(Generator &generator) {
  Random &random = generator.random;
  const std::string first = pick(random, generator.signals).name, second = pick(random, generator.signals).name;
  const bool declared = chance(random, 60);
  Signal driven{declared ? draw_name(generator) : draw_plain_net(generator), chance(random, 60)};
  driven.macro = true;
  if (declared) declare(generator, driven, false);
  const std::string unread = draw_plain_net(generator), name = draw_macro_name(generator, "inst");
  std::vector<std::string> &statements = generator.design.statements;
  statements.push_back("EXTERNAL block 3 a'i b'i z'o");
  statements.push_back("INSTANCE " + name + " block 3 " + first + ' ' + second + ' ' + driven.name);
  if (unread == driven.name || chance(random, 50)) return;
  const std::string read = chance(random, 50) ? driven.name : draw_plain_net(generator);
  if (read != unread)
    statements.push_back("INSTANCE " + draw_macro_name(generator, name) + " block 3 " + read + ' ' + first + ' ' +
                         unread);
}

// The references that read the signals, in legal combinations: not both the plain name and .PIN, at most one
// data input.
void draw_columns(Generator &generator) {
  Random &random = generator.random;
  std::vector<TableEntry> &columns = generator.design.columns;
  for (const Signal &signal : generator.signals) {
    const auto add = [&](std::string_view extension, std::size_t percent) {
      if (chance(random, percent)) columns.push_back({signal.name, std::string(extension)});
    };
    if (signal.kind == nullptr) {
      add("", signal.macro ? 60 : 95);
      if (signal.input) add("D", 4);
      continue;
    }
    add(signal.pin && chance(random, 40) ? "PIN" : "", 45);
    add(signal.kind->data_reads[signal.kind->data_reads[1].empty() ? 0 : below(random, 2)], 15);
    if (signal.kind->registered) {
      add("Q", 45);
      add("FB", 35);
    }
  }
  if (columns.empty()) columns.push_back({generator.signals[0].name, ""});
  for (std::size_t i = columns.size(); i > 1; i--) std::swap(columns[i - 1], columns[below(random, i)]);
}

TableTerm draw_term(Generator &generator, std::size_t literals, std::size_t output) {
  Random &random = generator.random;
  std::vector<std::size_t> columns(generator.design.columns.size());
  for (std::size_t i = 0; i < columns.size(); i++) columns[i] = i;
  TableTerm term;
  for (std::size_t i = 0; i < literals && !columns.empty(); i++) {
    const std::size_t at = below(random, columns.size());
    term.literals.emplace_back(columns[at], chance(random, 50));
    columns.erase(columns.begin() + static_cast<std::ptrdiff_t>(at));
  }
  term.outputs.push_back(output);
  if (chance(random, 15)) term.outputs.push_back(below(random, generator.design.outputs.size()));
  return term;
}

// a and not b, or not a and b; sometimes the opposite.
void draw_xor(Generator &generator, std::size_t output) {
  Random &random = generator.random;
  const std::size_t count = generator.design.columns.size(), a = below(random, count), b = below(random, count);
  const bool same = chance(random, 50);
  if (a == b) return;
  generator.design.terms.push_back({{{a, true}, {b, same}}, {output}});
  generator.design.terms.push_back({{{a, false}, {b, !same}}, {output}});
}

void draw_terms(Generator &generator) {
  Random &random = generator.random;
  for (std::size_t output = 0; output < generator.design.outputs.size(); output++) {
    const auto add = [&](std::size_t terms, std::size_t least, std::size_t most) {
      for (std::size_t t = 0; t < terms; t++)
        generator.design.terms.push_back(draw_term(generator, least + below(random, most - least + 1), output));
    };
    const std::size_t style = below(random, 100);
    if (style < 4) continue;
    if (style < 8)
      add(1, 0, 0);
    else if (style < 30)
      add(1, 1, 1);
    else if (style < 50)
      add(1, 2, 5);
    else if (style < 60)
      draw_xor(generator, output);
    else if (style < 88)
      add(2 + below(random, 3), 1, 4);
    else if (style < 94)
      add(12 + below(random, 20), 1, 5);
    else
      add(1 + below(random, 3), 10, 30);
  }
  if (generator.design.terms.empty()) generator.design.terms.push_back({{{0, true}}, {0}});
  for (std::size_t i = generator.design.terms.size(); i > 1; i--)
    std::swap(generator.design.terms[i - 1], generator.design.terms[below(random, i)]);
}

void draw_attributes(Generator &generator) {
  Random &random = generator.random;
  for (TableEntry &output : generator.design.outputs) {
    output.inverted = chance(random, 20);
    const auto add = [&](const std::string &attribute, std::size_t percent) {
      if (!chance(random, percent) || output.extension.ends_with("X1") || output.extension.ends_with("X2")) return;
      const std::string dot = output.extension.empty() ? "" : ".";
      generator.design.statements.push_back("PROPERTY corvane " + attribute + ' ' + output.name + dot +
                                            output.extension);
    };
    add("LXOR2", 20);
    add("PROTECT", 10);
    add("ZDOT", 8);
  }
  if (!chance(random, 30)) return;
  for (std::size_t i = 0; i < generator.design.outputs.size(); i++)
    generator.design.phase += chance(random, 60) ? '1' : '0';
}

} // namespace

std::string random_design(std::uint64_t seed, int series) {
  Generator generator{{seed * 0x2545F4914F6CDD1DU + static_cast<std::uint64_t>(series)}, series};
  draw_signals(generator);
  if (chance(generator.random, 15)) draw_macros(generator);
  draw_columns(generator);
  draw_terms(generator);
  draw_attributes(generator);
  return format_design(generator.design);
}

} // namespace cubekit
