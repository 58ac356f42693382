// Takes the checked design and its terms, gives the per-output term lists and the recognised XOR functions.
// The gate planes and the writers make the gates.
#include "netlist/connections.h"

#include <array>
#include <optional>

#include "model/names.h"
#include "report/messages.h"

namespace cubenet {

namespace {

struct TwoLiterals {
  std::array<std::uint32_t, 2> inputs;
  std::array<bool, 2> is_true;
};

std::optional<TwoLiterals> two_literals(const CubeTable &cubes, const TermLists &lists, std::uint32_t term) {
  TwoLiterals found{};
  std::size_t count = 0;
  for_each_literal(cubes, lists, term, [&](std::uint32_t input, bool is_true) {
    if (count < 2) found.inputs[count] = input, found.is_true[count] = is_true;
    count++;
  });
  if (count != 2) return std::nullopt;
  return found;
}

// Two terms of the same two literals, each with opposite polarity in the other: a·b' + a'·b or a·b + a'·b'.
std::optional<XorGate> recognise_xor(const CubeTable &cubes, const Design &design, const Connections &connections,
                                     std::size_t output) {
  if (connections.forms[output] != OutputForm::LOGIC || term_count(connections, output) != 2) return std::nullopt;
  const std::uint32_t *terms = first_term(connections, output);
  const auto a = two_literals(cubes, connections.lists, terms[0]);
  const auto b = two_literals(cubes, connections.lists, terms[1]);
  if (!a || !b || a->inputs != b->inputs) return std::nullopt;
  if (a->is_true[0] == b->is_true[0] || a->is_true[1] == b->is_true[1]) return std::nullopt;
  const bool equal_polarity = a->is_true[0] == a->is_true[1];
  return XorGate{a->inputs[0], a->inputs[1], equal_polarity != test_bit(design.output_inversion, output)};
}

// A term's row is scanned once for each output that the term drives. If rows are short, or terms drive few
// outputs, that is linear in the table; otherwise the words with literals are listed.
constexpr std::size_t kShortRow = 16;  // input words
constexpr std::size_t kFewOutputs = 8; // per term, on average

void list_literal_words(const CubeTable &cubes, TermLists &lists) {
  if (input_words(cubes) <= kShortRow || lists.terms.size() <= kFewOutputs * cubes.NUM_CUBES) return;
  for (std::uint32_t i = 0; i < cubes.NUM_CUBES; i++) {
    lists.word_starts.push_back(lists.words.size());
    for_each_literal_word(cubes, cube(cubes, i), [&](std::uint32_t w, std::uint32_t) { lists.words.push_back(w); });
  }
  lists.word_starts.push_back(lists.words.size());
}

} // namespace

// One walk over the set output bits of the table: a counting sort whose counts the checker has already made.
void list_terms(const CubeTable &cubes, Design &design) {
  TermLists &lists = design.terms;
  if (!lists.starts.empty()) return;
  const std::vector<OutputStatus> &status = design.fan_out.status;
  const std::size_t outputs = design.OLB.size();
  lists.starts.assign(outputs + 1, 0);
  for (std::size_t j = 0; j < outputs; j++)
    lists.starts[j + 1] = lists.starts[j] + (status[j] == OUTPUT_LOGIC ? design.fan_out.cubes[j] : 0);
  lists.terms.resize(lists.starts[outputs]);
  std::vector<std::uint32_t> next(lists.starts.begin(), lists.starts.end() - 1);
  for (std::size_t i = 0; i < cubes.NUM_CUBES; i++) {
    for_each_output(cubes, cube(cubes, i), [&](std::size_t j) {
      if (status[j] == OUTPUT_LOGIC) lists.terms[next[j]++] = static_cast<std::uint32_t>(i);
    });
  }
  list_literal_words(cubes, lists);
}

Connections map_build_connections(const CubeTable &cubes, const Design &design) {
  Connections connections{design.terms, {}, {}, {}, {}};
  for (const OutputStatus status : design.fan_out.status)
    connections.forms.push_back(status == OUTPUT_LOGIC ? OutputForm::LOGIC : OutputForm::CONSTANT);
  connections.xor_index.assign(design.OLB.size(), kNoXor);
  for (std::uint32_t j = 0; j < design.OLB.size(); j++) {
    if (design.olb_attributes[j].LXOR2 == 0) continue;
    const auto gate = recognise_xor(cubes, design, connections, j);
    if (!gate) {
      connections.refused.push_back(j);
      continue;
    }
    connections.forms[j] = OutputForm::XOR;
    connections.xor_index[j] = static_cast<std::uint32_t>(connections.xor_gates.size());
    connections.xor_gates.push_back(*gate);
  }
  return connections;
}

void report_refused_xors(const Design &design, const Connections &connections) {
  for (const std::uint32_t output : connections.refused) {
    const std::string name = display_name(design.OLB[output], design.OB_EXT[output]);
    report_warning(31600, "Signal '%s' is not driven by simple two-input XOR gate; attribute 'LXOR2 %s' is ignored",
                   name.c_str(), name.c_str());
  }
}

} // namespace cubenet
