// The tokenizer, and the word splitter on top of it.
#include "util/words.h"

#include <cstring>

namespace cubenet {
namespace {

char *scan = nullptr; // start of the next token; null at the end of the text

} // namespace

char *next_word(char *text) {
  if (text != nullptr) scan = text;
  char *const token = scan;
  if (token == nullptr) return nullptr;
  char *const space = std::strchr(token, ' ');
  if (space != nullptr) *space = '\0';
  scan = space != nullptr ? space + 1 : nullptr;
  return token;
}

std::size_t split_words(char *text, std::vector<char *> &words) {
  constexpr std::size_t kFirstRoom = 10; // doubles when full
  words.clear();
  words.reserve(kFirstRoom);
  for (char *word = next_word(text); word != nullptr; word = next_word(nullptr)) words.push_back(word);
  return words.size();
}

} // namespace cubenet
