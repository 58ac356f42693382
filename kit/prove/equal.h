// Decides whether two functions are equal: by structure, by all input vectors where few variables matter,
// else by SAT.
#pragma once

#include <utility>
#include <vector>

#include "kit/prove/formula.h"

namespace cubekit {

// Up to this number of variables all input vectors are tried.
constexpr std::size_t kExhaustiveVariables = 16;

struct Difference {
  std::vector<std::pair<std::uint32_t, bool>> vector; // node and value of each variable that matters
  bool first = false, second = false;                 // the two functions under that vector
};

// Answers questions on one graph, which may grow in between.
struct Decider {
  const Formulas &formulas;
  int conflicts = -1; // SAT gives a question up after this many; -1: never
  Cone cone{};
  std::vector<std::uint32_t> variables{}; // of the cone, as nodes
  std::vector<std::uint64_t> values{};    // per place of the cone: `width` words of simulated values
  std::size_t width = 1;
  std::size_t by_structure = 0, by_exhaustion = 0, by_sat = 0; // questions settled so far
  std::size_t given_up = 0;                                    // questions without a difference or a proof
};

// True when the functions differ under some input vector, which is left in `difference`.
[[nodiscard]] bool find_difference(Decider &decider, Literal first, Literal second, Difference &difference);

// The values of the roots under one vector; variables that are not in it are 0.
std::vector<bool> evaluate(Decider &decider, std::span<const Literal> roots,
                           const std::vector<std::pair<std::uint32_t, bool>> &vector);

} // namespace cubekit
