// The operating system interface beyond the standard library. The build chooses the implementation for the
// system. On all systems files are bytes: line ends are never translated, and no byte ends a file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

namespace cubenet {

// Identifies a file, whatever name it is reached by.
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
  std::uint64_t changed = 0;                    // time of the last change, in the system's units
  std::uint32_t owner = 0, group = 0, mode = 0; // where the system has them
};

enum class OpenFor {
  REPLACING,   // not created; the contents stay until overwritten or cut off
  OVERWRITING, // the same, but created if missing
  APPENDING,   // created if missing; each write is appended atomically
  EMPTYING,    // emptied, then as APPENDING
};

// Opens a file for writing. Returns the descriptor, or -1 on failure.
[[nodiscard]] int open_file(const std::string &path, OpenFor use);
[[nodiscard]] bool file_status(int descriptor, FileStatus &status);
// The same by name, following links. False if there is none.
[[nodiscard]] bool find_file(const std::string &path, FileStatus &status);
// False if not all of it could be written.
[[nodiscard]] bool write_all(int descriptor, const char *text, std::size_t length);
// Truncates the file to `size` bytes.
[[nodiscard]] bool cut_file(int descriptor, std::uint64_t size);
// False if data written before was lost.
[[nodiscard]] bool close_file(int descriptor);
// Removes the name; the file goes with its last descriptor.
void remove_file(const std::string &path);

int descriptor_of(std::FILE *stream);
[[nodiscard]] bool is_terminal(int descriptor);

// False if the system has none; the bytes are then unchanged.
[[nodiscard]] bool fill_with_random_bytes(void *bytes, std::size_t size);

// Puts NAME=VALUE into the environment of this process.
void set_environment(const std::string &name, const std::string &value);

} // namespace cubenet
