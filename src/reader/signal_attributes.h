// Attributes of one signal.
#pragma once

#include "reader/property_statement.h"
#include "reader/reader_state.h"

namespace cubenet {

// Takes the next attribute record, even for a dropped statement, whose record stays empty.
void read_signal_attribute(ReaderState &state, const PropertyStatement &statement);

} // namespace cubenet
