#include "util/output_file.h"

#include <csignal>
#include <filesystem>
#include <limits>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include "support/temp_dir.h"

namespace cubenet {
namespace {

TEST(OutputFile, WritesPiecesOfAnySizeInOrder) {
  const TempDir dir;
  std::string expected;
  OutputFile file;
  ASSERT_TRUE(open_output(file, dir.file("out")));
  // Around the block's end, and one piece that is larger than the block.
  const std::size_t sizes[] = {0, 1, OutputFile::kBlock - 2, 1, 1, 3 * OutputFile::kBlock, OutputFile::kBlock, 7};
  for (const std::size_t size : sizes) {
    const std::string piece(size, static_cast<char>('a' + expected.size() % 26));
    put_all(file, piece, Decimal{size}, '\n');
    expected += piece + std::to_string(size) + '\n';
  }
  put_number(file, std::numeric_limits<std::uint64_t>::max());
  ASSERT_TRUE(close_output(file));
  EXPECT_EQ(read_file(dir.file("out")), expected + "18446744073709551615");
  EXPECT_FALSE(close_output(file));
}

TEST(OutputFile, NeverTouchesAProtectedFile) {
  const TempDir dir;
  write_file(dir.file("in"), "kept");
  write_file(dir.file("other"), "older text");
  std::filesystem::create_symlink("in", dir.file("symlink"));
  std::filesystem::create_hard_link(dir.file("in"), dir.file("hardlink"));
  const int input = open(dir.file("in").c_str(), O_RDONLY);
  protect_from_output(input);
  OutputFile file;
  for (const char *name : {"in", "symlink", "hardlink", ".", "missing/out"})
    EXPECT_FALSE(open_output(file, dir.file(name))) << name;
  EXPECT_EQ(read_file(dir.file("in")), "kept");
  for (const char *text : {"new", "x", ""}) { // shorter than what was there, down to nothing
    ASSERT_TRUE(open_output(file, dir.file("other")));
    put(file, text);
    EXPECT_TRUE(close_output(file));
    EXPECT_EQ(read_file(dir.file("other")), text);
  }
  unprotect_from_output(input);
  EXPECT_TRUE(open_output(file, dir.file("in")));
  close(input);
}

TEST(OutputFile, RemovesAFileThatCouldNotBeWrittenWhole) {
  const TempDir dir;
  write_file(dir.file("target"), "");
  std::filesystem::create_symlink("target", dir.file("link"));
  std::signal(SIGXFSZ, SIG_IGN);
  rlimit before;
  getrlimit(RLIMIT_FSIZE, &before);
  // The limit is met at the close, between two blocks, and in the middle of one.
  for (const std::size_t size : {std::size_t{5000}, 2 * OutputFile::kBlock, 5 * OutputFile::kBlock}) {
    OutputFile file;
    ASSERT_TRUE(open_output(file, dir.file("out")));
    OutputFile link;
    ASSERT_TRUE(open_output(link, dir.file("link")));
    const rlimit limit = {4096, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
    put(file, std::string(size, 'x'));
    put(link, std::string(size, 'x'));
    EXPECT_FALSE(close_output(file));
    EXPECT_FALSE(close_output(link));
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_FALSE(std::filesystem::exists(dir.file("out")));
    EXPECT_EQ(read_file(dir.file("target")), "");
    EXPECT_FALSE(std::filesystem::exists(dir.file("link")));
    std::filesystem::create_symlink("target", dir.file("link"));
  }
  OutputFile full;
  std::filesystem::create_symlink("/dev/full", dir.file("full"));
  ASSERT_TRUE(open_output(full, dir.file("full")));
  put(full, 'x');
  EXPECT_FALSE(close_output(full));
  EXPECT_TRUE(std::filesystem::is_symlink(dir.file("full")));
}

TEST(OutputFile, AnEndedRunLeavesNoHalfFile) {
  const TempDir dir;
  OutputFile first, second;
  ASSERT_TRUE(open_output(first, dir.file("first")));
  ASSERT_TRUE(open_output(second, dir.file("second")));
  put(first, std::string(2 * OutputFile::kBlock, 'x'));
  discard_open_outputs();
  EXPECT_TRUE(std::filesystem::is_empty(dir.path));
  EXPECT_FALSE(close_output(second));
}

} // namespace
} // namespace cubenet
