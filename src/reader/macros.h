// Macros and their placements. Until the file is read the lists hold the oldest first.
#pragma once

#include <string_view>

#include "reader/reader_state.h"

namespace cubenet {

// macro count port'direction ...  Direction 'i' or 'o' (in any case); a port with another one is dropped. Never fails.
void read_external(ReaderState &state, std::string_view text);

// instance macro count net[.pin_part] ...  One net per macro input, then one per output. False, without a message, when
// a word is missing, the macro was not declared before, or the count is not that of its ports.
[[nodiscard]] bool read_instance(ReaderState &state, std::string_view text);

// Turns both lists to the newest first.
void finish_macros(Design &design);

} // namespace cubenet
