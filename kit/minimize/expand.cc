// Expands cubes up to the points that must be 0. A mark stands for a literal that may be dropped (bit 2k of
// the input words) or an output that may be added (its bit).
#include <algorithm>
#include <cstdint>
#include <numeric>

#include "kit/minimize/passes.h"

namespace cubekit {

namespace {

// A cube that grows. What keeps it apart from a cube that must be 0 is a bar, a set of marks: the literals,
// as long as one of them is left, and the outputs of that cube, as long as none of them is added. Without
// output marks the growing cube drives one of them, and the literals alone count.
class Growth {
public:
  Growth(const Cover &cover, std::size_t at, const Problem &problem, Outputs outputs);

  // The marks that a cube has and this one lacks.
  void find_missing(Cube cube, Marks &missing) const;
  // Whether some of them can never be raised, and whether all of them can be now.
  bool is_out_of_reach(const Marks &missing) const { return share_mark(missing, fixed_.data()); }
  bool is_possible(const Marks &missing) const;
  void raise(const Marks &marks);
  // Raises as many of the remaining marks as possible.
  void finish();
  const Marks &cube() const { return cube_; }

private:
  std::span<const CubeWord> literals(const CubeWord *marks) const { return {marks, input_words_}; }
  std::span<const CubeWord> outputs(const CubeWord *marks) const {
    return {marks + input_words_, cube_.size() - input_words_};
  }
  bool stands_for_good(const CubeWord *bar);
  bool find_literals(Cube off, Marks &bar) const;
  void add_bars(const Problem &problem);
  void settle();
  template <typename Visit> void for_each_bar(Visit visit) {
    for (std::size_t at = 0; at < bars_.size(); at += cube_.size()) visit(bars_.data() + at);
  }

