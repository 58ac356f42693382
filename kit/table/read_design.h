// The truth table of a design, read by the translator's own reader, and judged by its checker.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "model/cube_table.h"
#include "model/design.h"

namespace cubekit {

// Has tables read from then on for that part, whatever they name; an empty name changes nothing.
void choose_part(const std::string &part);

// Whether a table may name that part.
[[nodiscard]] bool is_part(const std::string &name);

// Reads a truth table. nullptr when that fails. `messages` becomes what the reader had to say.
std::unique_ptr<cubenet::Design> read_design(const std::string &path, bool case_sensitive, cubenet::CubeTable &cubes,
                                             std::string &messages);

// The same of a text in memory that is called `name`.
std::unique_ptr<cubenet::Design> read_design_text(std::string_view text, const std::string &name, bool case_sensitive,
                                                  cubenet::CubeTable &cubes, std::string &messages);

// Whether the design breaks no rule. What the checker has to say is added to `messages`.
[[nodiscard]] bool check_design(cubenet::Design &design, const cubenet::CubeTable &cubes, std::string &messages);

} // namespace cubekit
