// Temporary files that replace another file once they are whole.
#pragma once

#include <string>

#include "util/system.h"

namespace cubenet {

// The name of the file itself if `path` is a link, even to a file that doesn't exist. Empty if it can't be
// resolved.
[[nodiscard]] std::string follow_links(const std::string &path);

// Makes a file that is to become `path`, in the same folder and, if there is a `former` one, with its owner
// (where the system allows it), group and permissions. `name` is its last component and becomes its full
// name. Returns the descriptor, or -1 on failure. Until the file is kept or dropped, `name` must not change,
// and the file is removed when the process ends: on Windows in any way, elsewhere by the signals listed at
// start_process().
[[nodiscard]] int make_temporary(const std::string &path, const FileStatus *former, std::string &name);

// Closes the file and replaces `path` by it, atomically. If a writable file can't be replaced, its contents
// are. False if neither succeeds or written data was lost; the file is then dropped.
[[nodiscard]] bool keep_temporary(int descriptor, const std::string &name, const std::string &path);
void drop_temporary(int descriptor, const std::string &name);

// For signal handlers on POSIX systems: removes the files that are neither kept nor dropped yet.
void remove_temporaries();

} // namespace cubenet
