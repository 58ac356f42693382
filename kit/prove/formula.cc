// Builds functions in canonical form: constants and repeated inputs are folded away, inputs are sorted, and a
// hash table finds an existing node with the same inputs.
#include "kit/prove/formula.h"

#include <algorithm>

namespace cubekit {

namespace {

std::uint64_t hash_node(NodeKind kind, std::span<const Literal> inputs) {
  std::uint64_t hash = static_cast<std::uint64_t>(kind) + 0x9E3779B97F4A7C15U * inputs.size();
  for (const Literal input : inputs) {
    hash = (hash ^ input) * 0xD6E8FEB86659FD93U;
    hash ^= hash >> 32;
  }
  return hash;
}

void grow_table(Formulas &formulas) {
  std::vector<std::uint32_t> larger(formulas.table.empty() ? 1024 : formulas.table.size() * 2);
  const std::size_t mask = larger.size() - 1;
  for (const std::uint32_t node : formulas.table) {
    if (node == 0) continue;
    const Node &known = formulas.nodes[node];
    std::size_t at = hash_node(known.kind, inputs_of(formulas, known)) & mask;
    while (larger[at] != 0) at = (at + 1) & mask;
    larger[at] = node;
  }
  formulas.table = std::move(larger);
}

// The node of that kind with those inputs, made if there is none.
Literal find_or_make(Formulas &formulas, NodeKind kind, std::span<const Literal> inputs) {
  if (formulas.table_used * 2 >= formulas.table.size()) grow_table(formulas);
  const std::size_t mask = formulas.table.size() - 1;
  std::size_t at = hash_node(kind, inputs) & mask;
  for (; formulas.table[at] != 0; at = (at + 1) & mask) {
    const Node &known = formulas.nodes[formulas.table[at]];
    if (known.kind == kind && std::ranges::equal(inputs_of(formulas, known), inputs)) return formulas.table[at] * 2;
  }
  const auto node = static_cast<std::uint32_t>(formulas.nodes.size());
  formulas.table[at] = node;
  formulas.table_used++;
  formulas.nodes.push_back(
      {kind, static_cast<std::uint32_t>(formulas.inputs.size()), static_cast<std::uint32_t>(inputs.size())});
  formulas.inputs.insert(formulas.inputs.end(), inputs.begin(), inputs.end());
  return node * 2;
}

} // namespace

Literal make_variable(Formulas &formulas, std::string name) {
  const auto node = static_cast<std::uint32_t>(formulas.nodes.size());
  formulas.nodes.push_back({NodeKind::VARIABLE, static_cast<std::uint32_t>(formulas.variable_names.size()), 0});
  formulas.variable_names.push_back(std::move(name));
  return node * 2;
}

Literal make_and(Formulas &formulas, std::vector<Literal> &inputs) {
  std::ranges::sort(inputs);
  inputs.erase(std::unique(inputs.begin(), inputs.end()), inputs.end());
  if (!inputs.empty() && inputs.front() == kFalse) return kFalse;
  if (!inputs.empty() && inputs.front() == kTrue) inputs.erase(inputs.begin());
  const auto opposite =
      std::ranges::adjacent_find(inputs, [](Literal a, Literal b) { return node_of(a) == node_of(b); });
  if (opposite != inputs.end()) return kFalse;
  if (inputs.empty()) return kTrue;
  return inputs.size() == 1 ? inputs.front() : find_or_make(formulas, NodeKind::AND, inputs);
}

Literal make_or(Formulas &formulas, std::vector<Literal> &inputs) {
  for (Literal &input : inputs) input = invert(input);
  return invert(make_and(formulas, inputs));
}

Literal make_xor(Formulas &formulas, Literal a, Literal b) {
  const bool inverted = is_inverted(a) != is_inverted(b);
  a &= ~1U;
  b &= ~1U;
  if (a == b) return invert(kFalse, inverted);
  if (a == kFalse || b == kFalse) return invert(a | b, inverted);
  const Literal inputs[] = {std::min(a, b), std::max(a, b)};
  return invert(find_or_make(formulas, NodeKind::XOR, inputs), inverted);
}

Literal make_choice(Formulas &formulas, Literal condition, Literal yes, Literal no) {
  const Literal chosen = make_and(formulas, {condition, yes});
  return make_or(formulas, {chosen, make_and(formulas, {invert(condition), no})});
}

void find_cone(const Formulas &formulas, std::span<const Literal> roots, Cone &cone) {
  for (const std::uint32_t node : cone.nodes) cone.places[node] = 0;
  cone.nodes.clear();
  cone.places.resize(formulas.nodes.size());
  const auto visit = [&](Literal literal) {
    std::uint32_t &place = cone.places[node_of(literal)];
    if (place == 0) place = 1, cone.nodes.push_back(node_of(literal));
  };
  for (const Literal root : roots) visit(root);
  for (std::size_t next = 0; next < cone.nodes.size(); next++)
    for (const Literal input : inputs_of(formulas, formulas.nodes[cone.nodes[next]])) visit(input);
  std::ranges::sort(cone.nodes); // inputs are older than nodes made of them
  for (std::uint32_t place = 0; place < cone.nodes.size(); place++) cone.places[cone.nodes[place]] = place + 1;
}

} // namespace cubekit
