// The hash of the indexes by name. Each process has a new seed, so nobody can construct names that all
// collide; no output may therefore depend on the order of such an index.
#pragma once

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

// For the standard containers, which can then look up a view among strings. Not noexcept: they keep the hash of each
// entry for that.
struct TextHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view text) const { return static_cast<std::size_t>(hash_text(text)); }
};

// `Text` is std::string, or std::string_view if the texts are stored elsewhere.
template <typename Text, typename Value> using TextMap = std::unordered_map<Text, Value, TextHash, std::equal_to<>>;
template <typename Text> using TextSet = std::unordered_set<Text, TextHash, std::equal_to<>>;

} // namespace cubenet
