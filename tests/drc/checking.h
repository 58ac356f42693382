// Small designs for the checker, and what it makes of them.
#pragma once

#include <memory>
#include <string>

#include "model/cube_table.h"
#include "model/design.h"

namespace cubenet {

struct Sketch {
  std::string pins, nodes, ilb, ob;
  std::string statements{}; // attributes without their head, a line each; "#..." is taken as it is
  std::string terms{};      // empty: one term with a literal of every input, driving every output
};

struct Checking {
  CubeTable cubes;
  std::unique_ptr<Design> design;
  int failed = -1;
  std::string messages; // of the checker, unwrapped, a line each, without the opening line

  explicit Checking(const Sketch &sketch); // the reader must accept it without a message
  void check();                            // once more, or after the design was changed by hand
};

// "where: FIELD=value ..." of the attributes on pins, nodes and list entries, then the switches, the records
// that are not dropped and the paths; items are separated by "; ".
std::string describe_stored(const Design &design);

} // namespace cubenet
