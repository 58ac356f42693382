// `cubekit random`.
#include <CLI/CLI.hpp>
#include <memory>
#include <ostream>

#include "kit/command/output.h"
#include "kit/random/random_design.h"

namespace cubekit {

std::function<int()> setup_random(CLI::App &command) {
  struct Arguments {
    std::uint64_t seed = 0;
    int series = 1;
  };
  auto arguments = std::make_shared<Arguments>();
  command.add_option("SEED", arguments->seed, "a number that decides the design")->required();
  command.add_option("--series", arguments->series, "the device series that it must be legal for")
      ->check(CLI::IsMember({0, 1, 5, 8}));
  return [arguments] {
    return write_output("", [&](std::ostream &stream) { stream << random_design(arguments->seed, arguments->series); });
  };
}

} // namespace cubekit
