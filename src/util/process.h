// The process on POSIX systems.
#pragma once

namespace cubenet {

// What a program does first. Writes that can't go on fail instead of ending the process (SIGPIPE, SIGXFSZ), standard
// streams that came closed are opened on nothing, and SIGHUP, SIGINT and SIGTERM, unless they are ignored, take
// temporary files with them. False when there is no sound stream to be had.
[[nodiscard]] bool start_process();

} // namespace cubenet
