// Other people's programs.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace cubekit {

struct ProgramRun {
  bool is_started = false;
  int status = -1;            // its exit status; -1 where it has none: not started, or ended by a signal
  std::string output, errors; // what it printed
  std::string fault;          // for messages, behind the program's name; empty when the status is 0
};

// Runs a program of the path with these words, the first its name, and waits for its end. It reads `input`.
[[nodiscard]] ProgramRun run_program(std::vector<std::string> words, std::string_view input = {});

// A directory for what such a program reads and writes, gone at the end. Empty when none can be made.
struct TempDirectory {
  std::filesystem::path path;

  TempDirectory();
  ~TempDirectory();
  TempDirectory(const TempDirectory &) = delete;
  TempDirectory &operator=(const TempDirectory &) = delete;
};

} // namespace cubekit
