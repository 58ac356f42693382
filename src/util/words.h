// Splitting a text at single spaces, in place: each space becomes a terminator.
#pragma once

#include <cstddef>
#include <vector>

namespace cubenet {

// Returns the first word of `text`, starting a new scan, or the next word of the current scan if `text` is
// null. Null at the end of the text. Two adjacent spaces have an empty word between them: a text has one word
// more than it has spaces. The position is process-wide: only one scan at a time.
char *next_word(char *text);

// Replaces `words` by the words of `text` and returns their number.
std::size_t split_words(char *text, std::vector<char *> &words);

} // namespace cubenet
