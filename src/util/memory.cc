// Allocation for the whole program. Every request, including those of the standard containers, passes through
// one counter (so that a test can make any of them fail) and calls the out-of-memory hook if it fails.
#include "util/memory.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>

#include "util/system.h"

namespace cubenet {
namespace {

unsigned long requests = 0;    // made so far
unsigned long failing_one = 0; // number of the request that fails, as in `requests`; 0: none

// Uses neither memory nor streams: it may be called while one is being written.
void end_without_memory(long bytes) {
  char line[80];
  std::snprintf(line, sizeof line, "31104 SYSTEM ERROR: Out of memory allocating %ld bytes\n", bytes);
  static_cast<void>(write_all(1, line, std::strlen(line))); // standard output
  std::_Exit(2);
}

OutOfMemoryHook out_of_memory = end_without_memory;

[[noreturn]] void fail(std::size_t bytes) {
  out_of_memory(static_cast<long>(std::min(bytes, std::size_t{std::numeric_limits<long>::max()})));
  std::_Exit(2);
}

bool request_fails() { return ++requests == failing_one; }

std::size_t at_least_a_word(std::size_t bytes) { return bytes < 1 ? 4 : bytes; }

} // namespace

OutOfMemoryHook set_out_of_memory_hook(OutOfMemoryHook hook) {
  const OutOfMemoryHook before = out_of_memory;
  out_of_memory = hook != nullptr ? hook : end_without_memory;
  return before;
}

void *allocate(std::size_t bytes) {
  bytes = at_least_a_word(bytes);
  void *block = request_fails() ? nullptr : std::malloc(bytes);
  if (block == nullptr) fail(bytes);
  return block;
}

void *reallocate(void *block, std::size_t bytes) {
  bytes = at_least_a_word(bytes);
  void *moved = request_fails() ? nullptr : std::realloc(block, bytes);
  if (moved == nullptr) fail(bytes);
  return moved;
}

void fail_allocation(unsigned long nth) { failing_one = nth == 0 ? 0 : requests + nth; }

unsigned long allocations_made() { return requests; }

} // namespace cubenet

void *operator new(std::size_t bytes) { return cubenet::allocate(bytes); }
void *operator new[](std::size_t bytes) { return cubenet::allocate(bytes); }
void *operator new(std::size_t bytes, const std::nothrow_t &) noexcept { return cubenet::allocate(bytes); }
void *operator new[](std::size_t bytes, const std::nothrow_t &) noexcept { return cubenet::allocate(bytes); }
void operator delete(void *block) noexcept { std::free(block); }
void operator delete[](void *block) noexcept { std::free(block); }
void operator delete(void *block, std::size_t) noexcept { std::free(block); }
void operator delete[](void *block, std::size_t) noexcept { std::free(block); }
void operator delete(void *block, const std::nothrow_t &) noexcept { std::free(block); }
void operator delete[](void *block, const std::nothrow_t &) noexcept { std::free(block); }
