// What the program asks of the operating system beyond the standard library. Each system has an implementation of its
// own, chosen by the build. Files are bytes on all of them: no line end is ever translated, and no byte ends a file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

namespace cubenet {

// Tells files apart by whatever names they are reached.
struct FileIdentity {
  std::uint64_t device = 0, number = 0;
};
inline bool operator==(const FileIdentity &a, const FileIdentity &b) {
  return a.device == b.device && a.number == b.number;
}

struct FileStatus {
  bool is_regular = false; // not a directory, device or pipe
  bool is_directory = false;
  FileIdentity identity;
  std::uint64_t size = 0;                       // bytes
  std::uint64_t changed = 0;                    // when the contents last did, in the system's own units
  std::uint32_t owner = 0, group = 0, mode = 0; // where the system has them
};

enum class OpenFor {
  REPLACING,   // nothing is made; what is in it stays until it is overwritten or cut off
  OVERWRITING, // the same, but made when there is none
  APPENDING,   // made when there is none; each write goes to the end in one piece, whoever else appends
  EMPTYING,    // emptied, then as APPENDING
};

// Opens a file for writing. The descriptor; -1 when that fails.
[[nodiscard]] int open_file(const std::string &path, OpenFor use);
[[nodiscard]] bool file_status(int descriptor, FileStatus &status);
// The same by name, links followed. False when there is none.
[[nodiscard]] bool find_file(const std::string &path, FileStatus &status);
// False when not all of it could be written.
[[nodiscard]] bool write_all(int descriptor, const char *text, std::size_t length);
// Takes away what stands behind the first `size` bytes.
[[nodiscard]] bool cut_file(int descriptor, std::uint64_t size);
// False when something written before is lost after all.
[[nodiscard]] bool close_file(int descriptor);
// Takes the name away; the file goes with its last descriptor.
void remove_file(const std::string &path);

int descriptor_of(std::FILE *stream);
[[nodiscard]] bool is_terminal(int descriptor);

// False when the system has none to give; the bytes are as they were then.
[[nodiscard]] bool fill_with_random_bytes(void *bytes, std::size_t size);

// Puts NAME=VALUE into the environment of this process.
void set_environment(const std::string &name, const std::string &value);

} // namespace cubenet
