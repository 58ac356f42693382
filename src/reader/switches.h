// Device-wide switches, parameters of the fitter, and voltages.
#pragma once

#include "reader/property_statement.h"
#include "reader/reader_state.h"

namespace cubenet {

// True if a HANDLE_EITHER keyword with this value is a switch.
bool is_switch_value(const KeywordRow &row, std::string_view value);

void read_switch(ReaderState &state, const PropertyStatement &statement);
void read_parameter(ReaderState &state, const PropertyStatement &statement);
void read_voltage(ReaderState &state, const PropertyStatement &statement);

} // namespace cubenet
