// The four lists that name a design's signals. Each function takes the text after its keyword, reports every
// bad item, stores the good ones without gaps, and flags an error in the state if any was bad; the count
// remains that of all items.
#pragma once

#include <string_view>

#include "reader/reader_state.h"

namespace cubenet {

// [count] name[+|-][:package_pin] ...  A '-' inverts the pin; a package pin becomes an attribute, code 51.
void read_pin_list(ReaderState &state, std::string_view text);

// [count] name[:package_pin] ...  A package pin is ignored with a warning.
void read_node_list(ReaderState &state, std::string_view text);

// name[.extension][+|-] ...  Ignored without a message before ".i".
void read_input_list(ReaderState &state, std::string_view text);

// The same for the outputs; a '-' inverts the output.
void read_output_list(ReaderState &state, std::string_view text);

} // namespace cubenet
