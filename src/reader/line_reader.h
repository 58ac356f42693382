// The lines of a file, read in large blocks; only the block and the line that it ends in are held in memory.
#pragma once

#include <cstddef>
#include <cstdio>
#include <string_view>

namespace cubenet {

struct LineReader {
  explicit LineReader(std::FILE *source) : file(source) {}
  LineReader(const LineReader &) = delete;
  LineReader &operator=(const LineReader &) = delete;
  ~LineReader();

  std::FILE *file;          // not owned
  char *block = nullptr;    // owned
  std::size_t capacity = 0; // of the block
  std::size_t begin = 0;    // bytes read but not yet returned
  std::size_t end = 0;
  bool is_at_end = false;
  bool failed = false; // the last read failed, instead of reaching the end of the file
};

// The next line, without its line end and without spaces, tabs and carriage returns before that; valid until
// the next call. A NUL byte in the line is left to cut_line. False at the end of the file.
[[nodiscard]] bool read_line(LineReader &reader, std::string_view &line);

// A NUL byte ends its line: it is cut off with what follows and with the blanks before it.
std::string_view cut_line(std::string_view line);

} // namespace cubenet
