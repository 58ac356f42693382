// Input and output are files in memory: pipes would need both ends served at once.
#include "kit/util/program.h"

#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "kit/util/file.h"
#include "util/system.h"

extern char **environ;

namespace cubekit {

namespace {

// Returns 0, or the error that kept it from being started.
int spawn(std::vector<std::string> &words, int input, int output, pid_t &child) {
  std::vector<char *> arguments;
  for (std::string &word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
  const int error = ::posix_spawnp(&child, arguments[0], &actions, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  return error;
}

bool run(std::vector<std::string> &words, int input, int output, std::string &fault) {
  pid_t child = 0;
  if (const int error = spawn(words, input, output, child); error != 0) {
    fault = std::string("can't be started: ") + std::strerror(error);
    return false;
  }
  int status = 0;
  while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  if (WIFEXITED(status) && WEXITSTATUS(status) == 0) return true;
  fault = "failed";
  return false;
}

} // namespace

bool run_program(std::vector<std::string> words, std::string_view input, std::string &output, std::string &fault) {
  const int from = ::memfd_create("input", MFD_CLOEXEC), to = ::memfd_create("output", MFD_CLOEXEC);
  output.clear();
  bool done =
      from >= 0 && to >= 0 && cubenet::write_all(from, input.data(), input.size()) && ::lseek(from, 0, SEEK_SET) == 0;
  if (!done) fault = std::string("can't be given its input: ") + std::strerror(errno);
  done = done && run(words, from, to, fault) && ::lseek(to, 0, SEEK_SET) == 0 && read_all(to, output);
  if (from >= 0) ::close(from);
  if (to >= 0) ::close(to);
  return done;
}

} // namespace cubekit
