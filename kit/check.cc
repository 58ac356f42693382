// `cubekit check`: judges the files of one design.
#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>

#include "kit/command.h"
#include "kit/nxf_parser.h"

namespace cubekit {

std::function<int()> setup_check(CLI::App &command) {
  auto design = std::make_shared<std::string>();
  command.add_option("DESIGN", *design, "the design's name, with its directory and without extension")->required();
  return [design] {
    Netlist netlist;
    return load_nxf(*design + ".nxf", netlist, std::cerr) ? kYes : kMisuse;
  };
}

} // namespace cubekit
