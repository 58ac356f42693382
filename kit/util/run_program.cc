// Starts programs without a shell.
#include "kit/util/run_program.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>

extern char **environ;

namespace cubekit {

int run_program(std::vector<std::string> words, std::string &text) {
  text.clear();
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) return -1;
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&actions, ends[1], STDERR_FILENO);
  std::vector<char *> arguments;
  for (std::string &word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  pid_t child = 0;
  const bool is_started = ::posix_spawnp(&child, arguments[0], &actions, nullptr, arguments.data(), environ) == 0;
  posix_spawn_file_actions_destroy(&actions);
  ::close(ends[1]);
  std::array<char, 4096> block{};
  for (ssize_t got = 1; is_started && got != 0;) {
    got = ::read(ends[0], block.data(), block.size());
    if (got < 0 && errno != EINTR) break;
    if (got > 0) text.append(block.data(), static_cast<std::size_t>(got));
  }
  ::close(ends[0]);
  int status = 0;
  while (is_started && ::waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  return is_started && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TempDirectory::TempDirectory() {
  std::error_code error;
  std::string name = (std::filesystem::temp_directory_path(error) / "cubekit-XXXXXX").string();
  if (!error && ::mkdtemp(name.data()) != nullptr) path = name;
}

TempDirectory::~TempDirectory() {
  std::error_code ignored;
  if (!path.empty()) std::filesystem::remove_all(path, ignored);
}

} // namespace cubekit
