// The truth table of a design, read by the translator's own reader, checked by its checker and written by its
// writers.
#pragma once

#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "model/cube_table.h"
#include "model/design.h"

namespace cubekit {

// Reads a truth table. nullptr when that fails. `messages` becomes what the reader printed.
std::unique_ptr<cubenet::Design> read_design(const std::string &path, bool case_sensitive, cubenet::CubeTable &cubes,
                                             std::string &messages);

// The same for a text in memory that is called `name`.
std::unique_ptr<cubenet::Design> read_design_text(std::string_view text, const std::string &name, bool case_sensitive,
                                                  cubenet::CubeTable &cubes, std::string &messages);

// A table of one pin with these statements, for the part of a command line (empty: none). nullptr: they can't
// be read.
std::unique_ptr<cubenet::Design> read_statements(const std::string &statements, const std::string &part);

// Whether a table may name that part.
[[nodiscard]] bool is_part(const std::string &name);

// Whether the design breaks no rule. The checker's messages are added to `messages`.
[[nodiscard]] bool check_design(cubenet::Design &design, const cubenet::CubeTable &cubes, std::string &messages);

// Where a truth table is, and how it was translated.
struct TableSource {
  std::string path;
  std::string part{};         // empty: the one of the netlist or, without one, of the table
  std::string netlist_part{}; // empty: there is no netlist
  bool case_sensitive = false;
};

struct TruthTable {
  cubenet::CubeTable cubes;
  std::unique_ptr<cubenet::Design> design; // nullptr: can't be read
  std::string messages;
};

// Reads a table for its part. False when reading fails.
[[nodiscard]] bool read_table(const TableSource &source, TruthTable &table);

// The same, and checks the design. Returns kYes, or with the messages on `errors` kMisuse for a table that
// can't be read and kNo for a design that breaks a rule.
[[nodiscard]] int load_table(const TableSource &source, TruthTable &table, std::ostream &errors);

// The pins that a table declares, in its order.
struct DeclaredPin {
  std::string name;
  bool is_used; // a netlist of the table has it
};

// Returns kYes, or as load_table.
[[nodiscard]] int load_pins(const TableSource &source, std::vector<DeclaredPin> &pins, std::ostream &errors);

// Writes STEM.ddf, .tvx, .nxf and, if there are parameters, .par of a checked design, by the run settings.
// False when a file can't be written; the table's `messages` has the reason.
[[nodiscard]] bool write_translation(TruthTable &table, const std::string &stem, const std::string &response);

} // namespace cubekit
