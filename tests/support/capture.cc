// The collecting console, and messages without a log.
#include "support/capture.h"

#include "report/messages.h"

namespace cubenet {

CapturedConsole::CapturedConsole() : before_(set_host_console(this)) {}

CapturedConsole::~CapturedConsole() { set_host_console(before_); }

CapturedMessages::CapturedMessages() {
  start_messages("/no such directory/log");
  console.take(); // that there is no log
}

CapturedMessages::~CapturedMessages() {
  suppress_messages(false);
  stop_messages();
}

std::string CapturedMessages::take_unwrapped() {
  const std::string wrapped = take();
  std::string lines;
  for (std::size_t i = 0; i < wrapped.size(); i++) {
    if (wrapped[i] != '\n') {
      lines += wrapped[i];
      continue;
    }
    while (!lines.empty() && lines.back() == ' ') lines.pop_back();
    const std::size_t next = wrapped.find_first_not_of(' ', i + 1);
    const bool continues = next != std::string::npos && wrapped[next] != '\n' && next - i >= 7;
    lines += continues ? ' ' : '\n';
    if (continues) i = next - 1;
  }
  return lines;
}

} // namespace cubenet
