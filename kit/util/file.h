// Reads whole files.
#pragma once

#include <string>

#include "kit/util/finding.h"

namespace cubekit {

// Appends everything from the descriptor up to its end. False when reading fails; errno says why.
[[nodiscard]] bool read_all(int descriptor, std::string &text);

// The whole file, or everything from a pipe; from then on no output may replace it. False when it can't be
// read, with the reason in `error`.
[[nodiscard]] bool read_file(const std::string &path, std::string &text, Finding &error);

// The same for a temporary file of ours, which is not protected: once it is removed, an output may get its
// inode.
[[nodiscard]] bool read_temporary(const std::string &path, std::string &text, Finding &error);

} // namespace cubekit
