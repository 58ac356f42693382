// What a run shows on a terminal, and that it shows nothing anywhere else.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "support/temp_dir.h"

namespace cubekit {
namespace {

// What a terminal shows of `cubekit sim` when these streams go to it.
std::string shown_on_terminal(bool output, bool errors) {
  int terminal = -1, other_end = -1;
  EXPECT_EQ(::openpty(&terminal, &other_end, nullptr, nullptr, nullptr), 0);
  const pid_t child = ::fork();
  if (child == 0) {
    ::dup2(output ? other_end : ::open("output", O_CREAT | O_TRUNC | O_WRONLY, 0600), STDOUT_FILENO);
    ::dup2(errors ? other_end : ::open("errors", O_CREAT | O_TRUNC | O_WRONLY, 0600), STDERR_FILENO);
    ::close(terminal);
    ::close(other_end);
    ::execl(CUBEKIT_PROGRAM, "cubekit", "sim", "counter", "--vectors", "vectors", nullptr);
    ::_exit(99);
  }
  ::close(other_end);
  std::string shown;
  char bytes[256];
  for (ssize_t got = 0; (got = ::read(terminal, bytes, sizeof bytes)) > 0;)
    shown.append(bytes, static_cast<std::size_t>(got));
  ::close(terminal);
  int status = 0;
  EXPECT_EQ(::waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
  return shown;
}

TEST(Progress, IsShownOnATerminalAloneAndWipedOff) {
  const cubenet::WorkingDir directory;
  std::filesystem::copy_file(PROJECT_DIR "/examples/counter/counter.tt2", "counter.tt2");
  ASSERT_EQ(std::system(CUBENET_PROGRAM " counter > console"), 0);
  cubenet::write_file("vectors", "clk\n0\n1\n");
  const std::string shown = shown_on_terminal(false, true);
  EXPECT_NE(shown.find("\rrows simulated\033[K\rrows simulated: 1\033[K"), std::string::npos) << shown;
  EXPECT_TRUE(shown.ends_with("\033[K\r\033[K")) << shown;
  const std::string both = shown_on_terminal(true, true);
  EXPECT_EQ(both.find("rows simulated"), std::string::npos) << both; // would garble the rows
  EXPECT_NE(both.find("1   |"), std::string::npos) << both;
  EXPECT_EQ(shown_on_terminal(true, false).find('\033'), std::string::npos);
  EXPECT_EQ(cubenet::read_file("errors"), "");
}

} // namespace
} // namespace cubekit
