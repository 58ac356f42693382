// Splitting a text at single spaces, in place: each space becomes a terminator.
#pragma once

#include <cstddef>
#include <vector>

namespace cubenet {

// Returns the next word: of `text`, where a new scan starts, or of the scan in progress when `text` is null. Null when
// the text is used up. Two spaces in a row have an empty word between them; a text has one word more than it has
// spaces. The position is process-wide: one scan at a time.
char *next_word(char *text);

// Replaces `words` by the words of `text` and returns their number.
std::size_t split_words(char *text, std::vector<char *> &words);

} // namespace cubenet
