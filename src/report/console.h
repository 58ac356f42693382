// Everything meant for the console goes through the host console: the standard streams here, the host's own console
// library where the program runs inside one. A run doesn't use the operations on streams.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

namespace cubenet {

struct HostConsole {
  virtual ~HostConsole() = default;
  virtual void print(std::string_view text) = 0;
};

// The console that all output goes to; standard output unless set. Returns the one set before; nullptr restores
// standard output.
HostConsole *set_host_console(HostConsole *console);

// The text with a '?' for each byte that would control a terminal. Standard output gets it where it is one.
std::string visible_text(std::string_view text);

// Formats into a buffer of 2062 characters (longer texts are cut at 2,061). Negative on a formatting error.
int console_printf(const char *format, ...) __attribute__((format(printf, 1, 2)));
// Standard output and standard error mean the console; any other stream is written as it is.
int stream_printf(std::FILE *stream, const char *format, ...) __attribute__((format(printf, 2, 3)));
int stream_put_char(int c, std::FILE *stream);
void stream_put_text(const char *text, std::FILE *stream);
void console_put_text(const char *text); // no line end is added

} // namespace cubenet
