// Files under names of their own, for what is to take another file's place once it is whole.
#pragma once

#include <string>

#include "util/system.h"

namespace cubenet {

// The name of the file itself where `path` names a link, which need not lead to a file. Empty when it leads to no name.
[[nodiscard]] std::string follow_links(const std::string &path);

// Makes a file that is to become `path`, beside it and, when there is a `former` one, with its owner (where the system
// allows it), group and permissions. `name` is its last component and becomes its whole name. The descriptor; -1 when
// that can't be done. Until the file is kept or dropped, `name` is not touched, and whatever ends the process takes the
// file away: on Windows anything, elsewhere the signals that start_process() names.
[[nodiscard]] int make_temporary(const std::string &path, const FileStatus *former, std::string &name);

// Closes the file and puts it in place of `path`, in one step for whoever looks. Where a file that may be written can't
// be replaced, its contents are. False when neither can be done, or something written is lost after all; the file is
// dropped then.
[[nodiscard]] bool keep_temporary(int descriptor, const std::string &name, const std::string &path);
void drop_temporary(int descriptor, const std::string &name);

// For the handlers of signals, on POSIX systems: removes the files that are neither kept nor dropped yet.
void remove_temporaries();

} // namespace cubenet
