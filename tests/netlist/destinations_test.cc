// Wide tables whose terms drive many outputs: the inputs of their blocks, and the nets' destinations kept in
// parts.
#include "netlist/destinations.h"

#include <algorithm>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "drc/check_design.h"
#include "netlist/map_design.h"
#include "netlist/translate.h"
#include "reader/reader.h"
#include "support/capture.h"

namespace cubenet {
namespace {

struct Term {
  std::string inputs, outputs;
};

// Columns c0, c1, ... and two spellings of the node n; outputs y0, y1, ..., and n. The pins are declared in
// arbitrary order.
struct WideDesign {
  std::vector<std::string> columns, outputs;
  std::vector<Term> terms;
  std::string text;
};

std::string joined(const std::vector<std::string> &words) {
  std::string text;
  for (const std::string &word : words) text += ' ' + word;
  return text;
}

WideDesign wide_design(std::size_t width, std::size_t outputs, std::size_t terms, std::size_t literals) {
  std::mt19937 random(5);
  WideDesign design;
  std::vector<std::string> pins;
  for (std::size_t k = 0; k < width; k++) pins.push_back("c" + std::to_string(k));
  design.columns = pins;
  for (const char *spelling : {"n.D", "n"}) design.columns.insert(design.columns.begin() + random() % width, spelling);
  for (std::size_t j = 0; j < outputs; j++) design.outputs.push_back("y" + std::to_string(j));
  pins.insert(pins.end(), design.outputs.begin(), design.outputs.end());
  std::shuffle(pins.begin(), pins.end(), random);
  design.outputs.push_back("n");
  for (std::size_t i = 0; i < terms; i++) {
    Term term{std::string(design.columns.size(), '-'), std::string(design.outputs.size(), '0')};
    for (std::size_t l = 0; l < literals; l++) term.inputs[random() % term.inputs.size()] = "01"[random() % 2];
    for (char &c : term.outputs) c = "01"[i == 0 || random() % 2 == 0];
    design.terms.push_back(term);
  }
  design.text = "#$ PINS " + std::to_string(pins.size()) + joined(pins) + "\n#$ NODES 1 n\n.i " +
                std::to_string(design.columns.size()) + "\n.o " + std::to_string(design.outputs.size()) + "\n.ilb" +
                joined(design.columns) + "\n.ob" + joined(design.outputs) + "\n";
  for (const Term &term : design.terms) design.text += term.inputs + ' ' + term.outputs + '\n';
  return design;
}

// The block of an output as symbol_lines has it.
std::string expected_block(const WideDesign &design, std::size_t output) {
  std::vector<std::size_t> used;
  std::string text = "PLA " + design.outputs[output], rows;
  const auto drives = [&](const Term &term) { return term.outputs[output] == '1'; };
  for (std::size_t k = 0; k < design.columns.size(); k++)
    if (std::any_of(design.terms.begin(), design.terms.end(),
                    [&](const Term &term) { return drives(term) && term.inputs[k] != '-'; }))
      used.push_back(k);
  for (std::size_t m = 0; m < used.size(); m++)
    text += " A" + std::to_string(m) + "=" + design.columns[used[m]].substr(0, design.columns[used[m]].find('.'));
  for (const Term &term : design.terms) {
    if (!drives(term)) continue;
    rows += ' ';
    for (const std::size_t k : used) rows += term.inputs[k];
  }
  return text + " Z0=" + design.outputs[output] + (output + 1 < design.outputs.size() ? "_PIN" : "") + rows;
}

TEST(BlockInputs, AreTheColumnsThatTheTermsUse) {
  // One word per row, words that are scanned, and words that are listed.
  for (const auto &[width, literals] : {std::pair<std::size_t, std::size_t>{13, 3}, {200, 9}, {500, 4}, {500, 300}}) {
    const WideDesign design = wide_design(width, 40, 8, literals);
    const std::vector<std::string> symbols = symbol_lines(translate(design.text).nxf);
    for (std::size_t j = 0; j < design.outputs.size(); j++)
      EXPECT_THAT(symbols, testing::Contains(expected_block(design, j))) << width;
  }
}

std::vector<std::pair<SymbolIndex, std::uint32_t>> pairs(std::span<const Destination> destinations) {
  std::vector<std::pair<SymbolIndex, std::uint32_t>> result;
  for (const Destination &each : destinations) result.emplace_back(each.symbol, each.pin);
  return result;
}

TEST(Destinations, AreTheSameHoweverFewAreHeld) {
  CapturedMessages messages;
  const std::string text = wide_design(300, 40, 8, 30).text;
  std::FILE *file = fmemopen(const_cast<char *>(text.data()), text.size(), "r");
  CubeTable cubes;
  const auto design = read_tt2(file, "wide.tt2", cubes);
  std::fclose(file);
  ASSERT_TRUE(design != nullptr && check_design(*design, cubes) == 0) << messages.text();
  const MappedDesign mapped = map_design(*design, cubes, XorPlace::WITH_OUTPUT);
  Destinations all(mapped.netlist, cubes, design->terms), few(mapped.netlist, cubes, design->terms),
      backwards(mapped.netlist, cubes, design->terms);
  few.limit = backwards.limit = 100;
  const std::size_t count = mapped.netlist.statements.size();
  for (std::size_t i = 0; i < count; i++) {
    const auto expected = pairs(find_destinations(all, i));
    EXPECT_TRUE(std::is_sorted(expected.begin(), expected.end()));
    EXPECT_EQ(pairs(find_destinations(few, i)), expected) << i;
    const std::size_t mirrored = count - 1 - i;
    EXPECT_EQ(pairs(find_destinations(backwards, mirrored)), pairs(find_destinations(all, mirrored))) << mirrored;
  }
  EXPECT_LT(few.readers.capacity(), all.readers.capacity() / 2);
}

} // namespace
} // namespace cubenet
