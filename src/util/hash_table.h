// A chained hash table from one-word keys (texts, integers or pointers) to one-word values. The table neither
// owns nor copies keys and values. A run only looks up texts; the other functions are for hosts that withhold
// messages.
#pragma once

#include <cstdint>

namespace cubenet {

union HashWord {
  const char *text;
  std::int32_t number;
  void *pointer;
};

using HashCompare = int (*)(HashWord a, HashWord b);      // 0 when the keys are equal
using HashFunction = int (*)(HashWord key, int num_bins); // 0 .. num_bins - 1

struct HashEntry {
  HashWord key;
  HashWord value;
  HashEntry *next;
};

struct HashTable {
  HashCompare compare;
  HashFunction hash;
  int num_bins; // at least 1
  int num_entries;
  int max_density; // average entries per bin at which an insertion grows the table
  bool reorder;    // a found key moves to the front of its bin
  double grow_factor;
  HashEntry **bins;
};

// A size below 1 makes one bin; density and grow factor are at least 1.
HashTable *hash_create_with(HashCompare compare, HashFunction hash, int size, int density, double grow_factor,
                            bool reorder);
// 11 bins, density 5, factor 2.0, no reordering.
HashTable *hash_create(HashCompare compare, HashFunction hash);
void hash_free(HashTable *table);

// True if the key is there; its value is then stored in `*value` unless that is null.
bool hash_lookup(HashTable *table, HashWord key, HashWord *value);
// True if the key was there and its value has been replaced, false if it was added.
bool hash_insert(HashTable *table, HashWord key, HashWord value);

// Visits every entry once, provided the table isn't changed meanwhile.
struct HashIterator {
  const HashTable *table;
  const HashEntry *entry; // the next one; null: search the next bin
  int next_bin;
};
HashIterator hash_iterate(const HashTable *table);
// False at the end; `value` may be null.
bool hash_next(HashIterator &iterator, HashWord *key, HashWord *value);

int string_hash(HashWord key, int num_bins);
int integer_hash(HashWord key, int num_bins);
int pointer_hash(HashWord key, int num_bins);
int string_compare(HashWord a, HashWord b);
int integer_compare(HashWord a, HashWord b);

} // namespace cubenet
