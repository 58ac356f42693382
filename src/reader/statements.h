// Attribute statements: comment lines of the form "#$ KEYWORD ...".
#pragma once

#include <string_view>

#include "reader/reader_state.h"

namespace cubenet {

// A comment line. It is a statement if the second character of its first word is '$'; others are skipped, as
// are unknown keywords.
void read_comment_line(ReaderState &state, std::string_view line);

} // namespace cubenet
