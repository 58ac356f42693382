// The constraints file (.tvx) for the fitter.
#pragma once

#include <string>

#include "model/design.h"

namespace cubenet {

// Prints the name of each section to the console before it is written; off in every run.
extern bool show_constraints_progress;

// Writes the file's sections, omitting those without members. Always 0: faults of the file are not reported.
int write_constraints(const std::string &file_name, const Design &design);

} // namespace cubenet
