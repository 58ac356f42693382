#include "kit/util/large_list.h"

#include <sys/mman.h>

#include <cstdint>

namespace cubekit {

void use_large_pages(void *block, std::size_t bytes) {
  constexpr std::size_t kPage = 4096, kLarge = std::size_t{2} << 20;
  const std::size_t before = (kPage - reinterpret_cast<std::uintptr_t>(block) % kPage) % kPage;
  if (bytes >= 2 * kLarge) ::madvise(static_cast<char *>(block) + before, bytes - before, MADV_HUGEPAGE);
}

} // namespace cubekit
