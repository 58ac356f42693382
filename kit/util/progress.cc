// A thread of its own paints the line, so that it moves on while the program waits or is deep in one step.
#include "kit/util/progress.h"

#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <mutex>
#include <thread>

namespace cubekit {

namespace {

constexpr std::chrono::milliseconds kQuiet{1000}, kBetween{100};

struct Painter {
  std::mutex mutex; // of all but `done`
  std::condition_variable_any never;
  std::string_view what; // empty: between two stages
  std::size_t steps = 0;
  std::atomic<std::size_t> done = 0;
  bool shown = false;
  std::jthread thread; // last: it ends before the rest

  Painter() : thread([this](const std::stop_token &stop) { run(stop); }) {}

  void run(const std::stop_token &stop) {
    sigset_t all;
    ::sigfillset(&all);
    ::pthread_sigmask(SIG_BLOCK, &all, nullptr); // they are for the thread that writes files
    std::unique_lock lock(mutex);
    const auto stopped = [&] { return stop.stop_requested(); };
    for (auto wait = kQuiet; !never.wait_for(lock, stop, wait, stopped); wait = kBetween) {
      if (stopped()) return;
      paint();
    }
  }

  void paint() {
    if (what.empty()) return;
    const int size = static_cast<int>(what.size());
    const std::size_t at = done;
    if (steps != 0)
      std::fprintf(stderr, "\r%.*s: %zu of %zu\033[K", size, what.data(), at, steps);
    else if (at != 0)
      std::fprintf(stderr, "\r%.*s: %zu\033[K", size, what.data(), at);
    else
      std::fprintf(stderr, "\r%.*s\033[K", size, what.data());
    std::fflush(stderr);
    shown = true;
  }

  void begin(std::string_view next, std::size_t count) {
    const std::scoped_lock lock(mutex);
    what = next;
    steps = count;
    done = 0;
    if (next.empty()) wipe();
  }

  void wipe() {
    if (!shown) return;
    std::fputs("\r\033[K", stderr);
    std::fflush(stderr);
    shown = false;
  }
};

// nullptr where nobody watches.
Painter *painter() {
  static const bool watched = ::isatty(STDERR_FILENO) == 1;
  if (!watched) return nullptr;
  static Painter only;
  return &only;
}

} // namespace

Stage::Stage(std::string_view what, std::size_t steps, Printing printing) {
  const bool torn = printing == Printing::YES && ::isatty(STDOUT_FILENO) == 1;
  if (Painter *shared = painter(); shared != nullptr && !torn) shared->begin(what, steps);
}

Stage::~Stage() {
  if (Painter *shared = painter(); shared != nullptr) shared->begin({}, 0);
}

void Stage::set_done(std::size_t steps) {
  if (Painter *shared = painter(); shared != nullptr) shared->done.store(steps, std::memory_order_relaxed);
}

} // namespace cubekit
