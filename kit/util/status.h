// The exit statuses of all commands. For a status above kNo, the reason is on standard error.
#pragma once

namespace cubekit {

constexpr int kYes = 0;    // done, proved, in order
constexpr int kNo = 1;     // the answer is no
constexpr int kMisuse = 2; // wrong arguments, or a file that can't be read or written

} // namespace cubekit
