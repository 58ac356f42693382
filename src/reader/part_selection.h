// Selection of a design's device family and part.
#pragma once

#include <string>

#include "model/design.h"

namespace cubenet {

// The requests of the design file and the command line.
struct PartRequest {
  std::string device;                // DEVICE statement; empty: none
  std::string part;                  // PART attribute or command line
  bool has_part = false;             // a part was given, even an empty one
  bool is_from_command_line = false; // and it came from the command line
};

// Fills `family` and `part` of the header. False after error 31361: the part was not recognized.
[[nodiscard]] bool select_part(const PartRequest &request, DesignHeader &header);

} // namespace cubenet
