// Attribute statements: comment lines of the form "#$ KEYWORD ...".
#pragma once

#include <string_view>

#include "reader/reader_state.h"

namespace cubenet {

// A comment line. It is a statement when the second character of its first word is '$'; any other is skipped, as is an
// unknown keyword.
void read_comment_line(ReaderState &state, std::string_view line);

} // namespace cubenet
