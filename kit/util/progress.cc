// One line for the whole process, painted when it is due.
#include "kit/util/progress.h"

#include <unistd.h>

#include <chrono>
#include <cstdio>

namespace cubekit {

namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::milliseconds kQuiet{1000}, kBetween{100};

struct Line {
  const bool watched = ::isatty(STDERR_FILENO) == 1;
  Clock::time_point due = Clock::now() + kQuiet;
  bool shown = false;
};

Line &line() {
  static Line only;
  return only;
}

} // namespace

Stage::Stage(std::string_view what, std::size_t steps, Printing printing)
    : what_(printing == Printing::YES && ::isatty(STDOUT_FILENO) == 1 ? "" : what), steps_(steps) {
  set_done(0);
}

Stage::~Stage() {
  if (!line().shown) return;
  std::fputs("\r\033[K", stderr);
  std::fflush(stderr);
  line().shown = false;
}

void Stage::set_done(std::size_t done) const {
  if (!line().watched || what_.empty() || Clock::now() < line().due) return;
  line().due = Clock::now() + kBetween;
  line().shown = true;
  std::fprintf(stderr, "\r%.*s", static_cast<int>(what_.size()), what_.data());
  if (steps_ != 0)
    std::fprintf(stderr, ": %zu of %zu", done, steps_);
  else if (done != 0)
    std::fprintf(stderr, ": %zu", done);
  std::fputs("\033[K", stderr);
  std::fflush(stderr);
}

} // namespace cubekit
