// Attribute statements: the text after "#$ PROPERTY".
#pragma once

#include <string_view>

#include "reader/reader_state.h"

namespace cubenet {

// technology keyword ...  Technology "corvane" fills signal attributes, device-wide switches and parameters,
// "Mirn" the list of name and value pairs. A faulty statement is ignored with a warning.
void read_property(ReaderState &state, std::string_view text);

} // namespace cubenet
