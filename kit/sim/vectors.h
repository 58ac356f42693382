// Files of input vectors:
//
//   # comments run to the end of the line
//   clk reset d           the columns: input and bidirectional pins, in any order
//   0   1     0           a row per step: a value per column, with or without blanks between them
//   110
//
// Values are 0, 1, x (unknown) and - (not driven: a bidirectional pin floats unless the device drives it, an
// input is unknown). Input pins without a column are not driven. Empty lines are skipped.
#pragma once

#include <istream>
#include <string>
#include <vector>

#include "kit/netlist/netlist.h"
#include "kit/sim/sim.h"

namespace cubekit {

struct VectorReader {
  const Netlist &netlist;
  std::istream &stream;
  std::size_t line = 0;
  std::vector<std::uint32_t> columns{}; // external pins
  std::vector<Value> row{};             // per external pin: the values of the last row read
  Finding error{};                      // its text is empty while there is none
};

// Reads the line of columns. False with an error.
[[nodiscard]] bool read_columns(VectorReader &reader);
// Reads the next row. False at the end of the file, and with an error.
[[nodiscard]] bool read_row(VectorReader &reader);

} // namespace cubekit
