// Macros and their placements. Until the file is read, the lists have the oldest first.
#pragma once

#include <string_view>

#include "reader/reader_state.h"

namespace cubenet {

// macro count port'direction ...  Direction 'i' or 'o' in any case; other ports are dropped. Never fails.
void read_external(ReaderState &state, std::string_view text);

// instance macro count net[.pin_part] ...  One net per macro input, then one per output. False, without a
// message, if a word is missing, the macro was not declared before, or the count differs from its ports'.
[[nodiscard]] bool read_instance(ReaderState &state, std::string_view text);

// Reverses both lists, so that the newest is first.
void finish_macros(Design &design);

} // namespace cubenet
