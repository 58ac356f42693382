// Runs external programs.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace cubekit {

struct ProgramRun {
  bool is_started = false;
  int status = -1;            // its exit status; -1: not started, or ended by a signal
  std::string output, errors; // what it printed
  std::string fault;          // for messages, after the program's name; empty when the status is 0
};

// Runs a program from the PATH with these words, the first its name, and waits for its end. `input` is its
// standard input.
[[nodiscard]] ProgramRun run_program(std::vector<std::string> words, std::string_view input = {});

// A temporary directory for such a program's files, removed at the end. Its path is empty when none can be
// made.
struct TempDirectory {
  std::filesystem::path path;

  TempDirectory();
  ~TempDirectory();
  TempDirectory(const TempDirectory &) = delete;
  TempDirectory &operator=(const TempDirectory &) = delete;
};

} // namespace cubekit
