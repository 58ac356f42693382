// The arguments that commands have in common.
#pragma once

#include <string>
#include <string_view>

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
// -i, -p and -C: how DESIGN.tt2 is read
void declare_table(CLI::App &command, DesignArguments &arguments);
// -o; the help says where the output goes without it.
void declare_output(CLI::App &command, DesignArguments &arguments, std::string_view otherwise = "standard output");

std::string table_path(const DesignArguments &arguments);

} // namespace cubekit
