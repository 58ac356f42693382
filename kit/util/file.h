// Files read whole.
#pragma once

#include <string>

#include "kit/util/finding.h"

namespace cubekit {

// Adds all that the descriptor gives, to its end. False when reading fails; errno tells why.
[[nodiscard]] bool read_all(int descriptor, std::string &text);

// The whole file, or all that comes out of a pipe; no output takes its place from then on. False when it can't be read,
// with the reason in `error`.
[[nodiscard]] bool read_file(const std::string &path, std::string &text, Finding &error);

// The same of a temporary file of ours. Once it is removed, an output may be made in its place on the disk.
[[nodiscard]] bool read_temporary(const std::string &path, std::string &text, Finding &error);

} // namespace cubekit
