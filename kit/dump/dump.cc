// `cubekit dump`: the debug listing of a design as the translator holds it once the design is checked. The
// translator's checker works too: the listing shows what it found.
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

int run_dump(const Arguments &arguments) {
  TruthTable table;
  const TableSource source{table_path(arguments.design, arguments.truth_table), arguments.part, "",
                           arguments.case_sensitive};
  if (const int status = load_table(source, table, std::cerr); status != kYes) return status;
  return write_output(arguments.output, [&](cubenet::OutputFile &file) {
    const Stage stage("writing", 0, arguments.output.empty() ? Printing::YES : Printing::NO);
    put_listing(file, *table.design, table.cubes);
  });
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
