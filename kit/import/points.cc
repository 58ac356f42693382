// Finds the points of a PLA that its terms don't list, as complements of those they do.
#include "kit/import/points.h"

#include <algorithm>
#include <map>
#include <numeric>
#include <optional>

#include "kit/table/cover.h"

namespace cubekit {

namespace {

using List = std::vector<std::uint32_t>;

// The budgets of cube words for a complement: a required one, and one that only adds freedom.
constexpr std::size_t kNeededBudget = 1'000'000'000, kFreeBudget = 50'000'000;

// The term's literals in a new cube of the cover.
CubeWord *add_term_cube(const TermPool &pool, std::uint32_t term, Cover &cover) {
  CubeWord *cube = add_cube(cover);
  for (const TermLiteral literal : literals_of(pool, term))
    set_literal(cube, signal_of(literal), is_high(literal) ? cubenet::LITERAL_TRUE : cubenet::LITERAL_COMPLEMENT);
  return cube;
}

// For each of the lists the terms of its complement. False when that exceeds the budget.
bool find_complements(Draft &draft, std::size_t inputs, const std::vector<List> &lists, std::size_t budget,
                      std::vector<List> &complements) {
  std::map<List, std::vector<std::size_t>> alike; // many outputs list the same points
  for (std::size_t o = 0; o < lists.size(); o++) alike[lists[o]].push_back(o);
  complements.assign(lists.size(), {});
  for (const auto &[list, outputs] : alike) {
    Cover cover(inputs, 1);
    for (const std::uint32_t term : list) set_output(cover, add_term_cube(draft.terms, term, cover), 0);
    const Cover zeros = complement(cover, nullptr, &budget);
    if (budget == 0) return false;
    for (std::size_t c = 0; c < zeros.size(); c++) {
      std::vector<TermLiteral> literals;
      for (std::uint32_t i = 0; i < inputs; i++)
        if (const cubenet::Literal literal = literal_at(zeros[c], i); literal != cubenet::LITERAL_ABSENT)
          literals.push_back(2 * i + (literal == cubenet::LITERAL_TRUE ? 1 : 0));
      const std::uint32_t term = add_term(draft.terms, literals);
      for (const std::size_t o : outputs) complements[o].push_back(term);
    }
  }
  return true;
}

List joined(const List &a, const List &b) {
  List list;
  list.reserve(a.size() + b.size());
  list.insert(list.end(), a.begin(), a.end());
  list.insert(list.end(), b.begin(), b.end());
  return list;
}

struct Pair {
  std::uint32_t first, second;
};

// Looks for a point that is on two lists of an output.
class Meeting {
public:
  Meeting(const Draft &draft, std::size_t inputs, const std::vector<PointLists> &outputs, List PointLists::*first,
          List PointLists::*second)
      : first_(inputs, outputs.size()), second_(inputs, outputs.size()) {
    for (std::uint32_t t = 0; t < term_count(draft.terms); t++)
      for (Cover *cover : {&first_, &second_}) add_term_cube(draft.terms, t, *cover);
    for (std::size_t o = 0; o < outputs.size(); o++) {
      for (const std::uint32_t term : outputs[o].*first) set_output(first_, first_[term], o);
      for (const std::uint32_t term : outputs[o].*second) set_output(second_, second_[term], o);
    }
  }

  std::optional<Pair> find() const {
    List terms(first_.size());
    std::iota(terms.begin(), terms.end(), 0U);
    return find(terms, 0);
  }

private:
  bool meet(std::uint32_t a, std::uint32_t b) const {
    const Cover &x = first_, &y = second_;
    CubeWord conflicts = 0, shared = 0;
    for (std::size_t w = 0; w < x.input_words; w++) conflicts |= conflicts_of(x[a][w] & x[b][w]);
    for (std::size_t w = x.input_words; w < x.words; w++) shared |= (x[a][w] & y[b][w]) | (x[b][w] & y[a][w]);
    return conflicts == 0 && shared != 0;
  }

  std::optional<Pair> find_by_pairs(const List &terms) const {
    for (const std::uint32_t a : terms)
      for (const std::uint32_t b : terms)
        if (a <= b && meet(a, b)) return Pair{a, b};
    return std::nullopt;
  }

  // Terms with opposite literals of an input never meet: this splits most lists into small ones.
  std::optional<Pair> find(const List &terms, std::size_t input) const {
    constexpr std::size_t kFew = 32;
    for (; terms.size() > kFew && input < first_.inputs; input++) {
      List low, high;
      for (const std::uint32_t term : terms) {
        const cubenet::Literal literal = literal_at(first_[term], input);
        if (literal != cubenet::LITERAL_TRUE) low.push_back(term);
        if (literal != cubenet::LITERAL_COMPLEMENT) high.push_back(term);
      }
      const double all = static_cast<double>(terms.size()), l = static_cast<double>(low.size()),
                   h = static_cast<double>(high.size());
      if (l * l + h * h > 0.8 * all * all) continue;
      const std::optional<Pair> found = find(low, input + 1);
      return found ? found : find(high, input + 1);
    }
    return find_by_pairs(terms);
  }

  Cover first_, second_;
};

bool tell_contradiction(const std::vector<std::size_t> &lines, const Pair &pair, Remark &fault) {
  const auto [first, second] = std::minmax(lines[pair.first], lines[pair.second]);
  fault = {{0, second},
           first == second ? "this term has an output on that it has off too"
                           : "an output is on here and off in line " + std::to_string(first) +
                                 ", or the other way round, for the same inputs"};
  return false;
}

} // namespace

bool complete_points(Draft &draft, std::size_t inputs, const PlaType &type, std::vector<PointLists> &outputs,
                     const std::vector<std::size_t> &lines, Remark &fault) {
  if (!type.has_off) return true;
  std::vector<List> listed, complements;
  bool is_mixed = type.has_on;
  if (type.has_on) {
    if (const auto pair = Meeting(draft, inputs, outputs, &PointLists::on, &PointLists::off).find(); pair)
      return tell_contradiction(lines, *pair, fault);
  } else {
    is_mixed = type.has_free && Meeting(draft, inputs, outputs, &PointLists::free, &PointLists::off).find().has_value();
    for (const PointLists &output : outputs) listed.push_back(joined(output.off, output.free));
    if (!find_complements(draft, inputs, listed, kNeededBudget, complements)) {
      fault = {{}, "the points that are on, those that no term lists, would take too many terms"};
      return false;
    }
    for (std::size_t o = 0; o < outputs.size(); o++) outputs[o].on = std::move(complements[o]);
  }
  if (!is_mixed) return true;
  listed.clear();
  for (const PointLists &output : outputs) listed.push_back(joined(output.on, output.off));
  if (!find_complements(draft, inputs, listed, kFreeBudget, complements)) {
    complements.assign(outputs.size(), {});
    draft.remarks.push_back({{}, "the points that no term lists would take too many terms: they are off in the table"});
  }
  for (std::size_t o = 0; o < outputs.size(); o++) outputs[o].free = std::move(complements[o]);
  return true;
}

} // namespace cubekit
