// `cubekit dump`: the debug listing of a design as the translator holds it once the design is checked. The
// translator's checker works too: the listing shows what it found.
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>

#include "debug/dump.h"
#include "kit/command/command.h"
#include "kit/command/output.h"
#include "kit/dump/dump.h"
#include "kit/table/read_design.h"
#include "kit/util/progress.h"

namespace cubekit {

namespace {

struct Arguments {
  std::string design, truth_table, part, output;
  bool case_sensitive = false;
};

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

int run_dump(const Arguments &arguments) {
  TruthTable table;
  const TableSource source{table_path(arguments.design, arguments.truth_table), arguments.part, "",
                           arguments.case_sensitive};
  if (const int status = load_table(source, table, std::cerr); status != kYes) return status;
  if (arguments.output.empty()) return print_listing(*table.design, table.cubes);
  const auto list = [&] { return cubenet::dump_design(arguments.output, *table.design, table.cubes); };
  if (during("writing", list) == 0) return kYes;
  std::cerr << arguments.output << ": can't be written\n";
  return kMisuse;
}

} // namespace

std::function<int()> setup_dump(CLI::App &command) {
  auto arguments = std::make_shared<Arguments>();
  command.add_option("DESIGN", arguments->design, "the design's name, with its directory and without extension")
      ->required();
  command.add_option("-i,--tt2", arguments->truth_table, "the truth table, where it is not DESIGN.tt2");
  command.add_option("-p,--part", arguments->part, "the part to read the design for");
  command.add_flag("-C,--case", arguments->case_sensitive, "tell upper from lower case");
  command.add_option("-o,--output", arguments->output, "the file to write, instead of standard output");
  return [arguments] { return run_dump(*arguments); };
}

} // namespace cubekit
