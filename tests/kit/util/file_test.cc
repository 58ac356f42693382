// Files read whole, whether or not their size is known.
#include "kit/util/file.h"

#include <sys/stat.h>

#include <thread>

#include <gtest/gtest.h>

#include "support/temp_dir.h"

namespace cubekit {
namespace {

TEST(Files, AreReadToTheirEnd) {
  const cubenet::WorkingDir directory;
  ASSERT_EQ(::mkfifo("pipe", 0600), 0);
  std::string content;
  for (std::size_t size : {0U, 100U, 1U << 16, (1U << 16) + 1, 5000000U}) {
    while (content.size() < size) content += std::to_string(content.size()) + ' ';
    content.resize(size);
    cubenet::write_file("f", content);
    const std::jthread writer([&] { cubenet::write_file("pipe", content); });
    for (const char *const path : {"f", "pipe"}) {
      std::string text = "of another file";
      Finding error;
      ASSERT_TRUE(read_file(path, text, error)) << error.text;
      EXPECT_TRUE(text == content) << path << ' ' << size;
    }
  }
  std::string text;
  Finding error;
  for (const char *const path : {"nothing", "."}) {
    EXPECT_FALSE(read_file(path, text, error)) << path;
    EXPECT_NE(error.text, "") << path;
  }
}

} // namespace
} // namespace cubekit
