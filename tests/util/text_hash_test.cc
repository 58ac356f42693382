// The seeded hash of names.
#include "util/text_hash.h"

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace cubenet {
namespace {

// Every byte at every place of a text counts, also of one that is cut or has a NUL; case only where it
// should.
TEST(TextHash, DiffersWhereTheTextsDo) {
  std::set<std::uint64_t> exact, folded;
  std::size_t texts = 0, folded_texts = 0;
  for (std::size_t length = 1; length <= 17; length++)
    for (std::size_t at = 0; at < length; at++)
      for (int byte = 0; byte < 256; byte++) {
        if (byte == '_' && at > 0) continue; // the text of `length` underscores once
        std::string text(length, '_');
        text[at] = static_cast<char>(byte);
        const bool is_upper = byte >= 'A' && byte <= 'Z';
        texts++;
        folded_texts += is_upper ? 0 : 1;
        exact.insert(hash_text(text));
        folded.insert(hash_text_ignoring_case(text));
        if (!is_upper) continue;
        std::string lower = text;
        lower[at] = static_cast<char>(byte - 'A' + 'a');
        EXPECT_EQ(hash_text_ignoring_case(text), hash_text_ignoring_case(lower)) << text;
      }
  EXPECT_EQ(exact.size(), texts);
  EXPECT_EQ(folded.size(), folded_texts);
}

// Indexes look at the low bits first: consecutive names must spread over them.
TEST(TextHash, SpreadsNamesInARow) {
  constexpr std::size_t kNames = 1 << 14, kSlots = kNames;
  std::vector<int> slots(kSlots, 0);
  for (std::size_t i = 0; i < kNames; i++) slots[hash_text("q" + std::to_string(i)) % kSlots]++;
  EXPECT_LT(*std::max_element(slots.begin(), slots.end()), 16); // 7 or 8 by chance
}

TEST(TextHash, MultipliesByHalvesToo) {
  std::uint64_t a = 1, b = ~std::uint64_t{0};
  for (int i = 0; i < 1000; i++) {
    EXPECT_EQ(join_product(a, b), join_product_by_halves(a, b)) << a << ' ' << b;
    a = hash_text(std::to_string(i)) >> i % 64;
    b = hash_text(std::to_string(-i));
  }
}

} // namespace
} // namespace cubenet
