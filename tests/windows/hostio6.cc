// A host's console library for tests: prints to the standard output and, when the environment names a file in
// HOSTIO6_RECORD, appends a line to it for every call. Splits a command line as most programs do: blanks
// separate arguments, double quotes keep blanks, and a backslash before a quote makes it part of the
// argument. Given more arguments than there are pointers it passes the full number, which a program must not
// trust. The argument that the environment names in HOSTIO6_NULL gets a null pointer.
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "frame/host_library.h"

namespace {

void record(const std::string &line) {
  const char *const name = std::getenv("HOSTIO6_RECORD");
  if (name == nullptr) return;
  std::FILE *const file = std::fopen(name, "ab");
  if (file == nullptr) return;
  std::fputs((line + "\n").c_str(), file);
  std::fclose(file);
}

std::vector<std::string> split(const std::string &line) {
  std::vector<std::string> arguments;
  bool quoted = false, open = false;
  for (std::size_t i = 0; i < line.size(); i++) {
    const bool separates = !quoted && (line[i] == ' ' || line[i] == '\t');
    if (!separates && !open) arguments.emplace_back();
    open = !separates;
    if (line[i] == '"')
      quoted = !quoted;
    else if (open)
      arguments.back() += line[i] == '\\' && line[i + 1] == '"' ? line[++i] : line[i];
  }
  return arguments;
}

} // namespace

void HostSplitCommandLine(const char *command_line, int *count, char **arguments) {
  static std::vector<std::string> texts;
  texts = split(command_line);
  *count = static_cast<int>(texts.size());
  const char *const null = std::getenv("HOSTIO6_NULL");
  for (std::size_t i = 0; i < texts.size() && i < kMostArguments; i++)
    arguments[i] = null != nullptr && texts[i] == null ? nullptr : texts[i].data();
  record("8");
}

void HostRegisterInstance(HINSTANCE instance) {
  record(instance == GetModuleHandleA(nullptr) ? "7 the program" : "7 something else");
}

void HostStart(int count, char **arguments) {
  std::string line = "1 " + std::to_string(count) + ":";
  for (int i = 1; i < count; i++) line += std::string(" <") + arguments[i] + ">";
  record(line);
}

int HostPrint(const char *format, ...) {
  std::va_list values, again;
  va_start(values, format);
  va_copy(again, values);
  const int length = std::vsnprintf(nullptr, 0, format, again);
  va_end(again);
  if (length < 0) return length;
  std::string text(static_cast<std::size_t>(length) + 1, '\0');
  std::vsnprintf(text.data(), text.size(), format, values);
  va_end(values);
  DWORD written = 0;
  WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), text.data(), static_cast<DWORD>(length), &written, nullptr);
  record(std::string("3 ") + format + " " + std::to_string(length));
  return length;
}
