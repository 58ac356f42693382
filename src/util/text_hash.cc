// Eight bytes at a time are mixed in by a multiplication to 128 bits whose halves are joined; state and multiplier are
// both secret.
#include "util/text_hash.h"

#include <array>
#include <cstring>

#include "util/system.h"

namespace cubenet {

namespace {

// Fixed where the system has no random bytes to give: the hash is as good then, only known.
std::array<std::uint64_t, 2> make_seed() {
  std::array<std::uint64_t, 2> bytes = {0x9e3779b97f4a7c15U, 0xd6e8feb86659fd93U};
  static_cast<void>(fill_with_random_bytes(bytes.data(), sizeof bytes));
  bytes[1] |= 1U;
  return bytes;
}

const std::array<std::uint64_t, 2> seed = make_seed();

#ifdef __SIZEOF_INT128__
std::uint64_t join_product(std::uint64_t a, std::uint64_t b) {
  __extension__ typedef unsigned __int128 Wide;
  const Wide product = static_cast<Wide>(a) * b;
  return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}
#else
// The same from four products of halves, for machines of 32 bits.
std::uint64_t join_product(std::uint64_t a, std::uint64_t b) {
  const std::uint64_t a_low = a & 0xffffffffU, a_high = a >> 32, b_low = b & 0xffffffffU, b_high = b >> 32;
  const std::uint64_t middle = a_high * b_low + (a_low * b_low >> 32), other = a_low * b_high + (middle & 0xffffffffU);
  return a * b ^ (a_high * b_high + (middle >> 32) + (other >> 32));
}
#endif

std::uint64_t mix(std::uint64_t state, std::uint64_t word) { return join_product(state ^ word, seed[1]); }

std::uint64_t keep_case(std::uint64_t word) { return word; }

// Turns the bytes 'A' to 'Z' into lower case, all eight at once.
std::uint64_t fold_case(std::uint64_t word) {
  constexpr std::uint64_t kOnes = 0x0101010101010101U, kHigh = kOnes << 7;
  const std::uint64_t low_bits = word & ~kHigh;
  const std::uint64_t from_a = low_bits + (0x80 - 'A') * kOnes, past_z = low_bits + (0x7f - 'Z') * kOnes;
  return word | ((from_a ^ past_z) & ~word & kHigh) >> 2;
}

template <std::uint64_t fold(std::uint64_t)> std::uint64_t hash(std::string_view text) {
  std::uint64_t state = mix(seed[0], text.size());
  std::uint64_t word = 0;
  for (; text.size() >= sizeof word; text.remove_prefix(sizeof word)) {
    std::memcpy(&word, text.data(), sizeof word);
    state = mix(state, fold(word));
  }
  word = 0;
  if (!text.empty()) std::memcpy(&word, text.data(), text.size());
  return mix(mix(state, fold(word)), seed[0]);
}

} // namespace

std::uint64_t hash_text(std::string_view text) { return hash<keep_case>(text); }

std::uint64_t hash_text_ignoring_case(std::string_view text) { return hash<fold_case>(text); }

} // namespace cubenet
