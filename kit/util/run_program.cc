// Starts programs without a shell, with files in memory: with pipes, all ends would have to be served at
// once.
#include "kit/util/run_program.h"

#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "kit/util/file.h"
#include "util/system.h"

extern char **environ;

namespace cubekit {

namespace {

// Standard input, output and error of a program.
using Streams = std::array<int, 3>;

// Returns 0, or the error that kept it from being started.
int spawn(std::vector<std::string> &words, const Streams &streams, pid_t &child) {
  std::vector<char *> arguments;
  for (std::string &word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  for (int stream = 0; stream < 3; stream++)
    posix_spawn_file_actions_adddup2(&actions, streams[static_cast<std::size_t>(stream)], stream);
  const int error = ::posix_spawnp(&child, arguments[0], &actions, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  return error;
}

bool read_back(int descriptor, std::string &text) {
  return ::lseek(descriptor, 0, SEEK_SET) == 0 && read_all(descriptor, text);
}

void run(std::vector<std::string> &words, std::string_view input, const Streams &streams, ProgramRun &result) {
  if (!cubenet::write_all(streams[0], input.data(), input.size()) || ::lseek(streams[0], 0, SEEK_SET) != 0) {
    result.fault = std::string("can't be given its input: ") + std::strerror(errno);
    return;
  }
  pid_t child = 0;
  if (const int error = spawn(words, streams, child); error != 0) {
    result.fault = std::string("can't be started: ") + std::strerror(error);
    return;
  }
  result.is_started = true;
  int status = 0;
  while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  if (WIFEXITED(status)) result.status = WEXITSTATUS(status);
  if (result.status != 0) result.fault = "failed";
  if (read_back(streams[1], result.output) && read_back(streams[2], result.errors)) return;
  result.status = -1;
  result.fault = std::string("can't be read: ") + std::strerror(errno);
}

} // namespace

ProgramRun run_program(std::vector<std::string> words, std::string_view input) {
  ProgramRun result;
  Streams streams{};
  for (int &stream : streams) stream = ::memfd_create("stream", MFD_CLOEXEC);
  run(words, input, streams, result);
  for (const int stream : streams)
    if (stream >= 0) ::close(stream);
  return result;
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
