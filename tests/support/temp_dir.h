// A directory for one test, removed with its contents.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include <gtest/gtest.h>
#include <stdlib.h>

namespace cubenet {

inline std::string read_file(const std::filesystem::path &path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file.is_open()) << path;
  return {std::istreambuf_iterator<char>(file), {}};
}

inline void write_file(const std::filesystem::path &path, std::string_view text) {
  std::ofstream file(path, std::ios::binary);
  file.write(text.data(), static_cast<std::streamsize>(text.size()));
  EXPECT_TRUE(file.flush()) << path;
}

struct TempDir {
  std::filesystem::path path;

  TempDir() {
    std::string name = (std::filesystem::temp_directory_path() / "cubenet-XXXXXX").string();
    EXPECT_NE(mkdtemp(name.data()), nullptr);
    path = name;
  }
  TempDir(const TempDir &) = delete;
  TempDir &operator=(const TempDir &) = delete;
  ~TempDir() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
  }

  std::string file(std::string_view name) const { return (path / name).string(); }
};

// A temporary directory that is also the working directory during its lifetime.
struct WorkingDir : TempDir {
  std::filesystem::path before = std::filesystem::current_path();

  WorkingDir() { std::filesystem::current_path(path); }
  ~WorkingDir() { std::filesystem::current_path(before); }
};

} // namespace cubenet
