// Mixes in eight bytes at a time, by a multiplication to 128 bits whose halves are joined; state and
// multiplier are both secret.
#include "util/text_hash.h"

#include <array>
#include <bit>
#include <cstring>

#include "util/system.h"

namespace cubenet {

namespace {

// Fixed if the system has no random bytes: the hash is as good, but predictable.
std::array<std::uint64_t, 2> make_seed() {
  std::array<std::uint64_t, 2> bytes = {0x9e3779b97f4a7c15U, 0xd6e8feb86659fd93U};
  static_cast<void>(fill_with_random_bytes(bytes.data(), sizeof bytes));
  bytes[1] |= 1U;
  return bytes;
}

std::uint64_t keep_case(std::uint64_t word) { return word; }

// Lower-cases the bytes 'A' to 'Z', all eight at once.
std::uint64_t fold_case(std::uint64_t word) {
  constexpr std::uint64_t kOnes = 0x0101010101010101U, kHigh = kOnes << 7;
  const std::uint64_t low_bits = word & ~kHigh;
  const std::uint64_t from_a = low_bits + (0x80 - 'A') * kOnes, past_z = low_bits + (0x7f - 'Z') * kOnes;
  return word | ((from_a ^ past_z) & ~word & kHigh) >> 2;
}

template <typename Word> Word load(const char *at) {
  Word word = 0;
  std::memcpy(&word, at, sizeof word);
  return word;
}

// The last bytes of the text, after whole words of eight, padded with zeros. A copy of a few bytes whose
// number isn't known at compile time takes longer than the rest of the hash.
std::uint64_t load_tail(std::string_view text) {
  const std::size_t size = text.size() % 8;
  const char *at = text.data() + text.size() - size;
  std::uint64_t word = 0;
  if (std::endian::native != std::endian::little) {
    if (size > 0) std::memcpy(&word, at, size);
  } else if (size >= 4) {
    word = load<std::uint32_t>(at) | std::uint64_t{load<std::uint32_t>(at + size - 4)} << 8 * (size - 4);
  } else if (size > 0) {
    const auto byte = [&](std::size_t i) { return std::uint64_t{load<std::uint8_t>(at + i)} << 8 * i; };
    word = byte(0) | byte(size / 2) | byte(size - 1);
  }
  return word;
}

const std::array<std::uint64_t, 2> seed = make_seed();

template <std::uint64_t fold(std::uint64_t)> std::uint64_t hash(std::string_view text) {
  std::uint64_t state = seed[0];
  const auto add = [&](std::uint64_t word) { state = join_product(state ^ word, seed[1]); };
  for (std::size_t at = 0; at + 8 <= text.size(); at += 8) add(fold(load<std::uint64_t>(text.data() + at)));
  add(fold(load_tail(text)));
  return join_product(state ^ seed[0] ^ text.size(), seed[1]);
}

} // namespace

std::uint64_t join_product_by_halves(std::uint64_t a, std::uint64_t b) {
  const std::uint64_t a_low = a & 0xffffffffU, a_high = a >> 32, b_low = b & 0xffffffffU, b_high = b >> 32;
  const std::uint64_t middle = a_high * b_low + (a_low * b_low >> 32), other = a_low * b_high + (middle & 0xffffffffU);
  return a * b ^ (a_high * b_high + (middle >> 32) + (other >> 32));
}

std::uint64_t hash_text(std::string_view text) { return hash<keep_case>(text); }

std::uint64_t hash_text_ignoring_case(std::string_view text) { return hash<fold_case>(text); }

} // namespace cubenet
