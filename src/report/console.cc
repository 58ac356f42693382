// The console: one replaceable host behind a handful of printing functions. Text for standard output or
// standard error goes to the host; other streams are written directly.
#include "report/console.h"

#include <algorithm>
#include <cstdarg>

#include "util/system.h"

namespace cubenet {
namespace {

// These control a terminal. So do the bytes 0x80 to 0x9f, unless they continue a UTF-8 character; encoded as
// characters themselves, they follow the byte 0xc2.
bool is_control(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return (byte < 0x20 && c != '\n' && c != '\t') || (byte >= 0x7f && byte < 0xa0);
}

// The number of bytes after the first that belong to its UTF-8 character.
std::size_t count_following(std::string_view text) {
  const auto byte = static_cast<unsigned char>(text.front());
  const std::size_t count = byte >= 0xf0 && byte < 0xf5   ? 3
                            : byte >= 0xe0 && byte < 0xf0 ? 2
                                                          : byte >= 0xc3 && byte < 0xe0;
  const auto follows = [](char c) { return (static_cast<unsigned char>(c) & 0xc0) == 0x80; };
  const std::string_view following = text.substr(1, count);
  return following.size() == count && std::all_of(following.begin(), following.end(), follows) ? count : 0;
}

struct StandardConsole final : HostConsole {
  void print(std::string_view text) override {
    static const bool is_shown = is_terminal(descriptor_of(stdout));
    const std::string visible = is_shown ? visible_text(text) : std::string();
    if (is_shown) text = visible;
    std::fwrite(text.data(), 1, text.size(), stdout);
  }
};

StandardConsole standard_console;
HostConsole *host = &standard_console;

char console_buffer[2062]; // the text of the formatted print in progress

int format_console_text(const char *format, std::va_list values) __attribute__((format(printf, 1, 0)));
int format_console_text(const char *format, std::va_list values) {
  return std::vsnprintf(console_buffer, sizeof console_buffer, format, values);
}

bool is_console(const std::FILE *stream) { return stream == stdout || stream == stderr; }

} // namespace

std::string visible_text(std::string_view text) {
  std::string visible(text);
  for (std::size_t at = 0; at < text.size(); at += 1 + count_following(text.substr(at)))
    if (is_control(text[at])) visible[at] = '?';
  return visible;
}

HostConsole *set_host_console(HostConsole *console) {
  HostConsole *const before = host;
  host = console != nullptr ? console : &standard_console;
  return before;
}

int console_printf(const char *format, ...) {
  std::va_list values;
  va_start(values, format);
  const int length = format_console_text(format, values);
  va_end(values);
  if (length >= 0) host->print(console_buffer);
  return length;
}

int stream_printf(std::FILE *stream, const char *format, ...) {
  std::va_list values;
  va_start(values, format);
  const int length = format_console_text(format, values);
  va_end(values);
  if (length >= 0) stream_put_text(console_buffer, stream);
  return length;
}

int stream_put_char(int c, std::FILE *stream) {
  const char text = static_cast<char>(c);
  if (is_console(stream))
    host->print(std::string_view(&text, 1));
  else
    std::fputc(c, stream);
  return c;
}

void stream_put_text(const char *text, std::FILE *stream) {
  if (is_console(stream))
    host->print(text);
  else
    std::fputs(text, stream);
}

void console_put_text(const char *text) { host->print(text); }

} // namespace cubenet
