// The bytes of a file in memory. Behind them stand kPadding line ends that don't count, so that whoever looks for the
// end of a word finds one, and may load kPadding bytes wherever the text has one.
#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "kit/finding.h"

namespace cubekit {

struct FreeText {
  std::size_t mapped = 0; // bytes, from the start; 0: allocated
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

  // The bytes of an open file, which show whatever is written into it meanwhile. None, with a size of 0, where the
  // system can't do that. From then on a lost page of any mapping (SIGBUS: the file was cut short) ends the process
  // with status 2.
  static FileText map(int descriptor, std::size_t size);

private:
  FileText(char *bytes, std::size_t size, FreeText how) : bytes_(bytes, how), size_(size) {}
  std::unique_ptr<char[], FreeText> bytes_;
  std::size_t size_ = 0;
};

// Reads a whole file, or maps it when it is large. False when that can't be done, with the reason in `error`.
[[nodiscard]] bool read_file(const std::string &path, FileText &text, Finding &error);

} // namespace cubekit
