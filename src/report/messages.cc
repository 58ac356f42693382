// The message library. A message is wrapped, looked up among the withheld texts, and printed to the console
// and the log. The log is one buffer on an appending descriptor: only whole messages are passed to the
// system, each time in one write, so lines of two runs in one folder never mix.
#include "report/messages.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "report/console.h"
#include "util/growing_string.h"
#include "util/system.h"
#include "util/words.h"

namespace cubenet {
namespace {

constexpr std::size_t kWidth = 72;
constexpr std::size_t kIndent = 7;
constexpr std::size_t kContinuation = kWidth - kIndent; // room on a line that starts with an ordinary wrap

// The text that a reporter adds. Only the length of `room` counts: the number always has five digits.
struct Reporter {
  const char *room;
  const char *label;
};
constexpr Reporter kError = {"12345 ERROR: ", "ERROR"};
constexpr Reporter kWarning = {"12345 WARNING: ", "WARNING"};
constexpr Reporter kSystemError = {"12345 SYSTEM ERROR: ", "SYSTEM ERROR"};
constexpr Reporter kInternalError = {"12345 INTERNAL ERROR", "INTERNAL ERROR"}; // deliberately without ": "

constexpr std::size_t kLogBlock = std::size_t{64} << 10;

int log_descriptor = -1;       // the open log, if any
std::string log_text;          // whole messages not yet in the log; doesn't allocate while the log is open
bool console_off = false;      // nothing goes to the console
bool suppressed = false;       // the reporters do nothing
HashTable *withheld = nullptr; // wrapped texts that are not printed
char message_text[1024];       // the text of the message in progress

void write_log() {
  // A full disk loses log lines, but never fails the run.
  static_cast<void>(write_all(log_descriptor, log_text.data(), log_text.size()));
  log_text.clear();
}

void print(const std::string &line) {
  if (!console_off) console_put_text(line.c_str());
  if (log_descriptor < 0) return;
  if (log_text.size() + line.size() > kLogBlock) write_log();
  log_text += line;
}

bool is_withheld(const std::string &wrapped) {
  return withheld != nullptr && hash_lookup(withheld, {.text = wrapped.c_str()}, nullptr);
}

// Runs of tabs and line ends become one space.
std::string fold_white_space(std::string_view text) {
  std::string folded;
  folded.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); i++) {
    const bool white = text[i] == '\t' || text[i] == '\n';
    const bool white_next = i + 1 < text.size() && (text[i + 1] == '\t' || text[i + 1] == '\n');
    if (!white)
      folded += text[i];
    else if (!white_next)
      folded += ' ';
  }
  return folded;
}

// Text being laid out in lines, and the room left on its last line.
struct Layout {
  GrowingString text{100};
  std::size_t room;
};

void add_word(Layout &layout, std::string_view word) {
  append(layout.text, word);
  layout.room -= word.size();
  if (layout.room == 0) return;
  append(layout.text, " ");
  layout.room--;
}

void start_line(Layout &layout) {
  append(layout.text, "\n      "); // six spaces, not seven: log readers rely on it
  layout.room = kContinuation;
}

// For a word longer than a line. If there is room only for the hyphen, it is printed alone.
void add_broken_word(Layout &layout, std::string_view word) {
  if (layout.room == 0) start_line(layout);
  while (word.size() > layout.room) {
    append(layout.text, word.substr(0, layout.room - 1));
    append(layout.text, "-\n       "); // seven spaces
    word.remove_prefix(layout.room - 1);
    layout.room = kContinuation + 1;
  }
  add_word(layout, word);
}

void lay_out(Layout &layout, std::string_view text) {
  std::string folded = fold_white_space(text);
  std::vector<char *> words;
  split_words(folded.data(), words);
  for (const std::string_view word : words) {
    if (word.size() <= layout.room) {
      add_word(layout, word);
    } else if (word.size() > kContinuation) {
      add_broken_word(layout, word);
    } else {
      start_line(layout);
      add_word(layout, word);
    }
  }
}

// False if the values can't be formatted: nothing is then printed.
bool format_message(const char *format, std::va_list values) __attribute__((format(printf, 1, 0)));
bool format_message(const char *format, std::va_list values) {
  return std::vsnprintf(message_text, sizeof message_text, format, values) >= 0;
}

void report(const Reporter &reporter, int number, const char *format, std::va_list values)
    __attribute__((format(printf, 3, 0)));
void report(const Reporter &reporter, int number, const char *format, std::va_list values) {
  if (suppressed || !format_message(format, values)) return;
  const std::string wrapped = wrap_message(message_text, reporter.room);
  if (is_withheld(wrapped)) return;
  print(std::to_string(number) + " " + reporter.label + ": " + wrapped + "\n");
}

void start(const std::string &program, OpenFor use, bool with_table) {
  stop_messages();
  console_off = false;
  suppressed = console_off;
  log_text.reserve(kLogBlock);
  const std::string log_name = program + ".log";
  log_descriptor = open_file(log_name, use);
  if (log_descriptor < 0)
    console_printf("%d SYSTEM ERROR: Message file '%s' cannot be opened\n", 33130, log_name.c_str());
  if (with_table) withheld = hash_create(string_compare, string_hash);
}

} // namespace

void start_messages(const std::string &program) { start(program, OpenFor::APPENDING, true); }

void start_messages_truncating(const std::string &program) { start(program, OpenFor::EMPTYING, true); }

void start_messages_truncating_without_table(const std::string &program) { start(program, OpenFor::EMPTYING, false); }

void stop_messages() {
  if (log_descriptor >= 0) {
    write_log();
    static_cast<void>(close_file(log_descriptor)); // loses lines, but never fails the run
    log_descriptor = -1;
  }
  if (withheld == nullptr) return;
  HashIterator texts = hash_iterate(withheld);
  for (HashWord text; hash_next(texts, &text, nullptr);) std::free(const_cast<char *>(text.text));
  hash_free(withheld);
  withheld = nullptr;
}

void print_line(const char *format, ...) {
  if (suppressed) return;
  std::va_list values;
  va_start(values, format);
  const bool formatted = format_message(format, values);
  va_end(values);
  if (!formatted) return;
  const std::string wrapped = wrap_message(message_text, "");
  // The blank line, two spaces once wrapped, is never withheld.
  if (wrapped != "  " && is_withheld(wrapped)) return;
  print(wrapped + "\n");
  if (log_descriptor >= 0) write_log(); // plain lines show progress to those who watch the log
}

void report_error(int number, const char *format, ...) {
  std::va_list values;
  va_start(values, format);
  report(kError, number, format, values);
  va_end(values);
}

void report_warning(int number, const char *format, ...) {
  std::va_list values;
  va_start(values, format);
  report(kWarning, number, format, values);
  va_end(values);
}

void report_system_error(int number, const char *format, ...) {
  std::va_list values;
  va_start(values, format);
  report(kSystemError, number, format, values);
  va_end(values);
}

void report_internal_error(int number, const char *format, ...) {
  std::va_list values;
  va_start(values, format);
  report(kInternalError, number, format, values);
  va_end(values);
}

void suppress_messages(bool on) { suppressed = on; }

void switch_console_off(bool off) { console_off = off; }

HashTable *withheld_texts() { return withheld; }

std::string wrap_message(std::string_view text, std::string_view prefix) {
  Layout wrapped{.room = kWidth - std::min(prefix.size(), kWidth)};
  lay_out(wrapped, text);
  return std::string(view(wrapped.text));
}

} // namespace cubenet
