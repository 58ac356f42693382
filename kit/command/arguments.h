// The arguments that commands have in common.
#pragma once

#include <string>
#include <string_view>

#include "kit/table/read_design.h"

namespace CLI {
class App;
}

namespace cubekit {

struct DesignArguments {
  std::string design; // its name, with its directory and without extension
  std::string truth_table, part;
  bool case_sensitive = false;
  std::string output; // empty: none is named
};

// DESIGN
void declare_design(CLI::App &command, DesignArguments &arguments);
// -i; `use` ends the help.
void declare_truth_table(CLI::App &command, DesignArguments &arguments, std::string_view use = "");
// -i and -C: how the table is read
void declare_table(CLI::App &command, DesignArguments &arguments);
// -p
void declare_part(CLI::App &command, DesignArguments &arguments);
// -o; the help says where the output goes without it.
void declare_output(CLI::App &command, DesignArguments &arguments, std::string_view otherwise = "standard output");

// The truth table that these arguments name.
TableSource table_source(const DesignArguments &arguments, std::string_view netlist_part = {});

} // namespace cubekit
