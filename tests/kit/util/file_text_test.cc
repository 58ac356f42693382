// Files in memory: read, mapped, and cut short or written while they are used.
#include "kit/util/file_text.h"

#include <chrono>
#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "support/temp_dir.h"

namespace cubekit {
namespace {

constexpr std::size_t kMapped = std::size_t{1} << 20; // files of this size are; it is a multiple of any page's

std::string make_content(std::size_t size) {
  std::string content;
  for (std::size_t i = 0; content.size() < size; i++) content += std::to_string(i) + ' ';
  return content.substr(0, size);
}

std::size_t count_open_files() {
  const std::filesystem::directory_iterator files("/proc/self/fd");
  return static_cast<std::size_t>(std::distance(begin(files), end(files)));
}

TEST(FileTexts, HaveLineEndsBehindThem) {
  const cubenet::WorkingDir directory;
  for (const std::size_t size : {std::size_t{0}, std::size_t{100}, kMapped - 1, kMapped, kMapped + 1}) {
    const std::string content = make_content(size);
    cubenet::write_file("f", content);
    FileText text;
    Finding error;
    ASSERT_TRUE(read_file("f", text, error)) << error.text;
    EXPECT_TRUE(text.view() == content) << size;
    EXPECT_EQ(std::string(text.data() + size, FileText::kPadding), std::string(FileText::kPadding, '\n')) << size;
    EXPECT_TRUE(cubenet::read_file("f") == content) << size;
  }
}

TEST(FileTexts, TellThatTheirFilesHaveChanged) {
  const cubenet::WorkingDir directory;
  enum Change { NOTHING, ANOTHER_NAME, ANOTHER_BYTE, ANOTHER_SIZE, ANOTHER_NANOSECOND };
  for (const std::size_t size : {kMapped - 1, kMapped}) {
    for (const Change change : {NOTHING, ANOTHER_NAME, ANOTHER_BYTE, ANOTHER_SIZE, ANOTHER_NANOSECOND}) {
      cubenet::write_file("f", make_content(size));
      const auto time = std::filesystem::last_write_time("f") - std::chrono::hours(1);
      std::filesystem::last_write_time("f", time);
      const bool counts = size == kMapped && change >= ANOTHER_BYTE; // smaller files are copied
      const std::size_t open_before = count_open_files();
      {
        FileText text;
        Finding error;
        ASSERT_TRUE(read_file("f", text, error)) << error.text;
        if (change == ANOTHER_NAME) std::filesystem::rename("f", "g");
        if (change == ANOTHER_BYTE) std::fstream("f", std::ios::in | std::ios::out) << 'x';
        if (change == ANOTHER_SIZE) {
          std::filesystem::resize_file("f", size - 1);
          std::filesystem::last_write_time("f", time);
        }
        if (change == ANOTHER_NANOSECOND) std::filesystem::last_write_time("f", time + std::chrono::nanoseconds(1));
      }
      EXPECT_EQ(count_open_files(), open_before);
      EXPECT_EQ(take_changed_text(), counts) << size << ' ' << change;
      EXPECT_FALSE(take_changed_text());
    }
  }
}

TEST(FileTexts, EndTheProgramWhenTheyAreCutShort) {
  const cubenet::WorkingDir directory;
  cubenet::write_file("f", make_content(2 * kMapped));
  const auto use_cut_file = [] {
    FileText text;
    Finding error;
    if (!read_file("f", text, error)) return;
    std::filesystem::resize_file("f", kMapped);
    const volatile char *bytes = text.data();
    static_cast<void>(bytes[kMapped + kMapped / 2]);
  };
  EXPECT_EXIT(use_cut_file(), testing::ExitedWithCode(2), "a file was cut short while it was read");
}

} // namespace
} // namespace cubekit
