// Few marks that hit every set: forced and dominated marks go first, then the mark that hits most, where sets
// with few marks count more.
#include <algorithm>

#include "kit/minimize/passes.h"

namespace cubekit {

namespace {

// A set that contains another is hit along with it. The smallest sets come first.
void drop_larger_sets(std::vector<Marks> &sets) {
  const auto is_smaller = [](const Marks &a, const Marks &b) { return count_marks(a) < count_marks(b); };
  std::stable_sort(sets.begin(), sets.end(), is_smaller);
  std::vector<Marks> kept;
  for (Marks &set : sets) {
    const auto is_inside = [&](const Marks &smaller) { return is_contained(smaller, set.data()); };
    if (std::none_of(kept.begin(), kept.end(), is_inside)) kept.push_back(std::move(set));
  }
  sets = std::move(kept);
}

// A mark whose sets are all hit by another mark is not needed. True when there was one.
bool drop_dominated_marks(std::vector<Marks> &sets) {
  std::vector<Marks> hits(sets.front().size() * 64, Marks((sets.size() + 63) / 64)); // by each mark
  for (std::size_t s = 0; s < sets.size(); s++)
    for_each_mark(sets[s], [&](std::size_t mark) { set_mark(hits[mark], s); });
  Marks dropped(sets.front().size());
  for (const Marks &set : sets) { // only marks in the same set dominate each other
    for_each_mark(set, [&](std::size_t mark) {
      for_each_mark(set, [&](std::size_t other) {
        if (other == mark || has_mark(dropped, mark) || has_mark(dropped, other)) return;
        if (is_contained(hits[mark], hits[other].data())) set_mark(dropped, mark);
      });
    });
  }
  for (Marks &set : sets)
    for (std::size_t w = 0; w < set.size(); w++) set[w] &= ~dropped[w];
  return count_marks(dropped) != 0;
}

std::size_t find_best_mark(const std::vector<Marks> &sets) {
  std::vector<double> weights(sets.front().size() * 64);
  for (const Marks &set : sets) {
    const double weight = 1.0 / static_cast<double>(count_marks(set) - 1); // of a single mark: infinite
    for_each_mark(set, [&](std::size_t mark) { weights[mark] += weight; });
  }
  return static_cast<std::size_t>(std::max_element(weights.begin(), weights.end()) - weights.begin());
}

void drop_needless_marks(Marks &chosen, const std::vector<Marks> &sets) {
  for_each_mark(Marks(chosen), [&](std::size_t mark) {
    Marks others = chosen;
    others[mark / 64] ^= CubeWord{1} << (mark % 64);
    const auto is_hit = [&](const Marks &set) { return share_mark(set, others.data()); };
    if (std::all_of(sets.begin(), sets.end(), is_hit)) chosen = std::move(others);
  });
}

} // namespace

Marks hit_all(std::vector<Marks> sets) {
  if (sets.empty()) return {};
  drop_larger_sets(sets);
  const std::vector<Marks> all = sets;
  Marks chosen(sets.front().size());
  while (!sets.empty()) {
    if (count_marks(sets.front()) > 1 && drop_dominated_marks(sets)) drop_larger_sets(sets);
    const std::size_t mark = find_best_mark(sets);
    set_mark(chosen, mark);
    std::erase_if(sets, [&](const Marks &set) { return has_mark(set, mark); });
  }
  drop_needless_marks(chosen, all);
  return chosen;
}

} // namespace cubekit
