#include "util/memory.h"

#include <cstdlib>
#include <memory>
#include <new>
#include <string>

#include <gtest/gtest.h>

namespace cubenet {
namespace {

TEST(Memory, EveryKindOfRequestIsCountedAndCanFail) {
  const unsigned long before = allocations_made();
  void *block = reallocate(allocate(0), 0);
  EXPECT_EQ(allocations_made(), before + 2);
  static_cast<char *>(block)[3] = 'x'; // a request for no bytes gets four
  std::free(block);

  // The hook gets the size that was asked for, for containers as well; the second request is the one that
  // fails.
  set_out_of_memory_hook([](long bytes) { std::exit(static_cast<int>(bytes)); });
  const auto fails_second = [](auto &&request) {
    fail_allocation(2);
    std::free(allocate(1));
    request();
  };
  EXPECT_EXIT(fails_second([] { std::free(allocate(0)); }), testing::ExitedWithCode(4), "");
  EXPECT_EXIT(fails_second([] { std::free(reallocate(nullptr, 21)); }), testing::ExitedWithCode(21), "");
  EXPECT_EXIT(fails_second([] { std::string(100, 'x').swap(*std::make_unique<std::string>()); }),
              testing::ExitedWithCode(101), "");
  // Not a new expression: that could be left out together with its delete.
  EXPECT_EXIT(fails_second([] { ::operator delete[](::operator new[](77)); }), testing::ExitedWithCode(77), "");
  EXPECT_EXIT(fails_second([] { ::operator delete(::operator new(78, std::nothrow)); }), testing::ExitedWithCode(78),
              "");
  set_out_of_memory_hook([](long) {});
  EXPECT_EXIT(fails_second([] { std::free(allocate(9)); }), testing::ExitedWithCode(2), "");
  set_out_of_memory_hook(nullptr);
  EXPECT_EXIT(fails_second([] { std::free(allocate(9)); }), testing::ExitedWithCode(2), "");
}

} // namespace
} // namespace cubenet
