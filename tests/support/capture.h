// Collects what the program prints: CapturedConsole console; ...; EXPECT_EQ(console.text(), "...").
#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "report/console.h"

namespace cubenet {

// The console during its lifetime; nested ones restore each other.
class CapturedConsole final : public HostConsole {
public:
  CapturedConsole();
  ~CapturedConsole() override;
  CapturedConsole(const CapturedConsole &) = delete;
  CapturedConsole &operator=(const CapturedConsole &) = delete;

  void print(std::string_view text) override { text_ += text; }

  const std::string &text() const { return text_; }
  std::string take() { return std::exchange(text_, {}); } // the text so far, which is then forgotten

private:
  std::string text_;
  HostConsole *before_;
};

// A captured console with the message library started on it and no log: what a test of a stage needs.
struct CapturedMessages {
  CapturedConsole console;

  CapturedMessages();
  ~CapturedMessages();
  CapturedMessages(const CapturedMessages &) = delete;
  CapturedMessages &operator=(const CapturedMessages &) = delete;

  const std::string &text() const { return console.text(); }
  std::string take() { return console.take(); }
  // Numbers and words as the stage wrote them: the line breaks and indents of the wrapping are removed, and
  // the spaces at the ends of messages. A broken word stays broken.
  std::string take_unwrapped();
};

} // namespace cubenet
