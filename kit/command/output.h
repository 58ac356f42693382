// Where the commands write their results.
#pragma once

#include <functional>
#include <iosfwd>
#include <string>

namespace cubenet {
struct OutputFile;
}

namespace cubekit {

// Runs `write` on the file, or on standard output when the path is empty. Returns kYes, or kMisuse with the
// reason on standard error when the command still needs the file or not all of it could be written; the old
// file then stays.
[[nodiscard]] int write_output(const std::string &path, const std::function<void(cubenet::OutputFile &)> &write);
[[nodiscard]] int write_output(const std::string &path, const std::function<void(std::ostream &)> &write);

} // namespace cubekit
