// Covers against their truth tables, point by point.
#include <random>

#include <gtest/gtest.h>

#include "kit/table/cover.h"

namespace cubekit {
namespace {

// Enough inputs for two words, few of them in use.
constexpr std::size_t kFirst = 30, kUsed = 5, kInputs = kFirst + kUsed;

Cover random_cover(std::mt19937 &random, std::size_t outputs, std::size_t cubes) {
  Cover cover(kInputs, outputs);
  const std::uint32_t density = 2 + random() % 4;
  while (cubes-- != 0) {
    CubeWord *cube = add_cube(cover);
    for (std::size_t k = kFirst; k < kInputs; k++)
      if (random() % density != 0) set_literal(cube, k, static_cast<cubenet::Literal>(1 + random() % 2));
    for (std::size_t j = 0; j < cover.outputs; j++)
      if (random() % 2 == 0) set_output(cover, cube, j);
  }
  return cover;
}

bool value_at(const Cover &cover, std::size_t output, std::uint32_t point) {
  const auto is_inside = [&](Cube cube) {
    for (std::size_t k = 0; k < kUsed; k++)
      if ((literal_at(cube, kFirst + k) >> (point >> k & 1U) & 1U) == 0) return false;
    return drives_output(cover, cube, output);
  };
  for (std::size_t c = 0; c < cover.size(); c++)
    if (is_inside(cover[c])) return true;
  return false;
}

TEST(Cover, AnswersWhatItsTruthTableSays) {
  std::mt19937 random(1);
  int tautologies = 0, covered = 0;
  for (int run = 0; run < 3000; run++) {
    const std::size_t outputs = 1 + random() % 3;
    const Cover cover = random_cover(random, outputs, random() % 14), zeros = complement(cover);
    const Cover asked = random_cover(random, outputs, 1);
    std::vector<CubeWord> bound(cover.input_words); // around the zeros of output 0
    bool is_all_on = true, is_covered = true;
    for (std::uint32_t point = 0; point < 1U << kUsed; point++) {
      for (std::size_t j = 0; j < cover.outputs; j++) {
        const bool is_on = value_at(cover, j, point);
        ASSERT_NE(is_on, value_at(zeros, j, point));
        is_all_on = is_all_on && is_on;
        is_covered = is_covered && (is_on || !value_at(asked, j, point));
        for (std::size_t k = kFirst; j == 0 && !is_on && k < kInputs; k++)
          bound[k / 32] |= CubeWord{1} << (2 * (k % 32) + (point >> (k - kFirst) & 1U));
      }
    }
    ASSERT_EQ(is_tautology(cover), is_all_on);
    tautologies += is_all_on;
    ASSERT_EQ(covers(cover, asked[0]), is_covered);
    covered += is_covered;
    const std::vector<CubeWord> everywhere(cover.input_words, ~CubeWord{0});
    const std::vector<CubeWord> found = bound_zeros(cofactor(cover, 0, everywhere.data()));
    ASSERT_EQ(found.empty(), bound[1] == 0);
    for (std::size_t k = kFirst; !found.empty() && k < kInputs; k++)
      ASSERT_EQ(literal_at(found.data(), k), literal_at(bound.data(), k));
  }
  EXPECT_GT(tautologies, 40);
  EXPECT_GT(covered, 100);
}

} // namespace
} // namespace cubekit
