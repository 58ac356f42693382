// Other people's programs.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace cubekit {

// Runs a program of the path with these words, the first its name, and no input; `text` becomes all that it prints.
// Returns its exit status; -1 when it can't be started, or is ended by a signal.
[[nodiscard]] int run_program(std::vector<std::string> words, std::string &text);

// A directory for what such a program reads and writes, gone at the end. Empty when none can be made.
struct TempDirectory {
  std::filesystem::path path;

  TempDirectory();
  ~TempDirectory();
  TempDirectory(const TempDirectory &) = delete;
  TempDirectory &operator=(const TempDirectory &) = delete;
};

} // namespace cubekit
