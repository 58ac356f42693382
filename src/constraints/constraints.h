// The constraints file (.tvx) for the fitter.
#pragma once

#include <string>

#include "model/design.h"

namespace cubenet {

// Writes the file's sections; a section without members is left out. Always 0: faults of the file are not reported.
int write_constraints(const std::string &file_name, const Design &design);

} // namespace cubenet
