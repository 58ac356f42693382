// A chained hash table from one-word keys (texts, integers or pointers) to one-word values. The table neither owns nor
// copies keys and values. A run only looks texts up; the rest is for hosts that withhold
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
  int max_density; // entries per bin, on average, at which an insertion grows the table
  bool reorder;    // a key that was found moves to the front of its bin
  double grow_factor;
  HashEntry **bins;
};

// A size below 1 makes one bin; density and grow factor are at least 1.
HashTable *hash_create_with(HashCompare compare, HashFunction hash, int size, int density, double grow_factor,
                            bool reorder);
HashTable *hash_create(HashCompare compare, HashFunction hash); // 11 bins, density 5, factor 2.0, no reordering
void hash_free(HashTable *table);

// True, and the value in `*value` unless that is null, when the key is there.
bool hash_lookup(HashTable *table, HashWord key, HashWord *value);
// True when the key was there and its value has been replaced, false when it was added.
bool hash_insert(HashTable *table, HashWord key, HashWord value);

// Visits every entry once, as long as the table isn't changed.
struct HashIterator {
  const HashTable *table;
  const HashEntry *entry; // the next one; none: the next bin is to be searched
  int next_bin;
};
HashIterator hash_iterate(const HashTable *table);
bool hash_next(HashIterator &iterator, HashWord *key, HashWord *value); // false at the end; `value` may be null

int string_hash(HashWord key, int num_bins);
int integer_hash(HashWord key, int num_bins);
int pointer_hash(HashWord key, int num_bins);
int string_compare(HashWord a, HashWord b);
int integer_compare(HashWord a, HashWord b);

} // namespace cubenet
