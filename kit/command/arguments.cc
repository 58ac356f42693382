#include "kit/command/arguments.h"

#include <CLI/CLI.hpp>

namespace cubekit {

void declare_design(CLI::App &command, DesignArguments &arguments) {
  command.add_option("DESIGN", arguments.design, "the design's name, with its directory and without extension")
      ->required();
}

void declare_truth_table(CLI::App &command, DesignArguments &arguments, std::string_view use) {
  command.add_option("-i,--tt2", arguments.truth_table,
                     "the truth table, where it is not DESIGN.tt2" + std::string(use));
}

void declare_table(CLI::App &command, DesignArguments &arguments) {
  declare_truth_table(command, arguments);
  command.add_flag("-C,--case", arguments.case_sensitive, "tell upper from lower case, as the translation did");
}

void declare_part(CLI::App &command, DesignArguments &arguments) {
  command.add_option("-p,--part", arguments.part, "the part of the translation, where the files name another or none");
}

void declare_output(CLI::App &command, DesignArguments &arguments, std::string_view otherwise) {
  command.add_option("-o,--output", arguments.output, "the file to write, instead of " + std::string(otherwise));
}

TableSource table_source(const DesignArguments &arguments, std::string_view netlist_part) {
  return {arguments.truth_table.empty() ? arguments.design + ".tt2" : arguments.truth_table, arguments.part,
          std::string(netlist_part), arguments.case_sensitive};
}

} // namespace cubekit
