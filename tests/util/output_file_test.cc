#include "util/output_file.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <set>

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "support/temp_dir.h"

namespace cubenet {
namespace {

namespace fs = std::filesystem;

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

std::set<std::string> names_in(const TempDir &dir) {
  std::set<std::string> names;
  for (const auto &entry : fs::directory_iterator(dir.path)) names.insert(entry.path().filename());
  return names;
}

TEST(OutputFile, NeverTouchesAProtectedFile) {
  const TempDir dir;
  write_file(dir.file("in"), "kept");
  fs::create_symlink("in", dir.file("symlink"));
  fs::create_hard_link(dir.file("in"), dir.file("hardlink"));
  protect_from_output(dir.file("symlink"));
  OutputFile file;
  for (const char *name : {"in", "symlink", "hardlink", ".", "missing/out"})
    EXPECT_FALSE(open_output(file, dir.file(name))) << name;
  EXPECT_EQ(read_file(dir.file("in")), "kept");
  end_protection();
  EXPECT_TRUE(open_output(file, dir.file("in")));
}

TEST(OutputFile, GetsItsNameOnceItIsWhole) {
  const TempDir dir;
  fs::create_directory(dir.file("folder"));
  fs::create_symlink("folder/dangling", dir.file("link"));
  fs::create_symlink(dir.file("link"), dir.file("out"));
  for (const std::string text : {"", "a longer text", "new", "x", ""}) { // over none, longer, shorter
    OutputFile file;
    const bool is_there = fs::exists(dir.file("out"));
    const std::string before = is_there ? read_file(dir.file("out")) : "";
    ASSERT_TRUE(open_output(file, dir.file("out")));
    put(file, text);
    flush_output(file);
    EXPECT_EQ(fs::exists(dir.file("out")), is_there);
    EXPECT_EQ(is_there ? read_file(dir.file("out")) : "", before);
    ASSERT_TRUE(close_output(file));
    EXPECT_EQ(read_file(dir.file("folder/dangling")), text);
  }
  EXPECT_EQ(names_in(dir), (std::set<std::string>{"folder", "link", "out"}));

  // Permissions and owner stay; other names of the replaced file keep its text.
  write_file(dir.file("old"), "old");
  fs::permissions(dir.file("old"), fs::perms(0642));
  const bool is_root = getuid() == 0;
  ASSERT_TRUE(!is_root || chown(dir.file("old").c_str(), 65534, 65533) == 0);
  fs::create_hard_link(dir.file("old"), dir.file("other name"));
  OutputFile file;
  ASSERT_TRUE(open_output(file, dir.file("old")));
  put(file, "new");
  ASSERT_TRUE(close_output(file));
  struct stat status {};
  ASSERT_EQ(stat(dir.file("old").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0642U);
  EXPECT_TRUE(!is_root || (status.st_uid == 65534 && status.st_gid == 65533));
  EXPECT_EQ(read_file(dir.file("old")), "new");
  EXPECT_EQ(read_file(dir.file("other name")), "old");
}

// As a user other than the administrator, who can replace only his own files in a folder like /tmp, and
// create none in a read-only one.
TEST(OutputFile, IsWrittenInPlaceWhereNothingCanBeReplaced) {
  if (getuid() != 0) GTEST_SKIP() << "needs to become another user";
  const TempDir dir;
  fs::permissions(dir.path, fs::perms(0755));
  for (const auto &[folder, mode] : {std::pair{"closed", 0755}, std::pair{"shared", 01777}}) {
    fs::create_directory(dir.file(folder));
    fs::permissions(dir.file(folder), fs::perms(mode));
    for (const std::string name : {"open", "full", "shut"}) {
      write_file(dir.path / folder / name, "a long former text");
      fs::permissions(dir.path / folder / name, fs::perms(name == "shut" ? 0644 : 0666));
    }
  }
  const auto write_all_as_another = [&] {
    if (setgid(65534) != 0 || setuid(65534) != 0 || chdir(dir.path.c_str()) != 0) std::exit(9);
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit = {4, 4};
    for (const std::string folder : {"closed/", "shared/"}) {
      OutputFile file, full, shut;
      if (open_output(shut, folder + "shut")) std::exit(8);
      if (!open_output(file, folder + "open") || !open_output(full, folder + "full")) std::exit(7);
      put(file, "new");
      if (!close_output(file)) std::exit(6);
      if (folder == "closed/") setrlimit(RLIMIT_FSIZE, &limit);
      put(full, "more than four");
      if (close_output(full)) std::exit(5);
    }
    std::exit(0);
  };
  EXPECT_EXIT(write_all_as_another(), testing::ExitedWithCode(0), "");
  for (const std::string folder : {"closed/", "shared/"}) {
    EXPECT_EQ(read_file(dir.file(folder + "open")), "new");
    EXPECT_EQ(read_file(dir.file(folder + "shut")), "a long former text");
  }
  EXPECT_EQ(read_file(dir.file("closed/full")), ""); // emptied: a partial file is of no use
  EXPECT_EQ(read_file(dir.file("shared/full")), "a long former text");
}

TEST(OutputFile, LeavesWhatWasThereWhenItIsNotWrittenWhole) {
  const TempDir dir;
  write_file(dir.file("target"), "former");
  fs::create_symlink("target", dir.file("link"));
  std::signal(SIGXFSZ, SIG_IGN);
  rlimit before;
  getrlimit(RLIMIT_FSIZE, &before);
  const std::set<std::string> names{"link", "target"};
  // The limit is reached at the close, between two blocks, and in the middle of one.
  for (const std::size_t size : {std::size_t{5000}, 2 * OutputFile::kBlock, 5 * OutputFile::kBlock}) {
    OutputFile file, link;
    ASSERT_TRUE(open_output(file, dir.file("out")));
    ASSERT_TRUE(open_output(link, dir.file("link")));
    const rlimit limit = {4096, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
    put(file, std::string(size, 'x'));
    put(link, std::string(size, 'x'));
    EXPECT_FALSE(close_output(file));
    EXPECT_FALSE(close_output(link));
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_EQ(names_in(dir), names);
    EXPECT_EQ(read_file(dir.file("target")), "former");
  }
  // A close that fails by itself: the descriptor is gone. And a file that nobody closes.
  for (const bool is_lost : {true, false}) {
    OutputFile file;
    ASSERT_TRUE(open_output(file, dir.file("link")));
    put(file, "whole");
    flush_output(file);
    if (!is_lost) continue;
    close(file.descriptor);
    EXPECT_FALSE(close_output(file));
  }
  EXPECT_EQ(names_in(dir), names);
  EXPECT_EQ(read_file(dir.file("target")), "former");

  OutputFile full;
  fs::create_symlink("/dev/full", dir.file("full"));
  ASSERT_TRUE(open_output(full, dir.file("full")));
  put(full, 'x');
  EXPECT_FALSE(close_output(full));
  EXPECT_TRUE(fs::is_symlink(dir.file("full")));
}

TEST(OutputFile, AnEndedRunLeavesNoHalfFile) {
  const TempDir dir;
  OutputFile files[10]; // more than are listed for signals: the rest is written in place
  for (OutputFile &file : files) {
    ASSERT_TRUE(open_output(file, dir.file(std::to_string(&file - files))));
    put(file, std::string(2 * OutputFile::kBlock, 'x'));
  }
  discard_open_outputs();
  EXPECT_TRUE(fs::is_empty(dir.path));
  EXPECT_FALSE(close_output(files[1]));
}

} // namespace
} // namespace cubenet
