// `cubekit dump`: the debug listing of a design as the translator has it after the check. The translator's
// checker runs too: the listing shows what it found.
#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>

#include "debug/dump.h"
#include "kit/command/arguments.h"
#include "kit/command/command.h"
#include "kit/command/output.h"
#include "kit/dump/dump.h"

namespace cubekit {

namespace {

int run_dump(const DesignArguments &arguments) {
  TruthTable table;
  if (const int status = load_table(table_source(arguments), table, std::cerr); status != kYes) return status;
  return write_output(arguments.output, [&](cubenet::OutputFile &file) {
    const Stage stage("writing", 0, arguments.output.empty() ? Printing::YES : Printing::NO);
    put_listing(file, *table.design, table.cubes);
  });
}

} // namespace

std::function<int()> setup_dump(CLI::App &command) {
  auto arguments = std::make_shared<DesignArguments>();
  declare_design(command, *arguments);
  declare_table(command, *arguments);
  declare_part(command, *arguments);
  declare_output(command, *arguments);
  return [arguments] { return run_dump(*arguments); };
}

} // namespace cubekit
