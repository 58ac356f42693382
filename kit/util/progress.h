// Shows a run's progress on standard error, in one line that is rewritten in place. Nothing is shown when
// standard error is not a terminal.
#pragma once

#include <cstddef>
#include <string_view>

namespace cubekit {

enum class Printing : bool { NO, YES };

// A stage of the program, which lasts as long as the object; one at a time. The line is painted when a stage
// begins and when it reports progress, at most ten times a second, and erased at the end. Output printed in
// between would be garbled: a stage that prints its results says so, and isn't shown when they go to a
// terminal.
class Stage {
public:
  // The text must be a constant. `steps`: how many there are; 0: unknown.
  explicit Stage(std::string_view what, std::size_t steps = 0, Printing printing = Printing::NO);
  ~Stage();
  Stage(const Stage &) = delete;
  Stage &operator=(const Stage &) = delete;

  void set_done(std::size_t done);

private:
  void paint(std::size_t done) const;

  std::string_view what_;
  std::size_t steps_;
  bool is_shown_;
};

// Runs the action with the stage shown. Returns its result.
template <typename Action> auto during(std::string_view what, const Action &action) {
  const Stage stage(what);
  return action();
}

} // namespace cubekit
