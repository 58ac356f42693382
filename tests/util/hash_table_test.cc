#include "util/hash_table.h"

#include <climits>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace cubenet {
namespace {

struct FreeTable {
  void operator()(HashTable *table) const { hash_free(table); }
};
using Table = std::unique_ptr<HashTable, FreeTable>;

HashWord word(const char *text) { return {.text = text}; }
HashWord word(int number) { return {.number = number}; }

std::vector<int> chain(const HashTable &table, int bin) {
  std::vector<int> keys;
  for (const HashEntry *entry = table.bins[bin]; entry != nullptr; entry = entry->next)
    keys.push_back(entry->key.number);
  return keys;
}

TEST(HashTable, GrowsToAnOddBinCountAtTheDensityAndKeepsEveryEntry) {
  const Table table(hash_create(integer_compare, integer_hash));
  for (int i = 0; i < 55; i++) ASSERT_FALSE(hash_insert(table.get(), word(i), word(-i)));
  EXPECT_EQ(table->num_bins, 11);
  EXPECT_FALSE(hash_insert(table.get(), word(55), word(-55)));
  EXPECT_EQ(table->num_bins, 23);
  EXPECT_EQ(table->num_entries, 56);

  EXPECT_TRUE(hash_insert(table.get(), word(7), word(70)));
  EXPECT_EQ(table->num_entries, 56);
  std::multiset<int> seen;
  HashIterator entries = hash_iterate(table.get());
  for (HashWord key, value; hash_next(entries, &key, &value);) {
    EXPECT_EQ(value.number, key.number == 7 ? 70 : -key.number);
    seen.insert(key.number);
  }
  EXPECT_EQ(seen.size(), 56U);
  for (int i = 0; i < 56; i++) EXPECT_EQ(seen.count(i), 1U) << i;
  EXPECT_FALSE(hash_lookup(table.get(), word(56), nullptr));
}

TEST(HashTable, ReversesTheChainsWhenItGrowsByItsFactor) {
  const Table table(hash_create_with(integer_compare, integer_hash, 1, 6, 5.5, false));
  for (int i = 0; i < 6; i++) hash_insert(table.get(), word(i), word(0));
  EXPECT_EQ(chain(*table, 0), (std::vector<int>{5, 4, 3, 2, 1, 0}));
  hash_insert(table.get(), word(6), word(0));
  ASSERT_EQ(table->num_bins, 5);
  EXPECT_EQ(chain(*table, 0), (std::vector<int>{0, 5}));
  EXPECT_EQ(chain(*table, 1), (std::vector<int>{6, 1}));
}

TEST(HashTable, MovesAFoundEntryToTheFrontOnlyWhenAskedTo) {
  for (const bool reorder : {false, true}) {
    const Table table(hash_create_with(integer_compare, integer_hash, 0, 100, 2.0, reorder));
    ASSERT_EQ(table->num_bins, 1);
    for (int i = 1; i <= 4; i++) hash_insert(table.get(), word(i), word(i));
    HashWord value;
    ASSERT_TRUE(hash_lookup(table.get(), word(2), &value));
    EXPECT_EQ(value.number, 2);
    EXPECT_EQ(chain(*table, 0), reorder ? (std::vector<int>{2, 4, 3, 1}) : (std::vector<int>{4, 3, 2, 1}));
    ASSERT_TRUE(hash_insert(table.get(), word(1), word(9)));
    EXPECT_EQ(chain(*table, 0), reorder ? (std::vector<int>{1, 2, 4, 3}) : (std::vector<int>{4, 3, 2, 1}));
  }
}

TEST(HashTable, ComparesTextsByContentAndPointersByAddress) {
  const std::string first = "same", second = "same";
  const Table texts(hash_create(string_compare, string_hash));
  hash_insert(texts.get(), word(first.c_str()), word(1));
  EXPECT_TRUE(hash_lookup(texts.get(), word(second.c_str()), nullptr));
  const Table pointers(hash_create(nullptr, pointer_hash));
  hash_insert(pointers.get(), word(first.c_str()), word(1));
  EXPECT_TRUE(hash_lookup(pointers.get(), word(first.c_str()), nullptr));
  EXPECT_FALSE(hash_lookup(pointers.get(), word(second.c_str()), nullptr));
}

TEST(HashTable, HashesWithSignedBytesAndWrapAround) {
  const struct {
    const char *text;
    long long h; // 32 bits, signed, worked out by hand
  } rows[] = {
      {"", 0},
      {"A", 65},
      {"ab", 97 * 997 + 98},
      {"\x80", -128},
      {"b\xff", 98 * 997 - 1},
      {"zzzz", 122LL * (997 * 997 * 997 + 997 * 997 + 997 + 1) - 28 * (1LL << 32)},
  };
  for (const auto &row : rows)
    for (const int bins : {1, 11, 1009, INT_MAX})
      EXPECT_EQ(string_hash(word(row.text), bins), (row.h < 0 ? -row.h : row.h) % bins) << row.text << bins;
  EXPECT_EQ(integer_hash(word(-25), 11), 3);
  EXPECT_EQ(integer_hash(word(INT_MIN), 11), 2147483648LL % 11);
}

} // namespace
} // namespace cubenet
