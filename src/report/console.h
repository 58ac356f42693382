// All console output goes through the host console: the standard streams here, or the host's console library
// if the program runs inside a host. A run doesn't use the operations on streams.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

namespace cubenet {

struct HostConsole {
  virtual ~HostConsole() = default;
  virtual void print(std::string_view text) = 0;
};

// Sets the console for all output; standard output by default. Returns the previous one; nullptr restores
// standard output.
HostConsole *set_host_console(HostConsole *console);

// The text with '?' for each byte that would control a terminal. Used for standard output if it is a
// terminal.
std::string visible_text(std::string_view text);

// Formats into a buffer of 2062 characters (longer texts are cut to 2,061). Negative on a formatting error.
int console_printf(const char *format, ...) __attribute__((format(printf, 1, 2)));
// Standard output and standard error mean the console; any other stream is written as it is.
int stream_printf(std::FILE *stream, const char *format, ...) __attribute__((format(printf, 2, 3)));
int stream_put_char(int c, std::FILE *stream);
void stream_put_text(const char *text, std::FILE *stream);
void console_put_text(const char *text); // no line end is added

} // namespace cubenet
