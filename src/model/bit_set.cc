// Construction of bit sets; bits are tested and changed inline.
#include "model/bit_set.h"

namespace cubenet {

BitSet make_empty_set(std::size_t bits) {
  BitSet set;
  set.words.assign(bit_set_words(bits), 0);
  set.words[0] = static_cast<std::uint32_t>(set.words.size() - 1) & 0x3ffU;
  return set;
}

} // namespace cubenet
