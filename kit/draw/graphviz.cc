// Runs dot between two files in memory: pipes would need both ends served at once.
#include "kit/draw/graphviz.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>

#include "util/system.h"

extern char **environ;

namespace cubekit {

namespace {

bool read_whole(int descriptor, std::string &text) {
  std::array<char, 65536> block;
  if (::lseek(descriptor, 0, SEEK_SET) != 0) return false;
  for (;;) {
    const ssize_t got = ::read(descriptor, block.data(), block.size());
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return got == 0;
    text.append(block.data(), static_cast<std::size_t>(got));
  }
}

bool run_dot(int input, int output, std::string &fault) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
  std::string words[] = {"dot", "-Tsvg"};
  char *arguments[] = {words[0].data(), words[1].data(), nullptr};
  pid_t child = 0;
  const int error = ::posix_spawnp(&child, words[0].c_str(), &actions, nullptr, arguments, environ);
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0) {
    fault = std::string("'dot' of Graphviz can't be started: ") + std::strerror(error);
    return false;
  }
  int status = 0;
  while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  if (WIFEXITED(status) && WEXITSTATUS(status) == 0) return true;
  fault = "'dot' of Graphviz failed";
  return false;
}

} // namespace

bool draw_svg(std::string_view dot, std::string &svg, std::string &fault) {
  svg.clear();
  const int input = ::memfd_create("graph", MFD_CLOEXEC);
  const int output = ::memfd_create("drawing", MFD_CLOEXEC);
  bool drawn = false;
  if (input < 0 || output < 0 || !cubenet::write_all(input, dot.data(), dot.size()) || ::lseek(input, 0, SEEK_SET) != 0)
    fault = std::string("the drawing can't be handed to 'dot': ") + std::strerror(errno);
  else
    drawn = run_dot(input, output, fault) && read_whole(output, svg);
  if (input >= 0) ::close(input);
  if (output >= 0) ::close(output);
  return drawn;
}

} // namespace cubekit
