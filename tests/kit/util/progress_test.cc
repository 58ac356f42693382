// What a long run shows on a terminal, and that it shows nothing elsewhere. The run is long because the rows of vectors
// come through a pipe, a few a second.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <thread>

#include "support/temp_dir.h"

namespace cubekit {
namespace {

using Clock = std::chrono::steady_clock;

// `cubekit sim` with standard error on that descriptor, as long as `goes_on` says.
void run_sim(int standard_error, const std::function<bool()> &goes_on) {
  const pid_t child = ::fork();
  if (child == 0) {
    const int output = ::open("output", O_CREAT | O_TRUNC | O_WRONLY, 0600);
    ::dup2(output, STDOUT_FILENO);
    ::dup2(standard_error, STDERR_FILENO);
    ::execl(CUBEKIT_PROGRAM, "cubekit", "sim", "counter", "--vectors", "vectors", nullptr);
    ::_exit(99);
  }
  ::close(standard_error);
  const int vectors = ::open("vectors", O_RDWR | O_CLOEXEC);
  EXPECT_EQ(::write(vectors, "clk\n0\n", 6), 6);
  while (goes_on()) {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_EQ(::write(vectors, "1\n", 2), 2);
  }
  ::close(vectors);
  int status = 0;
  EXPECT_EQ(::waitpid(child, &status, 0), child);
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
  std::string shown;
  const auto read_more = [&] {
    char bytes[256];
    const ssize_t got = ::read(terminal, bytes, sizeof bytes);
    if (got > 0) shown.append(bytes, static_cast<std::size_t>(got));
    return got > 0;
  };
  const Clock::time_point start = Clock::now();
  run_sim(other_end, [&] {
    pollfd waiting{terminal, POLLIN, 0};
    return ::poll(&waiting, 1, 0) == 0;
  });
  EXPECT_GE(Clock::now() - start, std::chrono::seconds(1));
  while (read_more()) {
  }
  ::close(terminal);
  EXPECT_TRUE(shown.starts_with("\rrows simulated: ")) << shown;
  EXPECT_TRUE(shown.ends_with("\r\033[K")) << shown;
}

TEST(Progress, IsNotShownInAFile) {
  const cubenet::WorkingDir directory;
  make_counter();
  const Clock::time_point end = Clock::now() + std::chrono::milliseconds(1300);
  run_sim(::open("errors", O_CREAT | O_WRONLY | O_CLOEXEC, 0600), [&] { return Clock::now() < end; });
  EXPECT_EQ(cubenet::read_file("errors"), "");
}

} // namespace
} // namespace cubekit
