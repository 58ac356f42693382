// Finds registers whose next value is their own, inverted or not: parts of series 5 have flip-flops for that.
#include <algorithm>

#include "kit/import/import.h"
#include "kit/table/cover.h"
#include "model/run_settings.h"

namespace cubekit {

using enum cubenet::ExtensionCode;

namespace {

using Products = std::vector<std::vector<TermLiteral>>;

// Series 5 has a toggle flip-flop with an asynchronous reset or preset, and without a clock enable. With
// synchronous controls it would take one more gate than a D flip-flop.
bool has_toggle_primitive(const Draft &draft, const DraftSignal &signal) {
  const auto has = [&](cubenet::ExtensionCode code) { return find_equation(draft, signal, code) != kNone; };
  return signal.is_used && has(EXT_D) && has(EXT_C) && (has(EXT_AR) || has(EXT_AP)) && !has(EXT_CE) && !has(EXT_SR) &&
         !has(EXT_SP);
}

// The terms' remainder while the signal has that value.
Products within(const Draft &draft, const Equation &equation, bool value) {
  Products products;
  for (const std::uint32_t term : equation.terms) {
    std::vector<TermLiteral> rest;
    bool is_possible = true;
    for (const TermLiteral literal : literals_of(draft.terms, term)) {
      if (signal_of(literal) != equation.signal)
        rest.push_back(literal);
      else
        is_possible = is_high(literal) == value;
    }
    if (is_possible) products.push_back(std::move(rest));
  }
  return products;
}

// At every point exactly one of the two is 1.
bool are_complements(const Products &a, const Products &b) {
  std::vector<std::uint32_t> signals;
  for (const Products *side : {&a, &b})
    for (const auto &product : *side)
      for (const TermLiteral literal : product) signals.push_back(signal_of(literal));
  std::ranges::sort(signals);
  signals.erase(std::unique(signals.begin(), signals.end()), signals.end());
  Cover both(signals.size(), 1);
  for (const Products *side : {&a, &b})
    for (const auto &product : *side) {
      CubeWord *cube = add_cube(both);
      for (const TermLiteral literal : product) {
        const auto input = std::ranges::lower_bound(signals, signal_of(literal)) - signals.begin();
        set_literal(cube, static_cast<std::size_t>(input),
                    is_high(literal) ? cubenet::LITERAL_TRUE : cubenet::LITERAL_COMPLEMENT);
      }
      set_output(both, cube, 0);
    }
  for (std::size_t i = 0; i < a.size(); i++)
    for (std::size_t j = a.size(); j < both.size(); j++) {
      CubeWord conflicts = 0;
      for (std::size_t w = 0; w < both.input_words; w++) conflicts |= conflicts_of(both[i][w] & both[j][w]);
      if (conflicts == 0) return false;
    }
  return is_tautology(both);
}

} // namespace

void find_toggles(Draft &draft) {
  constexpr std::size_t kMostTerms = 1000; // of an equation that is examined
  if (cubenet::part_series(draft.part) != 5) return;
  for (const DraftSignal &signal : draft.signals) {
    if (!has_toggle_primitive(draft, signal)) continue;
    Equation &equation = draft.equations[find_equation(draft, signal, EXT_D)];
    if (equation.terms.size() > kMostTerms) continue;
    const Products low = within(draft, equation, false);
    if (!are_complements(low, within(draft, equation, true))) continue;
    equation.extension = EXT_T; // at 0 it toggles where its next value is 1
    equation.terms.clear();
    for (const auto &product : low) add_product(draft, equation, product);
  }
}

} // namespace cubekit
