// The chained hash table. The order of a chain is part of its behaviour: new and moved entries go to the
// front, and growing walks the old chains from bin 0 on, which reverses a chain.
#include "util/hash_table.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "util/memory.h"

namespace cubenet {
namespace {

// |number| modulo the bin count; the magnitude of the smallest integer doesn't fit into an int.
int bin_of_number(std::int32_t number, int num_bins) {
  const std::uint32_t bits = static_cast<std::uint32_t>(number);
  return static_cast<int>((number < 0 ? 0U - bits : bits) % static_cast<std::uint32_t>(num_bins));
}

HashEntry **make_bins(int num_bins) {
  const std::size_t bytes = static_cast<std::size_t>(num_bins) * sizeof(void *);
  return static_cast<HashEntry **>(std::memset(allocate(bytes), 0, bytes));
}

bool keys_equal(const HashTable &table, HashWord a, HashWord b) {
  if (table.hash == integer_hash) return a.number == b.number;
  if (table.hash == pointer_hash) return a.pointer == b.pointer;
  return table.compare(a, b) == 0;
}

void push_front(HashEntry **bin, HashEntry *entry) {
  entry->next = *bin;
  *bin = entry;
}

HashEntry *find_entry(HashTable *table, HashWord key, int bin) {
  for (HashEntry **link = &table->bins[bin]; *link != nullptr; link = &(*link)->next) {
    HashEntry *const entry = *link;
    if (!keys_equal(*table, key, entry->key)) continue;
    if (table->reorder) {
      *link = entry->next;
      push_front(&table->bins[bin], entry);
    }
    return entry;
  }
  return nullptr;
}

// An odd bin count spreads hash values that share a factor of two.
int grown_bin_count(const HashTable &table) {
  const int grown = static_cast<int>(std::min(table.num_bins * table.grow_factor, double{INT_MAX}));
  return grown % 2 == 0 ? grown + 1 : grown;
}

void grow(HashTable *table) {
  HashEntry **const old_bins = table->bins;
  const int old_count = table->num_bins;
  table->num_bins = grown_bin_count(*table);
  table->bins = make_bins(table->num_bins);
  table->num_entries = 0;
  for (int bin = 0; bin < old_count; bin++) {
    for (HashEntry *entry = old_bins[bin]; entry != nullptr;) {
      HashEntry *const next = entry->next;
      push_front(&table->bins[table->hash(entry->key, table->num_bins)], entry);
      table->num_entries++;
      entry = next;
    }
  }
  std::free(old_bins);
}

} // namespace

HashTable *hash_create_with(HashCompare compare, HashFunction hash, int size, int density, double grow_factor,
                            bool reorder) {
  HashTable *const table = static_cast<HashTable *>(allocate(sizeof(HashTable)));
  const int num_bins = std::max(size, 1);
  *table = {compare, hash, num_bins, 0, density, reorder, grow_factor, nullptr};
  table->bins = make_bins(num_bins);
  return table;
}

HashTable *hash_create(HashCompare compare, HashFunction hash) {
  return hash_create_with(compare, hash, 11, 5, 2.0, false);
}

void hash_free(HashTable *table) {
  for (int bin = 0; bin < table->num_bins; bin++)
    for (HashEntry *entry = table->bins[bin]; entry != nullptr;) std::free(std::exchange(entry, entry->next));
  std::free(table->bins);
  std::free(table);
}

bool hash_lookup(HashTable *table, HashWord key, HashWord *value) {
  const HashEntry *const entry = find_entry(table, key, table->hash(key, table->num_bins));
  if (entry != nullptr && value != nullptr) *value = entry->value;
  return entry != nullptr;
}

bool hash_insert(HashTable *table, HashWord key, HashWord value) {
  int bin = table->hash(key, table->num_bins);
  if (HashEntry *const entry = find_entry(table, key, bin)) {
    entry->value = value;
    return true;
  }
  if (table->num_entries / table->num_bins >= table->max_density) {
    grow(table);
    bin = table->hash(key, table->num_bins);
  }
  HashEntry *const entry = static_cast<HashEntry *>(allocate(sizeof(HashEntry)));
  *entry = {key, value, nullptr};
  push_front(&table->bins[bin], entry);
  table->num_entries++;
  return false;
}

HashIterator hash_iterate(const HashTable *table) { return {table, nullptr, 0}; }

bool hash_next(HashIterator &iterator, HashWord *key, HashWord *value) {
  while (iterator.entry == nullptr) {
    if (iterator.next_bin == iterator.table->num_bins) return false;
    iterator.entry = iterator.table->bins[iterator.next_bin++];
  }
  *key = iterator.entry->key;
  if (value != nullptr) *value = iterator.entry->value;
  iterator.entry = iterator.entry->next;
  return true;
}

// Bytes above 127 add negative amounts, whatever the machine's char is.
int string_hash(HashWord key, int num_bins) {
  std::uint32_t h = 0;
  for (const char *at = key.text; *at != '\0'; at++)
    h = h * 997 + static_cast<std::uint32_t>(static_cast<signed char>(*at));
  return bin_of_number(static_cast<std::int32_t>(h), num_bins);
}

int integer_hash(HashWord key, int num_bins) { return bin_of_number(key.number, num_bins); }

int pointer_hash(HashWord key, int num_bins) {
  return static_cast<int>((reinterpret_cast<std::uintptr_t>(key.pointer) >> 2) % static_cast<unsigned>(num_bins));
}

int string_compare(HashWord a, HashWord b) { return std::strcmp(a.text, b.text); }

int integer_compare(HashWord a, HashWord b) { return a.number != b.number; }

} // namespace cubenet
