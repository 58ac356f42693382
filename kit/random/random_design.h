// Designs for proofs: random ones from a seed, and a set with every possible register and latch. All are
// legal for a device of the given series (0, 1, 5, 8), and the same arguments give the same text everywhere.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace cubekit {

// `cubekit random`.
std::function<int()> setup_random(CLI::App &command);

// The text of a truth table file: a handful of signals of any kind, with shared and wide terms, constants,
// every form of feedback, inversions, attributes, macros, and names that collide with generated ones.
std::string random_design(std::uint64_t seed, int series);

// Every data input with every legal combination of clock or latch enable, clock enable, synchronous and
// asynchronous set and reset, as pin, inverted pin, tristate pin and node, read in every form; some hundred
// registers to a design.
std::vector<std::string> register_designs(int series);

} // namespace cubekit
