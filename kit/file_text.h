// The bytes of a file in memory. Behind them stand kPadding line ends that don't count, so that whoever looks for the
// end of a word may load eight bytes wherever the text has one.
#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "kit/finding.h"

namespace cubekit {

class FileText {
public:
  static constexpr std::size_t kPadding = 8;

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

private:
  struct Free {
    void operator()(char *bytes) const;
  };
  std::unique_ptr<char[], Free> bytes_;
  std::size_t size_ = 0;
};

// Reads a whole file. False when that can't be done, with the reason in `error`.
[[nodiscard]] bool read_file(const std::string &path, FileText &text, Finding &error);

} // namespace cubekit
