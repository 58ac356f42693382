// Bit-parallel simulation of cones, and SAT where there are too many vectors to try. A block of vectors is
// one machine word per node times the block's width; SAT sees one clause set per question, linear in the
// cone.
#include "kit/prove/equal.h"

#include <algorithm>
#include <bit>
#include <cadical.hpp>

namespace cubekit {

namespace {

using Word = std::uint64_t;

void take_cone(Decider &decider, std::span<const Literal> roots) {
  find_cone(decider.formulas, roots, decider.cone);
  decider.variables.clear();
  for (const std::uint32_t node : decider.cone.nodes)
    if (decider.formulas.nodes[node].kind == NodeKind::VARIABLE) decider.variables.push_back(node);
}

void set_width(Decider &decider, std::size_t width) {
  decider.width = width;
  decider.values.assign(decider.cone.nodes.size() * width, 0);
}

Word *values_of(Decider &decider, std::uint32_t node) {
  return decider.values.data() + std::size_t{decider.cone.places[node] - 1} * decider.width;
}

// Computes all nodes of the cone from the variables' words.
void simulate(Decider &decider) {
  const std::size_t width = decider.width;
  for (const std::uint32_t node_index : decider.cone.nodes) {
    const Node &node = decider.formulas.nodes[node_index];
    if (node.kind == NodeKind::VARIABLE || node.kind == NodeKind::CONSTANT) continue;
    Word *result = values_of(decider, node_index);
    std::fill_n(result, width, node.kind == NodeKind::AND ? ~Word{0} : Word{0});
    for (const Literal input : inputs_of(decider.formulas, node)) {
      const Word *value = values_of(decider, node_of(input));
      const Word flip = is_inverted(input) ? ~Word{0} : Word{0};
      if (node.kind == NodeKind::AND)
        for (std::size_t w = 0; w < width; w++) result[w] &= value[w] ^ flip;
      else
        for (std::size_t w = 0; w < width; w++) result[w] ^= value[w] ^ flip;
    }
  }
}

Word word_of(Decider &decider, Literal literal, std::size_t word) {
  const Word value = values_of(decider, node_of(literal))[word];
  return is_inverted(literal) ? ~value : value;
}

// Looks for a vector of the simulated block under which the two differ.
bool find_in_block(Decider &decider, Literal first, Literal second, Difference &difference) {
  for (std::size_t w = 0; w < decider.width; w++) {
    const Word apart = word_of(decider, first, w) ^ word_of(decider, second, w);
    if (apart == 0) continue;
    const int bit = std::countr_zero(apart);
    difference.vector.clear();
    for (const std::uint32_t variable : decider.variables)
      difference.vector.emplace_back(variable, (values_of(decider, variable)[w] >> bit & 1U) != 0);
    difference.first = (word_of(decider, first, w) >> bit & 1U) != 0;
    difference.second = !difference.first;
    return true;
  }
  return false;
}

// Vector v gives variable i bit i of v; the six lowest bits run within a word.
constexpr Word kCounting[6] = {0xAAAAAAAAAAAAAAAAU, 0xCCCCCCCCCCCCCCCCU, 0xF0F0F0F0F0F0F0F0U,
                               0xFF00FF00FF00FF00U, 0xFFFF0000FFFF0000U, 0xFFFFFFFF00000000U};

bool try_all_vectors(Decider &decider, Literal first, Literal second, Difference &difference) {
  const std::size_t count = decider.variables.size();
  const std::size_t words = count > 6 ? std::size_t{1} << (count - 6) : 1;
  constexpr std::size_t kBlockWords = std::size_t{1} << 21; // 16 MiB of values at a time
  const std::size_t width =
      std::clamp(std::bit_floor(kBlockWords / decider.cone.nodes.size() + 1), std::size_t{1}, words);
  set_width(decider, width);
  for (std::size_t start = 0; start < words; start += width) {
    for (std::size_t i = 0; i < count; i++) {
      Word *value = values_of(decider, decider.variables[i]);
      for (std::size_t w = 0; w < width; w++)
        value[w] = i < 6 ? kCounting[i] : ((start + w) >> (i - 6) & 1U) != 0 ? ~Word{0} : Word{0};
    }
    simulate(decider);
    if (find_in_block(decider, first, second, difference)) return true;
  }
  return false;
}

// Some hundred vectors drawn from a fixed sequence find most differences before SAT is asked.
bool try_some_vectors(Decider &decider, Literal first, Literal second, Difference &difference) {
  set_width(decider, 8);
  Word state = 0x243F6A8885A308D3U;
  for (const std::uint32_t variable : decider.variables) {
    for (std::size_t w = 0; w < decider.width; w++) {
      state = state * 6364136223846793005U + 1442695040888963407U;
      values_of(decider, variable)[w] = state ^ state >> 29;
    }
  }
  simulate(decider);
  return find_in_block(decider, first, second, difference);
}

void add_clause(CaDiCaL::Solver &solver, std::initializer_list<int> clause) {
  for (const int literal : clause) solver.add(literal);
  solver.add(0);
}

int solver_literal(const Decider &decider, Literal literal) {
  const int variable = static_cast<int>(decider.cone.places[node_of(literal)]);
  return is_inverted(literal) ? -variable : variable;
}

void add_node(CaDiCaL::Solver &solver, const Decider &decider, std::uint32_t node_index) {
  const Node &node = decider.formulas.nodes[node_index];
  const std::span<const Literal> inputs = inputs_of(decider.formulas, node);
  const int self = solver_literal(decider, node_index * 2);
  if (node.kind == NodeKind::CONSTANT) add_clause(solver, {-self});
  if (node.kind == NodeKind::XOR) {
    const int a = solver_literal(decider, inputs[0]), b = solver_literal(decider, inputs[1]);
    add_clause(solver, {-self, a, b});
    add_clause(solver, {-self, -a, -b});
    add_clause(solver, {self, -a, b});
    add_clause(solver, {self, a, -b});
  }
  if (node.kind != NodeKind::AND) return;
  for (const Literal input : inputs) add_clause(solver, {-self, solver_literal(decider, input)});
  solver.add(self);
  for (const Literal input : inputs) solver.add(-solver_literal(decider, input));
  solver.add(0);
}

bool ask_solver(Decider &decider, Literal first, Literal second, Difference &difference) {
  CaDiCaL::Solver solver;
  for (const std::uint32_t node : decider.cone.nodes) add_node(solver, decider, node);
  const int a = solver_literal(decider, first), b = solver_literal(decider, second);
  add_clause(solver, {a, b});
  add_clause(solver, {-a, -b});
  constexpr int kSatisfiable = 10, kUnknown = 0;
  if (decider.conflicts >= 0) solver.limit("conflicts", decider.conflicts);
  const int verdict = solver.solve();
  (verdict == kUnknown ? decider.given_up : decider.by_sat)++;
  if (verdict != kSatisfiable) return false;
  difference.vector.clear();
  for (const std::uint32_t variable : decider.variables)
    difference.vector.emplace_back(variable, solver.val(solver_literal(decider, variable * 2)) > 0);
  const Literal roots[] = {first, second};
  const std::vector<bool> values = evaluate(decider, roots, difference.vector);
  difference.first = values[0];
  difference.second = values[1];
  return true;
}

} // namespace

std::vector<bool> evaluate(Decider &decider, std::span<const Literal> roots,
                           const std::vector<std::pair<std::uint32_t, bool>> &vector) {
  take_cone(decider, roots);
  set_width(decider, 1);
  for (const auto &[variable, value] : vector)
    if (variable < decider.cone.places.size() && decider.cone.places[variable] != 0)
      *values_of(decider, variable) = value ? 1 : 0;
  simulate(decider);
  std::vector<bool> results;
  for (const Literal root : roots) results.push_back((word_of(decider, root, 0) & 1U) != 0);
  return results;
}

bool find_difference(Decider &decider, Literal first, Literal second, Difference &difference) {
  if (first == second) {
    decider.by_structure++;
    return false;
  }
  const Literal roots[] = {first, second};
  take_cone(decider, roots);
  if (decider.variables.size() <= kExhaustiveVariables) {
    decider.by_exhaustion++;
    return try_all_vectors(decider, first, second, difference);
  }
  if (!try_some_vectors(decider, first, second, difference)) return ask_solver(decider, first, second, difference);
  decider.by_sat++;
  return true;
}

} // namespace cubekit