  std::size_t input_words_;
  Marks cube_, fixed_; // marks that can never be raised
  Marks bars_;         // one after the other
};

Growth::Growth(const Cover &cover, std::size_t at, const Problem &problem, Outputs outputs)
    : input_words_(cover.input_words), cube_(cover[at], cover[at] + cover.words), fixed_(cover.words) {
  for (std::size_t j = 0; j < cover.outputs; j++) {
    if (outputs == Outputs::STAY || problem.is_left_out[j]) set_output(cover, fixed_.data(), j);
    if (problem.is_left_out[j] && drives_output(cover, cover[at], j))
      std::fill_n(fixed_.begin(), input_words_, kLowBits);
  }
  if (cover.outputs % 64 != 0) fixed_.back() |= ~CubeWord{0} << (cover.outputs % 64); // no output
  add_bars(problem);
  settle();
}

// The literals that keep this cube apart from that one. Whether one of them is fixed.
bool Growth::find_literals(Cube off, Marks &bar) const {
  CubeWord fixed = 0;
  for (std::size_t w = 0; w < input_words_; w++) {
    bar[w] = conflicts_of(cube_[w] & off[w]);
    fixed |= bar[w] & fixed_[w];
  }
  return fixed != 0;
}

void Growth::add_bars(const Problem &problem) {
  const Cover &off = problem.off;
  Marks bar(cube_.size());
  for (std::size_t r = 0; r < off.size(); r++) {
    if (r % Problem::kBlock == 0 && find_literals(problem.bounds[r / Problem::kBlock], bar)) {
      r += Problem::kBlock - 1;
      continue;
    }
    if (find_literals(off[r], bar)) continue;
    const bool is_driven = share_mark(outputs(off[r]), cube_.data() + input_words_);
    for (std::size_t w = input_words_; w < bar.size(); w++) bar[w] = is_driven ? 0 : off[r][w];
    if (!stands_for_good(bar.data())) bars_.insert(bars_.end(), bar.begin(), bar.end());
  }
}

// Whether the bar holds whatever is raised. When it depends on a single mark, that is fixed.
bool Growth::stands_for_good(const CubeWord *bar) {
  if (share_mark(literals(bar), fixed_.data())) return true;
  CubeWord outputs = 0, open_outputs = 0;
  for (std::size_t w = input_words_; w < cube_.size(); w++) {
    outputs |= bar[w];
    open_outputs |= bar[w] & ~fixed_[w];
  }
  if (outputs != 0 && open_outputs == 0) return true;
  if (count_marks(literals(bar)) + (outputs != 0 ? 1 : 0) > 1) return false;
  for (std::size_t w = 0; w < cube_.size(); w++) fixed_[w] |= bar[w];
  return true;
}

// Drops bars until all that remain leave a choice, then raises the marks that none of them has.
void Growth::settle() {
  for (Marks before; before != fixed_;) {
    before = fixed_;
    Marks kept;
    for_each_bar([&](const CubeWord *bar) {
      if (!stands_for_good(bar)) kept.insert(kept.end(), bar, bar + cube_.size());
    });
    bars_ = std::move(kept);
  }
  Marks held = fixed_;
  for_each_bar([&](const CubeWord *bar) {
    for (std::size_t w = 0; w < held.size(); w++) held[w] |= bar[w];
  });
  for (std::size_t w = 0; w < input_words_; w++) {
    const CubeWord free = literals_of(cube_[w]) & ~held[w];
    cube_[w] |= free | free << 1;
  }
  for (std::size_t w = input_words_; w < cube_.size(); w++) cube_[w] |= ~held[w];
}

void Growth::find_missing(Cube cube, Marks &missing) const {
  for (std::size_t w = 0; w < cube_.size(); w++) {
    const CubeWord more = cube[w] & ~cube_[w];
    missing[w] = w < input_words_ ? (more | more >> 1) & kLowBits : more;
  }
}

bool Growth::is_possible(const Marks &missing) const {
  for (std::size_t at = 0; at < bars_.size(); at += cube_.size()) {
    const CubeWord *bar = bars_.data() + at;
    if (!is_contained(literals(bar), missing.data())) continue;
    if (count_marks(outputs(bar)) == 0 || share_mark(outputs(bar), missing.data() + input_words_)) return false;
  }
  return true;
}

void Growth::raise(const Marks &marks) {
  for (std::size_t w = 0; w < cube_.size(); w++) cube_[w] |= w < input_words_ ? marks[w] | marks[w] << 1 : marks[w];
  for_each_bar([&](CubeWord *bar) {
    for (std::size_t w = 0; w < input_words_; w++) bar[w] &= ~marks[w];
    if (share_mark(outputs(bar), marks.data() + input_words_)) std::fill(bar + input_words_, bar + cube_.size(), 0);
  });
  settle();
}

// Each bar keeps one of its marks, or, if it is to keep outputs, all of them: a set of marks for each of
// those.
void Growth::finish() {
  std::vector<Marks> sets;
  Marks raised(cube_.size());
  for_each_bar([&](const CubeWord *bar) {
    Marks set(cube_.size());
    std::copy_n(bar, input_words_, set.begin());
    for (std::size_t w = 0; w < set.size(); w++) raised[w] |= bar[w] & ~fixed_[w];
    if (count_marks(outputs(bar)) == 0) sets.push_back(set);
    for_each_mark(outputs(bar), [&](std::size_t output) {
      Marks with_output = set;
      set_mark(with_output, input_words_ * 64 + output);
      if (!share_mark(with_output, fixed_.data())) sets.push_back(std::move(with_output));
    });
  });
  if (sets.empty()) return;
  const Marks kept = hit_all(std::move(sets));
  for (std::size_t w = 0; w < raised.size(); w++) raised[w] &= ~kept[w];
  raise(raised);
}

// Cubes that have little in common with most come first: by their turn, the others are likely to be
// contained.
std::vector<std::uint32_t> order_for_expansion(const Cover &cover) {
  std::vector<std::size_t> counts(cover.words * 64), weights(cover.size());
  const auto bits = [&](std::size_t c) { return std::span(cover[c], cover.words); };
  for (std::size_t c = 0; c < cover.size(); c++) for_each_mark(bits(c), [&](std::size_t bit) { counts[bit]++; });
  for (std::size_t c = 0; c < cover.size(); c++)
    for_each_mark(bits(c), [&](std::size_t bit) { weights[c] += counts[bit]; });
  std::vector<std::uint32_t> order(cover.size());
  std::iota(order.begin(), order.end(), 0U);
  std::stable_sort(order.begin(), order.end(),
                   [&](std::uint32_t a, std::uint32_t b) { return weights[a] < weights[b]; });
  return order;
}

struct Candidate {
  std::uint32_t cube;
  Marks missing;
};

// The cube whose missing marks bring in most of the others, the nearest of equals; nullptr: none is possible.
const Candidate *find_best(const Growth &growth, const std::vector<Candidate> &candidates) {
  const Candidate *best = nullptr;
  std::ptrdiff_t most = 0;
  std::size_t fewest = 0;
  for (const Candidate &candidate : candidates) {
    if (!growth.is_possible(candidate.missing)) continue;
    const auto is_inside = [&](const Candidate &other) {
      return is_contained(other.missing, candidate.missing.data());
    };
    const std::ptrdiff_t inside = std::count_if(candidates.begin(), candidates.end(), is_inside);
    const std::size_t marks = count_marks(candidate.missing);
    if (best != nullptr && (inside < most || (inside == most && marks >= fewest))) continue;
    best = &candidate;
    most = inside;
    fewest = marks;
  }
  return best;
}

// The mark that most candidates lack.
Marks find_frequent(const std::vector<Candidate> &candidates) {
  const std::size_t words = candidates.front().missing.size();
  std::vector<std::size_t> counts(words * 64);
  for (const Candidate &candidate : candidates)
    for_each_mark(candidate.missing, [&](std::size_t mark) { counts[mark]++; });
  Marks frequent(words);
  set_mark(frequent, static_cast<std::size_t>(std::max_element(counts.begin(), counts.end()) - counts.begin()));
  return frequent;
}

// Grows one cube over as many of the cubes still to be expanded as possible.
Marks expand_cube(const Cover &cover, std::size_t at, Growth growth, const std::vector<bool> &is_done) {
  std::vector<Candidate> candidates;
  Marks missing(cover.words);
  for (std::uint32_t c = 0; c < cover.size(); c++) {
    if (c == at || is_done[c]) continue;
    growth.find_missing(cover[c], missing);
    if (!growth.is_out_of_reach(missing)) candidates.push_back({c, missing});
  }
  for (;;) {
    std::erase_if(candidates, [&](Candidate &candidate) {
      growth.find_missing(cover[candidate.cube], candidate.missing);
      return growth.is_out_of_reach(candidate.missing) || count_marks(candidate.missing) == 0;
    });
    if (candidates.empty()) break;
    const Candidate *best = find_best(growth, candidates);
    growth.raise(best != nullptr ? best->missing : find_frequent(candidates));
  }
  growth.finish();
  return growth.cube();
}

} // namespace

void expand(Cover &cover, const Problem &problem, Outputs outputs, std::vector<bool> is_done) {
  is_done.resize(cover.size());
  std::vector<bool> is_inside(cover.size()); // a cube that is expanded
  for (const std::uint32_t at : order_for_expansion(cover)) {
    if (is_done[at] || problem.is_stopped()) continue;
    const Marks grown = expand_cube(cover, at, Growth(cover, at, problem, outputs), is_done);
    std::copy(grown.begin(), grown.end(), cover[at]);
    is_done[at] = true;
    for (std::size_t c = 0; c < cover.size(); c++)
      if (!is_done[c] && is_contained({cover[c], cover.words}, cover[at])) is_done[c] = is_inside[c] = true;
  }
  Cover kept(cover.inputs, cover.outputs);
  for (std::size_t c = 0; c < cover.size(); c++)
    if (!is_inside[c]) add_cube(kept, cover[c]);
  cover = std::move(kept);
}

} // namespace cubekit
