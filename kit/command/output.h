// Where the commands leave what they make.
#pragma once

#include <functional>
#include <iosfwd>
#include <string>

namespace cubekit {

// Lets `write` write to the file, or to standard output when the path is empty. Returns kYes, or kMisuse with the
// reason on standard error when not all of it could be written; what was written of a file is then removed.
[[nodiscard]] int write_output(const std::string &path, const std::function<void(std::ostream &)> &write);

} // namespace cubekit
