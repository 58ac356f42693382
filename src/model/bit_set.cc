// Construction of bit sets; testing and changing bits is inline.
#include "model/bit_set.h"

namespace cubenet {

BitSet make_empty_set(std::size_t bits) {
  BitSet set;
  set.words.assign(bit_set_words(bits), 0);
  set.words[0] = static_cast<std::uint32_t>(set.words.size() - 1) & 0x3ffU;
  return set;
}

BitSet make_full_set(std::size_t bits) {
  BitSet set = make_empty_set(bits);
  for (std::size_t word = 1; word < set.words.size(); word++) set.words[word] = ~0U;
  if (bits == 0) set.words.back() = 0;
  if (bits % 32 != 0) set.words.back() >>= 32 - bits % 32;
  return set;
}

} // namespace cubenet
