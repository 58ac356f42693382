// Two-level minimization of all outputs together.
#pragma once

#include <atomic>
#include <functional>

#include "kit/table/cover.h"

namespace CLI {
class App;
}

namespace cubekit {

// As few cubes as the passes find that are 1 where `on` is, and elsewhere only where `free` is. When `stop`
// becomes true, the best found so far.
[[nodiscard]] Cover minimize(const Cover &on, const Cover &free, const std::atomic<bool> *stop = nullptr);

// The same for each output by itself; in the end, equal cubes of several outputs become one.
[[nodiscard]] Cover minimize_each(const Cover &on, const Cover &free, const std::atomic<bool> *stop = nullptr);

std::function<int()> setup_minimize(CLI::App &command);

} // namespace cubekit
