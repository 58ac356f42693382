// What a long run shows on a terminal, and that it shows nothing elsewhere. The run is long because the vectors come
// through a pipe that the test holds open.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>

#include "support/temp_dir.h"

namespace cubekit {
namespace {

struct Simulation {
  pid_t child;
  int vectors; // the writing end of the pipe
};

// `cubekit sim` with standard error on that descriptor.
Simulation start_sim(int standard_error) {
  const pid_t child = ::fork();
  if (child == 0) {
    const int output = ::open("output", O_CREAT | O_TRUNC | O_WRONLY, 0600);
    ::dup2(output, STDOUT_FILENO);
    ::dup2(standard_error, STDERR_FILENO);
    ::execl(CUBEKIT_PROGRAM, "cubekit", "sim", "counter", "--vectors", "vectors", nullptr);
    ::_exit(99);
  }
  const Simulation run{child, ::open("vectors", O_RDWR | O_CLOEXEC)};
  const std::string columns = "clk\n";
  EXPECT_EQ(::write(run.vectors, columns.data(), columns.size()), 4);
  return run;
}

void finish(const Simulation &run) {
  EXPECT_EQ(::write(run.vectors, "0\n1\n", 4), 4);
  ::close(run.vectors);
  int status = 0;
  EXPECT_EQ(::waitpid(run.child, &status, 0), run.child);
  EXPECT_EQ(status, 0);
  EXPECT_NE(cubenet::read_file("output").find("1   |"), std::string::npos) << cubenet::read_file("output");
}

void make_counter() {
  const std::string table = PROJECT_DIR "/examples/counter/counter.tt2";
  std::filesystem::copy_file(table, "counter.tt2");
  ASSERT_EQ(std::system(CUBENET_PROGRAM " counter > console"), 0);
  ASSERT_EQ(::mkfifo("vectors", 0600), 0);
}

TEST(Progress, IsShownOnATerminalAndWipedOff) {
  const cubenet::WorkingDir directory;
  make_counter();
  int terminal = -1, other_end = -1;
  ASSERT_EQ(::openpty(&terminal, &other_end, nullptr, nullptr, nullptr), 0);
  const Simulation simulation = start_sim(other_end);
  ::close(other_end);
  std::string shown;
  char bytes[256];
  ssize_t got = 0;
  while (shown.find("rows simulated") == std::string::npos && (got = ::read(terminal, bytes, sizeof bytes)) > 0)
    shown.append(bytes, static_cast<std::size_t>(got));
  finish(simulation);
  while ((got = ::read(terminal, bytes, sizeof bytes)) > 0) shown.append(bytes, static_cast<std::size_t>(got));
  ::close(terminal);
  EXPECT_TRUE(shown.starts_with("\rrows simulated\033[K")) << shown;
  EXPECT_TRUE(shown.ends_with("\r\033[K")) << shown;
}

TEST(Progress, IsNotShownInAFile) {
  const cubenet::WorkingDir directory;
  make_counter();
  const int file = ::open("errors", O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
  const Simulation simulation = start_sim(file);
  std::this_thread::sleep_for(std::chrono::milliseconds(1300)); // long enough to be shown, were it a terminal
  finish(simulation);
  ::close(file);
  EXPECT_EQ(cubenet::read_file("errors"), "");
}

} // namespace
} // namespace cubekit
