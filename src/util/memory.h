// Allocation helpers. A request that fails is reported through one process-wide hook and never returns, so
// callers don't test for null. operator new uses the same helpers, and so do containers and strings.
#pragma once

#include <cstddef>

namespace cubenet {

// Called with the size of the failed request; must not return (if it does, the process exits with status 2).
// The default hook writes system error 31104 to standard output and exits the same way; a run sets one that
// also writes the log.
using OutOfMemoryHook = void (*)(long bytes);
// Returns the previous hook; nullptr sets the default.
OutOfMemoryHook set_out_of_memory_hook(OutOfMemoryHook hook);

// A request for less than 1 byte allocates 4. The memory is released with std::free.
[[nodiscard]] void *allocate(std::size_t bytes);
[[nodiscard]] void *reallocate(void *block, std::size_t bytes);

// Fault injection for tests: the n-th request from now on fails (1 is the next); 0 disables it.
void fail_allocation(unsigned long nth);
unsigned long allocations_made(); // since the process started

} // namespace cubenet
