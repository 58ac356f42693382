// The real program in a process of its own.
#pragma once

#include <cstdio>
#include <functional>
#include <string>

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/arguments.h"

namespace cubenet {

struct Spawned {
  pid_t process = -1;
  std::FILE *console = std::tmpfile(); // both streams

  // `prepare` runs in the new process, after its streams are set up.
  explicit Spawned(
      const std::string &line, const std::function<void()> &prepare = [] {}) {
    Arguments arguments(line);
    process = fork();
    if (process != 0) return;
    if (dup2(fileno(console), 1) < 0 || dup2(1, 2) < 0) _exit(126);
    prepare();
    execv(CUBENET_PROGRAM, arguments.pointers.data());
    _exit(127);
  }
  Spawned(const Spawned &) = delete;
  Spawned &operator=(const Spawned &) = delete;
  ~Spawned() { std::fclose(console); }

  // The exit status, or 128 and the signal; `peak` gets the most memory it held, in KiB.
  int wait(long *peak = nullptr) {
    int status = 0;
    rusage usage{};
    if (wait4(process, &status, 0, &usage) != process) return -1;
    if (peak != nullptr) *peak = usage.ru_maxrss;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  }

  std::string text() const {
    std::string all;
    std::rewind(console);
    char block[4096];
    for (std::size_t got; (got = std::fread(block, 1, sizeof block, console)) > 0;) all.append(block, got);
    return all;
  }
};

} // namespace cubenet
