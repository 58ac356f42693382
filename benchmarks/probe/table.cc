// Reading, 256 KiB and sixteen characters at a time, and the lists that both printers need.
#include "probe.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <numeric>

#include <emmintrin.h>
#include <unistd.h>

namespace probe {

namespace {

constexpr std::uint32_t kBad = 0xff;

constexpr std::array<std::uint8_t, 256> kInputCodes = [] {
  std::array<std::uint8_t, 256> codes{};
  codes.fill(kBad);
  codes['0'] = 1;
  codes['1'] = 2;
  codes['-'] = codes['2'] = 3;
  return codes;
}();

constexpr std::array<std::uint8_t, 256> kOutputCodes = [] {
  std::array<std::uint8_t, 256> codes{};
  codes.fill(kBad);
  codes['1'] = codes['4'] = 1;
  codes['0'] = codes['-'] = codes['2'] = codes['3'] = codes['~'] = 0;
  return codes;
}();

// Moves bit k to bit 2k.
constexpr std::array<std::uint32_t, 256> kSpread = [] {
  std::array<std::uint32_t, 256> spread{};
  for (std::uint32_t byte = 0; byte < 256; byte++)
    for (std::uint32_t bit = 0; bit < 8; bit++) spread[byte] |= (byte >> bit & 1U) << (2 * bit);
  return spread;
}();

std::uint32_t spread16(std::uint32_t bits) { return kSpread[bits & 255] | kSpread[bits >> 8] << 16; }

std::uint32_t gather(__m128i mask) { return static_cast<std::uint32_t>(_mm_movemask_epi8(mask)); }
__m128i match(__m128i text, char c) { return _mm_cmpeq_epi8(text, _mm_set1_epi8(c)); }
__m128i load(const char *text) { return _mm_loadu_si128(reinterpret_cast<const __m128i *>(text)); }

bool is_separator(char c) { return c == ' ' || c == '\t' || c == '|'; }

std::uint32_t *next_row(Table &table) {
  if (table.count == table.capacity) {
    table.capacity = table.capacity != 0 ? table.capacity + table.capacity / 2 : 1024;
    void *const rows = std::realloc(table.rows, table.capacity * table.words * sizeof *table.rows);
    if (rows == nullptr) die("no memory");
    table.rows = static_cast<std::uint32_t *>(rows);
  }
  std::uint32_t *const row = table.rows + table.count * table.words;
  std::memset(row, 0, table.words * sizeof *row);
  return row;
}

std::uint32_t next_code(const char *&at, const char *end, const std::array<std::uint8_t, 256> &codes) {
  while (at < end && is_separator(*at)) at++;
  if (at == end) die("short term");
  const std::uint32_t code = codes[static_cast<std::uint8_t>(*at++)];
  if (code == kBad) die("bad character");
  return code;
}

const char *read_inputs(const Table &table, const char *at, const char *end, std::uint32_t *row) {
  std::size_t k = 0;
  for (; k + 16 <= table.inputs && end - at >= 16; k += 16, at += 16) {
    const __m128i x = load(at);
    const std::uint32_t zero = gather(match(x, '0')), one = gather(match(x, '1'));
    const std::uint32_t any = gather(_mm_or_si128(match(x, '-'), match(x, '2')));
    if ((zero | one | any) != 0xffff) break;
    row[k / 16] = spread16(zero | any) | spread16(one | any) << 1;
  }
  for (; k < table.inputs; k++) row[k / 16] |= next_code(at, end, kInputCodes) << (2 * (k % 16));
  return at;
}

const char *read_outputs(const Table &table, const char *at, const char *end, std::uint32_t *row, bool &drives) {
  std::uint32_t seen = 0;
  std::size_t j = 0;
  while (at < end && is_separator(*at)) at++;
  for (; j + 16 <= table.outputs && end - at >= 16; j += 16, at += 16) {
    const __m128i x = load(at);
    const std::uint32_t on = gather(_mm_or_si128(match(x, '1'), match(x, '4')));
    if ((on | gather(match(x, '0'))) != 0xffff) break;
    row[table.output_word + j / 32] |= on << (j % 32);
    seen |= on;
  }
  for (; j < table.outputs; j++) {
    const std::uint32_t code = next_code(at, end, kOutputCodes);
    row[table.output_word + j / 32] |= code << (j % 32);
    seen |= code;
  }
  drives = seen != 0;
  return at;
}

void read_term(Table &table, const char *at, const char *end) {
  if (table.words == 0) die("a term before the sizes");
  std::uint32_t *const row = next_row(table);
  bool drives = false;
  at = read_inputs(table, at, end, row);
  at = read_outputs(table, at, end, row, drives);
  if (at != end) die("long term");
  if (drives) table.count++;
}

std::vector<std::string> split(std::string_view text) {
  std::vector<std::string> words;
  while (!text.empty()) {
    const std::string_view word = text.substr(0, text.find(' '));
    if (!word.empty()) words.emplace_back(word);
    text.remove_prefix(std::min(word.size() + 1, text.size()));
  }
  return words;
}

void read_header(Table &table, std::string_view line) {
  if (line.starts_with("#$ MODULE ")) table.design = line.substr(10);
  if (line.starts_with(".ilb ")) table.input_names = split(line.substr(5));
  if (line.starts_with(".ob ")) table.output_names = split(line.substr(4));
  if (line.starts_with(".i ")) table.inputs = std::stoul(std::string(line.substr(3)));
  if (line.starts_with(".o ")) table.outputs = std::stoul(std::string(line.substr(3)));
  if (table.inputs == 0 || table.outputs == 0) return;
  table.output_word = (table.inputs + 15) / 16;
  table.words = table.output_word + (table.outputs + 31) / 32;
}

// The offsets from the counts that stand one place further on.
void sum_up(Lists &lists) {
  std::partial_sum(lists.starts.begin(), lists.starts.end(), lists.starts.begin());
  lists.items.resize(lists.starts.back());
}

} // namespace

void read_table(int descriptor, Table &table) {
  std::vector<char> block(std::size_t{256} << 10);
  for (std::size_t held = 0;;) {
    const ssize_t got = read(descriptor, block.data() + held, block.size() - held);
    if (got < 0) die("can't read");
    if (got == 0) return;
    held += static_cast<std::size_t>(got);
    const char *at = block.data(), *const end = at + held;
    while (const auto *line_end =
               static_cast<const char *>(std::memchr(at, '\n', static_cast<std::size_t>(end - at)))) {
      const std::string_view line(at, static_cast<std::size_t>(line_end - at));
      if (line.starts_with(".e")) return;
      if (line.starts_with('.') || line.starts_with('#'))
        read_header(table, line);
      else if (!line.empty())
        read_term(table, at, line_end);
      at = line_end + 1;
    }
    held = static_cast<std::size_t>(end - at);
    std::memmove(block.data(), at, held);
    if (held == block.size()) block.resize(2 * block.size());
  }
}

Lists terms_by_output(const Table &table) {
  Lists lists;
  lists.starts.assign(table.outputs + 1, 0);
  for (std::size_t i = 0; i < table.count; i++)
    for_each_output(table, row_of(table, i), [&](std::uint32_t j) { lists.starts[j + 1]++; });
  sum_up(lists);
  std::vector<std::uint32_t> next(lists.starts.begin(), lists.starts.end() - 1);
  for (std::uint32_t i = 0; i < table.count; i++)
    for_each_output(table, row_of(table, i), [&](std::uint32_t j) { lists.items[next[j]++] = i; });
  return lists;
}

Lists literals_by_input(const Table &table) {
  Lists lists;
  lists.starts.assign(2 * table.inputs + 1, 0);
  for (std::size_t i = 0; i < table.count; i++)
    for_each_literal(table, row_of(table, i),
                     [&](std::uint32_t k, bool negated) { lists.starts[2 * k + negated + 1]++; });
  sum_up(lists);
  std::vector<std::uint32_t> next(lists.starts.begin(), lists.starts.end() - 1);
  for (std::uint32_t i = 0; i < table.count; i++) {
    std::uint32_t place = 0;
    for_each_literal(table, row_of(table, i),
                     [&](std::uint32_t k, bool negated) { lists.items[next[2 * k + negated]++] = i << 8 | place++; });
    if (place > 255) die("a term of more than 255 literals");
  }
  return lists;
}

std::vector<std::uint32_t> used_inputs(const Table &table, const std::uint32_t *terms, std::size_t count) {
  std::vector<std::uint32_t> united(table.output_word, 0), used;
  for (std::size_t i = 0; i < count; i++) {
    const std::uint32_t *row = row_of(table, terms[i]);
    for (std::size_t w = 0; w < united.size(); w++) united[w] |= row[w] ^ (row[w] >> 1);
  }
  for (std::uint32_t k = 0; k < table.inputs; k++)
    if ((united[k / 16] >> (2 * (k % 16)) & 1U) != 0) used.push_back(k);
  return used;
}

} // namespace probe
