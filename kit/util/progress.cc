// One line for the whole process.
#include "kit/util/progress.h"

#include <unistd.h>

#include <chrono>
#include <cstdio>

namespace cubekit {

Stage::Stage(std::string_view what, std::size_t steps, Printing printing)
    : what_(what), steps_(steps),
      is_shown_(::isatty(STDERR_FILENO) == 1 && (printing == Printing::NO || ::isatty(STDOUT_FILENO) == 0)) {
  paint(0);
}

Stage::~Stage() {
  if (!is_shown_) return;
  std::fputs("\r\033[K", stderr);
  std::fflush(stderr);
}

void Stage::set_done(std::size_t done) {
  using Clock = std::chrono::steady_clock;
  static Clock::time_point due;
  if (!is_shown_) return;
  const Clock::time_point now = Clock::now();
  if (now < due) return;
  due = now + std::chrono::milliseconds(100);
  paint(done);
}

void Stage::paint(std::size_t done) const {
  if (!is_shown_) return;
  std::fprintf(stderr, "\r%.*s", static_cast<int>(what_.size()), what_.data());
  if (steps_ != 0)
    std::fprintf(stderr, ": %zu of %zu", done, steps_);
  else if (done != 0)
    std::fprintf(stderr, ": %zu", done);
  std::fputs("\033[K", stderr);
  std::fflush(stderr);
}

} // namespace cubekit
