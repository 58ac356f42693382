// The truth table of a design, read by the translator's own reader.
#pragma once

#include <memory>
#include <string>

#include "model/cube_table.h"
#include "model/design.h"

namespace cubekit {

// Reads a truth table. nullptr when that fails; `messages` then holds what the reader had to say.
std::unique_ptr<cubenet::Design> read_design(const std::string &path, bool case_sensitive, cubenet::CubeTable &cubes,
                                             std::string &messages);

} // namespace cubekit
