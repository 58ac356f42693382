// The hash of the indexes by name. Each process has a new seed, so nobody can construct names that all
// collide; no output may therefore depend on the order of such an index.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace cubenet {

std::uint64_t hash_text(std::string_view text);
std::uint64_t
hash_text_ignoring_case(std::string_view text); // equal for texts that differ in the case of ASCII letters

// The two halves of a 128-bit product, joined by exclusive or. The second form needs no 128-bit type.
std::uint64_t join_product_by_halves(std::uint64_t a, std::uint64_t b);
inline std::uint64_t join_product(std::uint64_t a, std::uint64_t b) {
#ifdef __SIZEOF_INT128__
  __extension__ typedef unsigned __int128 Wide;
  const Wide product = static_cast<Wide>(a) * b;
  return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
#else
  return join_product_by_halves(a, b);
#endif
}

extern const std::array<std::uint64_t, 2> hash_seed;

// hash_text for callers that scan the text anyway: words of eight bytes in memory order, then a last one of
// at most seven bytes, perhaps none, padded with zeros.
class TextHasher {
public:
  void add(std::uint64_t word) { state_ = join_product(state_ ^ word, hash_seed[1]); }
  std::uint64_t finish(std::size_t text_size) const {
    return join_product(state_ ^ hash_seed[0] ^ text_size, hash_seed[1]);
  }

private:
  std::uint64_t state_ = hash_seed[0];
};

// For the standard containers, which can then look up views among strings. Not noexcept, so that they store
// each entry's hash.
struct TextHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view text) const { return static_cast<std::size_t>(hash_text(text)); }
};

// `Text` is std::string, or std::string_view if the texts are stored elsewhere.
template <typename Text, typename Value> using TextMap = std::unordered_map<Text, Value, TextHash, std::equal_to<>>;
template <typename Text> using TextSet = std::unordered_set<Text, TextHash, std::equal_to<>>;

} // namespace cubenet
