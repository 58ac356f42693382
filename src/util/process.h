// Process start-up on POSIX systems.
#pragma once

namespace cubenet {

// Called first by a program. Makes writes fail instead of ending the process (SIGPIPE, SIGXFSZ), opens closed
// standard streams on the null device, and makes SIGHUP, SIGINT and SIGTERM, unless ignored, remove temporary
// files. False if a stream can't be opened.
[[nodiscard]] bool start_process();

} // namespace cubenet
