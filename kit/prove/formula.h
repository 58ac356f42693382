// Boolean functions as a shared graph: every function is built once, from variables by n-ary AND and by XOR,
// with inversion on the edges. Equal structure gives the same node, so many equal functions are recognized at
// once; for the others see equal.h.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>
#include <vector>

namespace cubekit {

// A node, or its inverse: 2 * node + (1 when inverted). Node 0 is the constant.
using Literal = std::uint32_t;
constexpr Literal kFalse = 0, kTrue = 1, kUnset = ~0U;

constexpr std::uint32_t node_of(Literal literal) { return literal >> 1; }
constexpr bool is_inverted(Literal literal) { return (literal & 1U) != 0; }
constexpr Literal invert(Literal literal, bool inverted = true) { return literal ^ static_cast<Literal>(inverted); }

enum class NodeKind : std::uint8_t { CONSTANT, VARIABLE, AND, XOR };

struct Node {
  NodeKind kind = NodeKind::CONSTANT;
  std::uint32_t first = 0; // VARIABLE: its number; else into Formulas::inputs
  std::uint32_t count = 0;
};

struct Formulas {
  std::vector<Node> nodes{Node{}};
  std::vector<Literal> inputs; // of all nodes; those of one node are distinct, ascending, and older than it
  std::vector<std::string> variable_names;
  std::vector<std::uint32_t> table; // nodes by hash, open addressing; 0: free
  std::size_t table_used = 0;
};

Literal make_variable(Formulas &formulas, std::string name);
// AND and OR may rearrange the vector of inputs.
Literal make_and(Formulas &formulas, std::vector<Literal> &inputs);
Literal make_or(Formulas &formulas, std::vector<Literal> &inputs);
Literal make_xor(Formulas &formulas, Literal a, Literal b);

inline Literal make_and(Formulas &formulas, std::initializer_list<Literal> inputs) {
  std::vector<Literal> list(inputs);
  return make_and(formulas, list);
}
inline Literal make_or(Formulas &formulas, std::initializer_list<Literal> inputs) {
  std::vector<Literal> list(inputs);
  return make_or(formulas, list);
}
// condition ? yes : no
Literal make_choice(Formulas &formulas, Literal condition, Literal yes, Literal no);

inline std::span<const Literal> inputs_of(const Formulas &formulas, const Node &node) {
  return node.kind == NodeKind::VARIABLE ? std::span<const Literal>{}
                                         : std::span(formulas.inputs).subspan(node.first, node.count);
}

// The nodes that some roots depend on, inputs before the nodes made of them. One record serves many cones in
// turn.
struct Cone {
  std::vector<std::uint32_t> nodes;
  std::vector<std::uint32_t> places; // per node of the graph: its place in `nodes` plus 1; 0: not in the cone
};
void find_cone(const Formulas &formulas, std::span<const Literal> roots, Cone &cone);

} // namespace cubekit
