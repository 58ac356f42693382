// Which cubes, or outputs of cubes, are needed. Of those that others could replace, a few are chosen that
// cover the remaining points.
#include <algorithm>
#include <cstdint>
#include <set>

#include "kit/minimize/passes.h"

namespace cubekit {

namespace {

constexpr std::uint32_t kSure = ~0U;

// A function of cubes with tags: which of the cubes in question each is, or kSure.
struct Tagged {
  Cover function;
  std::vector<std::uint32_t> tags;
};

Tagged cofactor(const Tagged &whole, std::size_t input, bool value) {
  Tagged part{cofactor(whole.function, input, value), {}};
  for (std::size_t c = 0; c < whole.tags.size(); c++)
    if ((literal_at(whole.function[c], input) & (value ? cubenet::LITERAL_TRUE : cubenet::LITERAL_COMPLEMENT)) != 0)
      part.tags.push_back(whole.tags[c]);
  return part;
}

// Splits the function until it is unate: at some point of such a part only its cubes without literals are 1.
// Adds their tags for each part where none of them is sure.
void collect_choices(const Tagged &part, const Problem &problem, Marks none, std::set<Marks> &choices) {
  for (std::size_t c = 0; c < part.tags.size(); c++) {
    if (!is_full({part.function[c], part.function.words})) continue;
    if (part.tags[c] == kSure) return;
    set_mark(none, part.tags[c]);
  }
  const std::size_t input = find_binate_input(part.function);
  if (problem.is_stopped()) return;
  if (input == part.function.inputs) {
    choices.insert(std::move(none));
    return;
  }
  const Marks empty(none.size());
  for (const bool value : {false, true}) collect_choices(cofactor(part, input, value), problem, empty, choices);
}

// Of the cubes in question, none of which the sure ones cover, those to keep.
Marks choose(const Cover &sure, const Cover &asked, const Problem &problem) {
  std::set<Marks> choices;
  for (std::size_t c = 0; c < asked.size(); c++) {
    for (std::size_t j = 0; j < asked.outputs; j++) {
      if (!drives_output(asked, asked[c], j)) continue;
      Tagged seen{cofactor(sure, j, asked[c]), {}};
      seen.tags.resize(seen.function.size(), kSure);
      for (std::uint32_t other = 0; other < asked.size(); other++) {
        add_cofactor(asked, asked[other], j, asked[c], seen.function);
        seen.tags.resize(seen.function.size(), other);
      }
      collect_choices(seen, problem, Marks((asked.size() + 63) / 64), choices);
    }
  }
  return hit_all({choices.begin(), choices.end()});
}

// Which cubes are enough. All of them when the search is stopped.
std::vector<bool> find_needed(const Cover &cover, const Cover &free, const Problem &problem) {
  std::vector<bool> is_needed(cover.size());
  Cover rest = cover, sure = free, asked(cover.inputs, cover.outputs);
  add_cubes(rest, free);
  std::vector<std::size_t> redundant;
  for (std::size_t c = 0; c < cover.size() && !problem.is_stopped(); c++) {
    std::fill_n(rest[c] + rest.input_words, rest.words - rest.input_words, 0); // without the cube
    is_needed[c] = !covers(rest, cover[c]);
    std::copy_n(cover[c], cover.words, rest[c]);
    if (is_needed[c])
      add_cube(sure, cover[c]);
    else
      redundant.push_back(c);
  }
  std::erase_if(redundant, [&](std::size_t c) { return problem.is_stopped() || covers(sure, cover[c]); });
  for (const std::size_t c : redundant) add_cube(asked, cover[c]);
  const Marks chosen = choose(sure, asked, problem);
  for (std::size_t c = 0; c < redundant.size() && !problem.is_stopped(); c++)
    is_needed[redundant[c]] = has_mark(chosen, c);
  if (problem.is_stopped()) is_needed.assign(cover.size(), true);
  return is_needed;
}

} // namespace

void drop_redundant(Cover &cover, const Problem &problem) {
  const std::vector<bool> is_needed = find_needed(cover, problem.free, problem);
  Cover kept(cover.inputs, cover.outputs);
  for (std::size_t c = 0; c < cover.size(); c++)
    if (is_needed[c]) add_cube(kept, cover[c]);
  cover = std::move(kept);
}

void drop_redundant_outputs(Cover &cover, const Problem &problem) {
  for (std::size_t j = 0; j < cover.outputs; j++) {
    const std::vector<bool> is_needed = find_needed(take_output(cover, j), take_output(problem.free, j), problem);
    auto needed = is_needed.begin();
    for (std::size_t c = 0; c < cover.size(); c++)
      if (drives_output(cover, cover[c], j) && !*needed++) clear_output(cover, cover[c], j);
  }
}

} // namespace cubekit
