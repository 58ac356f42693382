// Minimization as a function on covers: what it must not change, and how few cubes it leaves, in reasonable
// time.
#include <bit>
#include <chrono>
#include <cmath>
#include <random>
#include <thread>

#include <gtest/gtest.h>

#include "kit/minimize/minimize.h"

namespace cubekit {
namespace {

using Clock = std::chrono::steady_clock;

struct Shape {
  std::size_t inputs, outputs, cubes;
  std::uint32_t literals, driven; // percent
};

Cover random_cover(std::mt19937 &random, const Shape &shape) {
  Cover cover(shape.inputs, shape.outputs);
  for (std::size_t c = 0; c < shape.cubes; c++) {
    CubeWord *cube = add_cube(cover);
    for (std::size_t k = 0; k < shape.inputs; k++)
      if (random() % 100 < shape.literals) set_literal(cube, k, static_cast<cubenet::Literal>(1 + random() % 2));
    set_output(cover, cube, random() % shape.outputs);
    for (std::size_t j = 0; j < shape.outputs; j++)
      if (random() % 100 < shape.driven) set_output(cover, cube, j);
  }
  return cover;
}

Cover sum_of(Cover cover, const Cover &more) {
  add_cubes(cover, more);
  return cover;
}

bool covers_all(const Cover &cover, const Cover &more, const Cover &asked) {
  const Cover both = sum_of(cover, more);
  for (std::size_t c = 0; c < asked.size(); c++)
    if (!covers(both, asked[c])) return false;
  return true;
}

// A cube's output that the other cubes and the free points make redundant.
bool has_needless_output(const Cover &cover, const Cover &free) {
  for (std::size_t c = 0; c < cover.size(); c++) {
    for (std::size_t j = 0; j < cover.outputs; j++) {
      if (!drives_output(cover, cover[c], j)) continue;
      Cover rest = cover, asked(cover.inputs, cover.outputs);
      clear_output(rest, rest[c], j);
      add_cube(asked, cover[c]);
      for (std::size_t other = 0; other < cover.outputs; other++)
        if (other != j) clear_output(asked, asked[0], other);
      if (covers_all(rest, free, asked)) return true;
    }
  }
  return false;
}

TEST(Minimize, KeepsTheFunctionWithinWhatIsFree) {
  std::mt19937 random(1);
  std::size_t before = 0, after = 0, constant = 0;
  const auto pick = [&](unsigned first, unsigned count) { return first + static_cast<unsigned>(random() % count); };
  for (int run = 0; run < 400; run++) {
    const Shape shape{pick(3, 5), pick(1, 5), pick(1, 25), pick(30, 70), pick(0, 80)};
    const Cover on = random_cover(random, shape), none(shape.inputs, shape.outputs);
    const Cover free = random_cover(random, {shape.inputs, shape.outputs, pick(0, 6), 70, 30});
    const Cover cover = minimize(on, free), each = minimize_each(on, free);
    before += on.size();
    after += cover.size();
    for (const Cover &found : {cover, each}) {
      ASSERT_TRUE(covers_all(found, none, on)); // what is on and free is on
      ASSERT_TRUE(covers_all(on, free, found));
    }
    ASSERT_LE(cover.size(), on.size());
    ASSERT_EQ(minimize(on, free).bits, cover.bits);
    const Cover off = complement(sum_of(on, free));
    ASSERT_FALSE(has_needless_output(cover, complement(sum_of(on, off))));
    for (std::size_t j = 0; j < shape.outputs; j++) {
      const std::size_t were = take_output(on, j).size(), are = take_output(cover, j).size();
      ASSERT_EQ(are == 0, were == 0);
      ASSERT_LE(take_output(each, j).size(), were);
      const std::vector<CubeWord> everywhere(on.input_words, ~CubeWord{0});
      if (!has_full_cube(cofactor(on, j, everywhere.data()))) continue;
      constant++;
      ASSERT_EQ(are, 1U);
    }
  }
  EXPECT_LT(after, before * 2 / 3);
  EXPECT_GT(constant, 20U);
}

struct Function {
  const char *name;
  std::size_t inputs, outputs, known; // cubes known to suffice
  std::uint32_t (*value)(std::uint32_t);
};

std::uint32_t ones(std::uint32_t x) { return static_cast<std::uint32_t>(std::popcount(x)); }

// The cell is in the middle of nine; it lives on with two or three neighbours, and comes to life with three.
std::uint32_t next_cell(std::uint32_t x) {
  const std::uint32_t neighbours = ones(x & ~16U);
  return neighbours == 3 || (neighbours == 2 && (x & 16U) != 0) ? 1 : 0;
}

std::uint32_t segments(std::uint32_t x) {
  constexpr std::uint32_t kDigits[] = {0x3f, 0x06, 0x5b, 0x4f, 0x66, 0x6d, 0x7d, 0x07, 0x7f, 0x6f};
  return x < 10 ? kDigits[x] : 0;
}

std::uint32_t compare(std::uint32_t x) { return (x & 15U) > x >> 4 ? 1 : (x & 15U) == x >> 4 ? 2 : 4; }
std::uint32_t root(std::uint32_t x) { return static_cast<std::uint32_t>(std::sqrt(x)); }
std::uint32_t rounded_root(std::uint32_t x) { return static_cast<std::uint32_t>(std::lround(std::sqrt(x))); }
std::uint32_t logarithm(std::uint32_t x) {
  return x == 0 ? 0 : static_cast<std::uint32_t>(std::lround(32 * std::log2(x)));
}

// clang-format off
const Function kFunctions[] = {
    {"number of ones of 5 bits",        5,  3,  31, ones},
    {"number of ones of 7 bits",        7,  3, 127, ones},
    {"number of ones of 8 bits",        8,  4, 255, ones},
    {"3 to 6 ones of 9 bits",           9,  1,  86, [](std::uint32_t x) { return ones(x) >= 3 && ones(x) <= 6 ? 1U : 0U; }},
    {"5 or more ones of 9 bits",        9,  1, 126, [](std::uint32_t x) { return ones(x) >= 5 ? 1U : 0U; }},
    {"next state of a cell",            9,  1,  84, next_cell},
    {"sum of 4 and 4 bits",             8,  5,  75, [](std::uint32_t x) { return (x & 15U) + (x >> 4); }},
    {"sum of 5 and 5 bits",            10,  6, 167, [](std::uint32_t x) { return (x & 31U) + (x >> 5); }},
    {"product of 3 and 3 bits",         6,  6,  32, [](std::uint32_t x) { return (x & 7U) * (x >> 3); }},
    {"product of 4 and 4 bits",         8,  8, 128, [](std::uint32_t x) { return (x & 15U) * (x >> 4); }},
    {"square of 5 bits",                5, 10,  27, [](std::uint32_t x) { return x * x; }},
    {"square of 6 bits",                6, 12,  49, [](std::uint32_t x) { return x * x; }},
    {"rounded square root of 8 bits",   8,  5,  57, rounded_root},
    {"whole square root of 8 bits",     8,  4,  38, root},
    {"greater, equal, less of 4 bits",  8,  3,  46, compare},
    {"logarithm of 8 bits",             8,  8, 144, logarithm},
    {"Gray code of 6 bits",             6,  6,  11, [](std::uint32_t x) { return x ^ x >> 1; }},
    {"seven segments",                  4,  7,   9, segments},
};
// clang-format on

TEST(Minimize, NeedsAsFewCubesAsAreKnownToDo) {
  std::size_t known = 0, sum = 0;
  for (const Function &function : kFunctions) {
    Cover on(function.inputs, function.outputs);
    for (std::uint32_t x = 0; x < 1U << function.inputs; x++) {
      CubeWord *cube = add_cube(on);
      for (std::size_t k = 0; k < function.inputs; k++)
        set_literal(cube, k, (x >> k & 1U) != 0 ? cubenet::LITERAL_TRUE : cubenet::LITERAL_COMPLEMENT);
      for (std::size_t j = 0; j < function.outputs; j++)
        if ((function.value(x) >> j & 1U) != 0) set_output(on, cube, j);
    }
    const Cover cover = minimize(on, Cover(function.inputs, function.outputs));
    EXPECT_TRUE(covers_all(cover, Cover(function.inputs, function.outputs), on)) << function.name;
    EXPECT_TRUE(covers_all(on, Cover(function.inputs, function.outputs), cover)) << function.name;
    EXPECT_LE(cover.size() * 100, function.known * 103) << function.name;
    RecordProperty(function.name, static_cast<int>(cover.size()));
    known += function.known;
    sum += cover.size();
  }
  EXPECT_LE(sum, known);
}

// Pairs of inputs, of which there are 2^30 zeros: too many to list, which must not take long.
TEST(Minimize, LeavesOutputsAloneThatHaveTooManyZeros) {
  Cover on(60, 2);
  for (std::size_t k = 0; k < 60; k += 2) {
    CubeWord *cube = add_cube(on);
    set_literal(cube, k, cubenet::LITERAL_TRUE);
    set_literal(cube, k + 1, cubenet::LITERAL_TRUE);
    set_output(on, cube, 0);
  }
  for (const cubenet::Literal literal : {cubenet::LITERAL_TRUE, cubenet::LITERAL_COMPLEMENT}) {
    CubeWord *cube = add_cube(on);
    set_literal(cube, 0, literal);
    set_literal(cube, 1, cubenet::LITERAL_TRUE);
    set_output(on, cube, 1);
  }
  const auto begin = Clock::now();
  const Cover cover = minimize(on, Cover(60, 2));
  EXPECT_LT(Clock::now() - begin, std::chrono::seconds(20));
  EXPECT_EQ(cover.size(), 31U);
  EXPECT_TRUE(covers_all(cover, Cover(60, 2), on));
  EXPECT_TRUE(covers_all(on, Cover(60, 2), cover));
}

TEST(Minimize, EndsSoonWhenStopped) {
  std::mt19937 random(1);
  const Cover on = random_cover(random, {16, 16, 3000, 80, 30}), none(16, 16);
  for (const bool at_once : {true, false}) {
    std::atomic<bool> stop = at_once;
    Clock::time_point told;
    std::thread teller([&] {
      std::this_thread::sleep_for(std::chrono::milliseconds(300));
      told = Clock::now();
      stop = true;
    });
    const Cover cover = minimize(on, none, &stop);
    const Clock::time_point ended = Clock::now();
    teller.join();
    EXPECT_LT(ended - told, std::chrono::seconds(10));
    EXPECT_LE(cover.size(), on.size());
    EXPECT_TRUE(covers_all(cover, none, on));
    EXPECT_TRUE(covers_all(on, none, cover));
  }
}

} // namespace
} // namespace cubekit
