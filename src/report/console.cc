// The console: one replaceable host behind a handful of printing functions. What is printed to standard output or
// standard error goes to the host; other streams are written as they are.
#include "report/console.h"

#include <cstdarg>

namespace cubenet {
namespace {

struct StandardConsole final : HostConsole {
  void print(std::string_view text) override { std::fwrite(text.data(), 1, text.size(), stdout); }
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
