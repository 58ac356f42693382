// Header lines: ".keyword ...".
#pragma once

#include <string_view>

#include "reader/reader_state.h"

namespace cubenet {

// A line that begins with '.'. Unknown keywords are skipped.
void read_header_line(ReaderState &state, std::string_view line);

} // namespace cubenet
