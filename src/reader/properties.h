// Attribute statements: what stands behind "#$ PROPERTY".
#pragma once

#include <string_view>

#include "reader/reader_state.h"

namespace cubenet {

// technology keyword ...  Technology "corvane" fills attributes of signals, device-wide switches and parameters, "Mirn"
// the list of name and value pairs. Every fault is a warning that drops the statement.
void read_property(ReaderState &state, std::string_view text);

} // namespace cubenet
