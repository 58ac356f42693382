// The readers of single lines: attribute statements ("#$ KEYWORD ...") and header lines (".keyword ...").
#pragma once

#include <string_view>

#include "reader/reader_state.h"

namespace cubenet {

// A comment line. It is a statement when the second character of its first word is '$'; any other is skipped, as is an
// unknown keyword.
void read_comment_line(ReaderState &state, std::string_view line);

// A line that begins with '.'. Unknown keywords are skipped.
void read_header_line(ReaderState &state, std::string_view line);

} // namespace cubenet
