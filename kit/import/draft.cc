// The parts of a draft.
#include "kit/import/draft.h"

#include <algorithm>
#include <sstream>

#include "kit/util/finding.h"

namespace cubekit {

namespace {

std::uint64_t hash_literals(std::span<const TermLiteral> literals) {
  return cubenet::hash_text({reinterpret_cast<const char *>(literals.data()), literals.size_bytes()});
}

} // namespace

std::uint32_t add_term(TermPool &pool, std::vector<TermLiteral> &literals) {
  if (!std::ranges::is_sorted(literals)) std::ranges::sort(literals);
  literals.erase(std::unique(literals.begin(), literals.end()), literals.end());
  for (std::size_t i = 1; i < literals.size(); i++)
    if (signal_of(literals[i]) == signal_of(literals[i - 1])) return kNone;
  const std::uint64_t hash = hash_literals(literals);
  for (auto [at, end] = pool.by_hash.equal_range(hash); at != end; ++at)
    if (std::ranges::equal(literals_of(pool, at->second), literals)) return at->second;
  const auto term = static_cast<std::uint32_t>(term_count(pool));
  pool.by_hash.emplace(hash, term);
  pool.literals.insert(pool.literals.end(), literals.begin(), literals.end());
  pool.starts.push_back(pool.literals.size());
  return term;
}

std::uint32_t add_signal(Draft &draft, std::string source, PortKind port, Place place) {
  draft.signals.push_back({std::move(source), port, place});
  return static_cast<std::uint32_t>(draft.signals.size() - 1);
}

Equation &add_equation(Draft &draft, std::uint32_t signal, cubenet::ExtensionCode extension, Place place) {
  draft.signals[signal].equations.push_back(static_cast<std::uint32_t>(draft.equations.size()));
  draft.equations.push_back({signal, extension, false, place});
  return draft.equations.back();
}

void add_product(Draft &draft, Equation &equation, std::vector<TermLiteral> literals) {
  const std::uint32_t term = add_term(draft.terms, literals);
  if (term != kNone) equation.terms.push_back(term);
}

std::uint32_t find_equation(const Draft &draft, const DraftSignal &signal, cubenet::ExtensionCode extension) {
  for (const std::uint32_t equation : signal.equations)
    if (draft.equations[equation].extension == extension) return equation;
  return kNone;
}

bool is_storage(const Draft &draft, const DraftSignal &signal) {
  return find_equation(draft, signal, cubenet::EXT_D) != kNone || find_equation(draft, signal, cubenet::EXT_T) != kNone;
}

bool is_logic(const Draft &draft, const DraftSignal &signal) {
  return find_equation(draft, signal, cubenet::EXT_NONE) != kNone &&
         find_equation(draft, signal, cubenet::EXT_OE) == kNone;
}

std::string remark_text(const Draft &draft, const Remark &remark) {
  std::ostringstream text;
  print_finding(text, draft.files[remark.place.file], {remark.place.line, remark.text});
  return text.str();
}

} // namespace cubekit
