// Allocation helpers. A request that can't be met is reported through one process-wide hook and never returns, so no
// caller tests for "none". operator new is routed through the same helpers: containers and strings end the same way.
#pragma once

#include <cstddef>

namespace cubenet {

// Called with the size of the request that failed; must not return (should it do so, the process ends with exit status
// 2). The default hook writes system error 31104 to standard output and ends the process likewise; a run sets one that
// also writes the log.
using OutOfMemoryHook = void (*)(long bytes);
OutOfMemoryHook set_out_of_memory_hook(OutOfMemoryHook hook); // returns the one set before; nullptr sets the default

// A request below 1 byte becomes 4 bytes. The memory is released with std::free.
[[nodiscard]] void *allocate(std::size_t bytes);
[[nodiscard]] void *reallocate(void *block, std::size_t bytes);

// Fault injection for tests: the n-th request from now on fails (1 is the next one); 0 switches it off.
void fail_allocation(unsigned long nth);
unsigned long allocations_made(); // since the process started

} // namespace cubenet
