// The proof must be able to say no: every change below gives some equation or storage element another
// function, so each must be found. (Terms are changed only in blocks of one row, where no other term can hide
// the change.)
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "kit/random/random_design.h"
#include "kit/support/translate.h"

namespace cubekit {
namespace {

struct Mutator {
  Netlist &netlist;
  const Translation &translation;
  std::size_t tried = 0;
};

void expect_objection(Mutator &mutator, const Symbol &symbol, const char *what) {
  ProofReport report;
  ProofOptions options;
  options.shown_differences = 0;
  mutator.tried++;
  EXPECT_FALSE(prove_netlist(*mutator.translation.design, mutator.translation.cubes, mutator.netlist, options, report))
      << what << " at " << symbol.primitive_text << ' ' << symbol.instance;
}

std::uint32_t pin_of(const Netlist &netlist, const Symbol &symbol, std::string_view name) {
  return find_pin(netlist, find_symbol(netlist, symbol.instance), name);
}

void swap_nets(Mutator &mutator, const Symbol &symbol, std::uint32_t a, std::uint32_t b) {
  std::vector<Pin> &pins = mutator.netlist.pins;
  if (a == kNone || b == kNone || pins[a].net == pins[b].net) return;
  std::swap(pins[a].net, pins[b].net);
  expect_objection(mutator, symbol, "two pins swapped");
  std::swap(pins[a].net, pins[b].net);
}

void change_primitive(Mutator &mutator, Symbol &symbol, const char *other, const char *pin, const char *other_pin) {
  const std::uint32_t at = pin_of(mutator.netlist, symbol, pin);
  if (at == kNone) return;
  const PrimitiveIndex primitive = std::exchange(symbol.primitive, find_primitive(other));
  const std::string_view name = std::exchange(mutator.netlist.pins[at].name, other_pin);
  expect_objection(mutator, symbol, "another primitive");
  symbol.primitive = primitive;
  mutator.netlist.pins[at].name = name;
}

void mutate_row(Mutator &mutator, const Symbol &symbol) {
  if (symbol.row_count != 1) return;
  const std::string_view row = row_at(symbol, 0);
  char &first = mutator.netlist.text[static_cast<std::size_t>(row.data() - mutator.netlist.text.data())];
  const char before = first;
  first = before == '0' ? '1' : '0';
  expect_objection(mutator, symbol, "a literal flipped");
  first = before;
  const std::size_t other = row.find(before == '0' ? '1' : '0');
  if (other != std::string_view::npos)
    swap_nets(mutator, symbol, symbol.first_pin, symbol.first_pin + static_cast<std::uint32_t>(other));
}

// Something reads the symbol's output, or it is on a device pin.
bool is_observed(const Netlist &netlist, const Symbol &symbol) {
  for (const Pin pin : pins_of(netlist, symbol)) {
    const Net &net = netlist.nets[pin.net];
    if (pin.direction == Direction::OUT && (net.external || net.destination_count > 0)) return true;
  }
  return false;
}

void mutate(Mutator &mutator, Symbol &symbol) {
  if (!is_observed(mutator.netlist, symbol)) return;
  const std::string_view name = primitive_of(symbol).name;
  if (name == "PLA") mutate_row(mutator, symbol);
  if (name == "INV") change_primitive(mutator, symbol, "BUF", "ZN0", "Z0"); // a dropped inverter
  if (name == "BUF") change_primitive(mutator, symbol, "INV", "Z0", "ZN0");
  if (name == "AND") change_primitive(mutator, symbol, "OR", "Z0", "Z0");
  if (name == "OR") change_primitive(mutator, symbol, "AND", "Z0", "Z0");
  if (name == "NAND") change_primitive(mutator, symbol, "AND", "ZN0", "Z0");
  if (name == "NOR") change_primitive(mutator, symbol, "OR", "ZN0", "Z0");
  if (name == "LXOR2") change_primitive(mutator, symbol, "LXOR2", "Z0", "ZN0");
  if (name == "FTI21") change_primitive(mutator, symbol, "FD21", "T0", "D0");
  if (name == "FDE1") change_primitive(mutator, symbol, "FDC1", "CD", "none");
  if (name == "FD21") change_primitive(mutator, symbol, "FDC1", "CD", "SD");
  if (name == "FDC1E") change_primitive(mutator, symbol, "FD21E", "SD", "CD");
  if (name == "XDL2") change_primitive(mutator, symbol, "XDL3", "CD", "SD");
  for (const char *pin : {"D0", "T0"})
    for (const char *other : {"CLK", "G", "CD", "SD", "EN"})
      swap_nets(mutator, symbol, pin_of(mutator.netlist, symbol, pin), pin_of(mutator.netlist, symbol, other));
  swap_nets(mutator, symbol, pin_of(mutator.netlist, symbol, "CD"), pin_of(mutator.netlist, symbol, "SD"));
  if (name == "XBIDI1" || name == "XTRI1" || name == "IT11")
    swap_nets(mutator, symbol, pin_of(mutator.netlist, symbol, "A0"), pin_of(mutator.netlist, symbol, "OE"));
}

// Changes every `stride`-th symbol of the translation in each way. Returns the number of changes.
std::size_t mutate_design(const std::string &text, const std::string &options, std::size_t stride) {
  Translation translation;
  translate(text, options, translation);
  EXPECT_EQ(prove_translation(translation), "");
  Netlist netlist;
  std::ostringstream errors;
  if (translation.design == nullptr || !load_nxf("d.nxf", netlist, errors)) return 0;
  Mutator mutator{netlist, translation};
  for (std::size_t s = 0; s < netlist.symbols.size(); s += stride) mutate(mutator, netlist.symbols[s]);
  EXPECT_EQ(prove_translation(translation), "") << "a change was not taken back";
  return mutator.tried;
}

TEST(NetlistMutations, OfEveryExampleAreFound) {
  const cubenet::WorkingDir directory;
  std::size_t tried = 0;
  for (const auto &entry : std::filesystem::directory_iterator(PROJECT_DIR "/examples")) {
    const std::string name = entry.path().filename();
    const std::string text = cubenet::read_file(entry.path() / (name + ".tt2"));
    tried += mutate_design(text, "-p Tarvex8840K-100XQ64", 1);
    tried += mutate_design(text, "", 1);
  }
  EXPECT_GT(tried, 300U);
}

TEST(NetlistMutations, OfRegistersAreFoundOnEverySeries) {
  const cubenet::WorkingDir directory;
  std::size_t tried = 0;
  for (const auto &[series, options] : {std::pair{1, ""}, std::pair{5, "-p Tarvex5128K-100XQ64"}}) {
    const std::vector<std::string> designs = register_designs(series);
    for (std::size_t d = 0; d < designs.size(); d += 12) tried += mutate_design(designs[d], options, 17);
  }
  EXPECT_GT(tried, 500U);
}

// An OR of ANDs, no input in two of them: every gate of its trees matters, and there are too many inputs to
// try all vectors.
std::string make_wide_sum(std::size_t terms, std::size_t literals) {
  const std::size_t inputs = terms * literals;
  std::string pins, rows;
  for (std::size_t i = 0; i < inputs; i++) pins += " a" + std::to_string(i);
  for (std::size_t t = 0; t < terms; t++) {
    std::string row(inputs, '-');
    for (std::size_t l = 0; l < literals; l++) row[t * literals + l] = l % 3 == 1 ? '0' : '1';
    rows += row + " 1\n";
  }
  return "#$ PINS " + std::to_string(inputs + 1) + pins + " y\n.i " + std::to_string(inputs) + "\n.o 1\n.ilb" + pins +
         "\n.ob y-\n" + rows + ".end\n";
}

TEST(NetlistMutations, OfGateTreesAreFound) {
  const cubenet::WorkingDir directory;
  for (const std::string options : {"-and 2 -or 2", "-and 3 -or 4", "-and 12"})
    EXPECT_GT(mutate_design(make_wide_sum(15, 7), options, 1), 45U) << options;
}

} // namespace
} // namespace cubekit
