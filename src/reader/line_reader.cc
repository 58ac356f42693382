// Reads lines in blocks. A line that spans blocks is moved to the front; one longer than the block makes the
// block grow, unless it contains a NUL byte: what follows that is dropped, so a file of zeros takes no
// memory.
#include "reader/line_reader.h"

#include <cstdlib>
#include <cstring>

#include "util/memory.h"

namespace cubenet {

namespace {

constexpr std::size_t kBlockSize = std::size_t{256} * 1024;

std::string_view trim_end(std::string_view text) {
  while (!text.empty() && (text.back() == ' ' || text.back() == '\r' || text.back() == '\t')) text.remove_suffix(1);
  return text;
}

void grow(LineReader &reader) {
  reader.capacity = reader.capacity == 0 ? kBlockSize : reader.capacity * 2;
  reader.block = static_cast<char *>(reallocate(reader.block, reader.capacity));
}

// Makes room after a line that fills the whole block. A line with a NUL byte is kept up to that byte; the
// block still grows if this frees less than half of it, so that bytes are searched a bounded number of times.
void make_room(LineReader &reader) {
  const void *nul = reader.end > 0 ? std::memchr(reader.block, 0, reader.end) : nullptr;
  if (nul != nullptr) reader.end = static_cast<std::size_t>(static_cast<const char *>(nul) - reader.block) + 1;
  if (reader.end > reader.capacity / 2 || reader.capacity == 0) grow(reader);
}

// Moves the remaining bytes to the front of the block and reads on after them; returns their number.
std::size_t refill(LineReader &reader) {
  if (reader.begin > 0) std::memmove(reader.block, reader.block + reader.begin, reader.end - reader.begin);
  reader.end -= reader.begin;
  reader.begin = 0;
  if (reader.end == reader.capacity) make_room(reader);
  const std::size_t left = reader.end;
  reader.end += std::fread(reader.block + left, 1, reader.capacity - left, reader.file);
  reader.is_at_end = reader.end < reader.capacity;
  reader.failed = std::ferror(reader.file) != 0;
  return left;
}

// Returns the next `length` bytes as a line; `skipped` more are its line end.
std::string_view take_line(LineReader &reader, std::size_t length, std::size_t skipped) {
  const std::string_view line(reader.block + reader.begin, length);
  reader.begin += length + skipped;
  return trim_end(line);
}

} // namespace

LineReader::~LineReader() { std::free(block); }

bool read_line(LineReader &reader, std::string_view &line) {
  std::size_t searched = 0; // bytes of the line known to contain no line end
  for (;;) {
    const std::size_t have = reader.end - reader.begin;
    const char *start = reader.block + reader.begin;
    const void *found = have > searched ? std::memchr(start + searched, '\n', have - searched) : nullptr;
    if (found != nullptr) {
      line = take_line(reader, static_cast<std::size_t>(static_cast<const char *>(found) - start), 1);
      return true;
    }
    if (reader.is_at_end) {
      line = take_line(reader, have, 0);
      return have > 0;
    }
    searched = refill(reader);
  }
}

std::string_view cut_line(std::string_view line) { return trim_end(line.substr(0, line.find('\0'))); }

} // namespace cubenet
