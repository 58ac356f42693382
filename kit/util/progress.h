// Shows on standard error, in one line that is rewritten in place, what a run is at. Nothing is shown when standard
// error is no terminal.
#pragma once

#include <cstddef>
#include <string_view>

namespace cubekit {

enum class Printing : bool { NO, YES };

// From its making to its end the program does what it says; one at a time. The line is painted when a stage begins and
// when it tells how far it is, ten times a second at most, and wiped off at the end. What is printed in between would
// be torn: a stage that prints its results says so, and isn't shown when they go to a terminal.
class Stage {
public:
  // The text is a fixed one. `steps`: how many there are, 0 for not known.
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

// What the action gives, with the stage shown while it runs.
template <typename Action> auto during(std::string_view what, const Action &action) {
  const Stage stage(what);
  return action();
}

} // namespace cubekit
