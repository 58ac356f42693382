// The hash of the indexes by name. It is seeded anew in every process, so that no list of names can be made up whose
// lookups all meet; nothing that is written may therefore depend on the order of such an index.
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

// For the standard containers, which can then look up a view among strings. Not noexcept: they keep the hash of each
// entry for that.
struct TextHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view text) const { return static_cast<std::size_t>(hash_text(text)); }
};

// `Text` is std::string, or std::string_view where the texts live elsewhere.
template <typename Text, typename Value> using TextMap = std::unordered_map<Text, Value, TextHash, std::equal_to<>>;
template <typename Text> using TextSet = std::unordered_set<Text, TextHash, std::equal_to<>>;

} // namespace cubenet
