// Outputs whose failure is reported.
#pragma once

#include <string>

#include "util/output_file.h"

namespace cubenet {

// Opens an output for writing; on failure reports 31103 with `lead` before its text and returns false.
[[nodiscard]] bool open_reported(OutputFile &file, const std::string &path, const char *lead);
// Closes it; if the file could not be written whole, removes it, reports 31103 and returns false.
[[nodiscard]] bool close_reported(OutputFile &file, const char *lead);

} // namespace cubenet
