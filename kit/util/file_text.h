// The bytes of a file in memory. Behind them stand kPadding line ends that don't count, so that whoever looks for the
// end of a word finds one, and may load kPadding bytes wherever the text has one.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "kit/util/finding.h"

namespace cubekit {

// What changes with a file's content.
struct FileState {
  std::int64_t size = 0, seconds = 0, nanoseconds = 0; // of the last change
  bool operator==(const FileState &) const = default;
};

struct FreeText {
  std::size_t mapped = 0; // bytes, from the start; 0: the text is allocated
  int descriptor = -1;    // of the mapped file, open until then
  FileState state;        // of the mapped file, as it was then
  void operator()(char *bytes) const;
};

class FileText {
public:
  static constexpr std::size_t kPadding = 32;

  FileText() = default;
  // Room for that many bytes, not yet filled.
  explicit FileText(std::size_t size);
  template <typename Iterator>
  FileText(Iterator begin, Iterator end) : FileText(static_cast<std::size_t>(end - begin)) {
    std::copy(begin, end, data());
    end_at(size_);
  }

  char *data() { return bytes_.get(); }
  const char *data() const { return bytes_.get(); }
  std::size_t size() const { return size_; }
  char &operator[](std::size_t at) { return bytes_[at]; }
  std::string_view view() const { return {data(), size_}; }
  // The text ends there, at or before its former end.
  void end_at(std::size_t size);

  // The bytes of an open file of that state, which show whatever is written into it meanwhile. None, with a size of 0,
  // where the system can't do that: then the descriptor is still the caller's. From then on a lost page of any mapping
  // (SIGBUS: a file was cut short) ends the process with status 2.
  static FileText map(int descriptor, const FileState &state);

  // Whether a mapped file has changed since.
  bool has_changed() const;

private:
  FileText(char *bytes, std::size_t size, const FreeText &how) : bytes_(bytes, how), size_(size) {}
  std::unique_ptr<char[], FreeText> bytes_;
  std::size_t size_ = 0;
};

// Whether any text was of a file that changed while it was read or, for a mapped one, before the text was done with:
// such a text may be neither the old nor the new one. Size and time of the last change tell; a program that writes
// through a mapping of its own may change neither. Says so once.
[[nodiscard]] bool take_changed_text();

// Reads a whole file, or maps it when it is large. False when that can't be done, with the reason in `error`.
[[nodiscard]] bool read_file(const std::string &path, FileText &text, Finding &error);

} // namespace cubekit
