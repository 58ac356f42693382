// Outputs whose failing is reported.
#pragma once

#include <string>

#include "util/output_file.h"

namespace cubenet {

// Opens an output for writing; reports 31103 with `lead` before its text and gives false when that fails.
[[nodiscard]] bool open_reported(OutputFile &file, const std::string &path, const char *lead);
// Closes it; reports 31103 and gives false when the file could not be written whole (it is removed).
[[nodiscard]] bool close_reported(OutputFile &file, const char *lead);

} // namespace cubenet
