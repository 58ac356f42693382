// All output files are written here: text is collected in a block of 256 KiB, every write and the close are
// checked, and a file gets its name, replacing an existing one, only once it is whole. Formatting code
// appends to an OutputFile and knows nothing of the file system.
#pragma once

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "util/system.h"

namespace cubenet {

struct OutputFile {
  static constexpr std::size_t kBlock = std::size_t{256} << 10;

  std::string path;      // as asked for
  std::string target;    // the file itself, if `path` is a link
  std::string temporary; // becomes the target; empty: the file is written in place
  int descriptor = -1;
  bool failed = false;   // a write failed: later text is dropped
  char *block = nullptr; // owned
  std::size_t used = 0;
  std::size_t capacity = 0;   // kBlock, or larger when one piece asked for more
  OutputFile *next = nullptr; // the list of the open files

  OutputFile() = default;
  OutputFile(const OutputFile &) = delete;
  OutputFile &operator=(const OutputFile &) = delete;
  ~OutputFile(); // discards what was not closed
};

// The file is still needed: it can no longer be opened as an output, under any name. Devices and pipes are
// not protected.
void protect_from_output(const FileStatus &status);
void protect_from_output(const std::string &path);
[[nodiscard]] bool is_protected_from_output(const FileStatus &status);
void end_protection(); // of all files

// Opens `path` for writing from its start. False if it can't be opened or is protected; an existing file is
// kept.
[[nodiscard]] bool open_output(OutputFile &file, const std::string &path);
// Writes the remaining text, closes, and gives the file its name. False if anything failed since open_output:
// an existing file is then kept, but one that had to be written in place is removed.
[[nodiscard]] bool close_output(OutputFile &file);

void flush_output(OutputFile &file);

// Closes the file and leaves nothing of it.
void discard_output(OutputFile &file);
// The same for every open file, when a run can't go on.
void discard_open_outputs();

// Returns room for `bytes` characters; the caller fills it from the front and passes the end to commit().
char *grow_output(OutputFile &file, std::size_t bytes);
inline char *reserve(OutputFile &file, std::size_t bytes) {
  // Less, not less or equal, so that an empty first piece gets a block too.
  return file.used + bytes < file.capacity ? file.block + file.used : grow_output(file, bytes);
}
inline void commit(OutputFile &file, const char *end) { file.used = static_cast<std::size_t>(end - file.block); }

// The pieces of a text: append() copies one to `at` and returns its end; longest() is the room that it may
// take.
inline char *append(char *at, std::string_view text) { return at + text.copy(at, text.size()); }
inline std::size_t longest(std::string_view text) { return text.size(); }

inline char *append(char *at, char c) {
  *at = c;
  return at + 1;
}
inline std::size_t longest(char) { return 1; }

// A number in decimal.
struct Decimal {
  std::uint64_t value;
};
inline char *append(char *at, Decimal number) {
  return number.value < 10 ? append(at, static_cast<char>('0' + number.value))
                           : std::to_chars(at, at + 20, number.value).ptr;
}
inline std::size_t longest(Decimal) { return 20; }

// Puts several pieces in a row: put_all(file, "NET ", name, ".A", Decimal{3}, ...).
template <typename... Pieces> void put_all(OutputFile &file, const Pieces &...pieces) {
  char *at = reserve(file, (longest(pieces) + ...));
  ((at = append(at, pieces)), ...);
  commit(file, at);
}
inline void put(OutputFile &file, std::string_view text) { put_all(file, text); }
inline void put(OutputFile &file, char c) { put_all(file, c); }
inline void put_number(OutputFile &file, std::uint64_t value) { put_all(file, Decimal{value}); }

} // namespace cubenet
