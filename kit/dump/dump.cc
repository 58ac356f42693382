// `cubekit dump`: the debug listing of a design as the translator holds it once the design is checked. The
// translator's checker works too: the listing shows what it found.
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>

#include "debug/dump.h"
#include "kit/command/arguments.h"
#include "kit/command/command.h"
#include "kit/command/output.h"
#include "kit/dump/dump.h"
#include "kit/table/read_design.h"
#include "kit/util/progress.h"

namespace cubekit {

namespace {

// The listing is written by name, so what goes to standard output passes through a file in memory.
int print_listing(const cubenet::Design &design, const cubenet::CubeTable &cubes) {
  const int memory = ::memfd_create("listing", MFD_CLOEXEC);
  bool listed = memory >= 0 && cubenet::dump_design("/proc/self/fd/" + std::to_string(memory), design, cubes) == 0;
  const int status = !listed ? kMisuse : write_output("", [&](std::ostream &stream) {
    std::vector<char> block(std::size_t{64} << 10);
    ssize_t got = 0;
    while ((got = ::read(memory, block.data(), block.size())) > 0) stream.write(block.data(), got);
    listed = got == 0;
  });
  if (memory >= 0) ::close(memory);
  if (!listed) std::cerr << "cubekit: the listing could not be made\n";
  return listed ? status : kMisuse;
}

int run_dump(const DesignArguments &arguments) {
  cubenet::CubeTable cubes;
  std::string messages;
  choose_part(arguments.part);
  const auto read = [&] { return read_design(table_path(arguments), arguments.case_sensitive, cubes, messages); };
  const auto design = during("reading the truth table", read);
  if (design == nullptr) {
    std::cerr << messages;
    return kMisuse;
  }
  // What is said of a legal design is of no interest here.
  messages.clear();
  if (!during("checking the rules", [&] { return check_design(*design, cubes, messages); })) {
    std::cerr << messages;
    return kNo;
  }
  if (arguments.output.empty()) return print_listing(*design, cubes);
  const auto list = [&] { return cubenet::dump_design(arguments.output, *design, cubes); };
  if (during("writing", list) == 0) return kYes;
  std::cerr << arguments.output << ": can't be written\n";
  return kMisuse;
}

} // namespace

std::function<int()> setup_dump(CLI::App &command) {
  auto arguments = std::make_shared<DesignArguments>();
  declare_design(command, *arguments);
  declare_table(command, *arguments);
  declare_output(command, *arguments);
  return [arguments] { return run_dump(*arguments); };
}

} // namespace cubekit
