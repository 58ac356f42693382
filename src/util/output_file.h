// The one way in which output files are written: text gathers in a block of 256 KiB, every write and the close are
// checked, and a file gets its name, and takes the place of the one that had it, only once it is whole. Formatting code
// appends to an OutputFile and knows no file.
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
  std::string target;    // the file itself, where that is a link
  std::string temporary; // what becomes the target; empty: the file is written in place
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

// From then on the file is never opened as an output, by whatever name: it is still needed. Devices and pipes are not
// protected.
void protect_from_output(const FileStatus &status);
void protect_from_output(const std::string &path);
[[nodiscard]] bool is_protected_from_output(const FileStatus &status);
void end_protection(); // of all files

// Opens `path` for writing from its start. False when it can't be opened or is protected; a file that is there stays.
[[nodiscard]] bool open_output(OutputFile &file, const std::string &path);
// Writes what is left, closes, and gives the file its name. False when anything since open_output could not be done: a
// file that was there stays then, but one that had to be written in place is removed.
[[nodiscard]] bool close_output(OutputFile &file);

void flush_output(OutputFile &file);

// Closes the file and leaves no part of it.
void discard_output(OutputFile &file);
// The same for every file that is open: the end of a run that can't go on.
void discard_open_outputs();

// Returns room for `bytes` characters; the caller fills it from the front and hands the end to commit().
char *grow_output(OutputFile &file, std::size_t bytes);
inline char *reserve(OutputFile &file, std::size_t bytes) {
  // Less, not less or equal: an empty piece as the first one gets a block too.
  return file.used + bytes < file.capacity ? file.block + file.used : grow_output(file, bytes);
}
inline void commit(OutputFile &file, const char *end) { file.used = static_cast<std::size_t>(end - file.block); }

// The pieces of a text: append() copies one to `at` and returns its end, longest() tells how much room it may take.
inline char *append(char *at, std::string_view text) {
  return at + text.copy(at, text.size());
}
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
