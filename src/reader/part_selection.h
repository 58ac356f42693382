// Which device family and which part a design is for.
#pragma once

#include <string>

#include "model/design.h"

namespace cubenet {

// What the design file and the command line say of it.
struct PartRequest {
  std::string device;                // DEVICE statement; empty: none
  std::string part;                  // PART attribute or command line
  bool has_part = false;             // a part was given, were it the empty text
  bool is_from_command_line = false; // and it came from there
};

// Fills `family` and `part` of the header. False after error 31361: the part was not recognized.
[[nodiscard]] bool select_part(const PartRequest &request, DesignHeader &header);

} // namespace cubenet
