// A design on its way from a source to a truth table: signals, and the equations that drive them as sums of
// product terms over signals. Readers fill it; later steps fold equations, choose names and write the table.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include "kit/util/name_index.h"
#include "model/names.h"

namespace cubekit {

// 2 * signal + (1 when the term needs the signal high).
using TermLiteral = std::uint32_t;
constexpr std::uint32_t signal_of(TermLiteral literal) { return literal >> 1; }
constexpr bool is_high(TermLiteral literal) { return (literal & 1U) != 0; }

// Product terms, each stored once, in order of creation. The literals of a term ascend.
struct TermPool {
  std::vector<TermLiteral> literals;
  std::vector<std::size_t> starts{0};                            // of term t: starts[t] to starts[t + 1]
  std::unordered_multimap<std::uint64_t, std::uint32_t> by_hash; // of their literals
};
inline std::size_t term_count(const TermPool &pool) { return pool.starts.size() - 1; }
inline std::span<const TermLiteral> literals_of(const TermPool &pool, std::uint32_t term) {
  return std::span(pool.literals).subspan(pool.starts[term], pool.starts[term + 1] - pool.starts[term]);
}
// The term of these literals, which are sorted; kNone when they contradict each other.
std::uint32_t add_term(TermPool &pool, std::vector<TermLiteral> &literals);

struct Place {
  std::uint32_t file = 0; // into Draft::files
  std::size_t line = 0;   // 0: the file as a whole
};

struct Remark {
  Place place;
  std::string text;
};

enum class PortKind : std::uint8_t { NONE, IN, OUT, INOUT };

struct DraftSignal {
  std::string source; // its name in the source; empty: none
  PortKind port = PortKind::NONE;
  Place place;
  std::vector<std::uint32_t> equations{}; // into Draft::equations; none: an input
  bool is_used = false;                   // by an output, directly or not
  std::string name{};                     // in the table
};

struct Equation {
  std::uint32_t signal;
  cubenet::ExtensionCode extension;
  bool inverted = false; // the terms say when it is 0
  Place place;
  std::vector<std::uint32_t> terms{}, free{}; // where it is 1, and where it is free
};

struct Draft {
  std::vector<std::string> files; // the first is the source
  std::string module;             // its name in the source
  std::string part;               // of the device; empty: not said
  std::vector<DraftSignal> signals;
  std::vector<Equation> equations;
  TermPool terms;
  bool has_term_order = false; // the order of the terms is the source's
  std::vector<Remark> remarks; // notes to the user about the result
};

std::uint32_t add_signal(Draft &draft, std::string source, PortKind port, Place place);
Equation &add_equation(Draft &draft, std::uint32_t signal, cubenet::ExtensionCode extension, Place place);
// Adds a term to the equation unless it contradicts itself.
void add_product(Draft &draft, Equation &equation, std::vector<TermLiteral> literals);

// The signal's equation of that extension; kNone without one.
std::uint32_t find_equation(const Draft &draft, const DraftSignal &signal, cubenet::ExtensionCode extension);
// A flip-flop or latch.
bool is_storage(const Draft &draft, const DraftSignal &signal);
// The signal's value follows directly from its equation: no storage, no pad in between.
bool is_logic(const Draft &draft, const DraftSignal &signal);

// "file:line: text" and a line end.
std::string remark_text(const Draft &draft, const Remark &remark);

} // namespace cubekit
