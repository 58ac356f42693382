// An argument vector from one line of words.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

namespace cubenet {

struct Arguments {
  std::vector<std::string> texts;
  std::vector<char *> pointers;

  explicit Arguments(const std::string &line) {
    for (std::size_t at = 0, end; at < line.size(); at = end + 1) {
      end = std::min(line.find(' ', at), line.size());
      texts.push_back(line.substr(at, end - at));
    }
    for (std::string &text : texts) pointers.push_back(text.data());
    pointers.push_back(nullptr);
  }
  int count() const { return static_cast<int>(texts.size()); }
};

} // namespace cubenet
