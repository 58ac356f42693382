// Numbered messages and plain lines: wrapped to 72 columns, written to the console and to the log. Every
// stage reports through these functions; a message's number and text are together at the call. The starts
// with an empty log, the switches and the table of withheld texts are for hosts; a run doesn't use them.
#pragma once

#include <string>
#include <string_view>

#include "util/hash_table.h"

namespace cubenet {

// Opens "<program>.log" for appending. A log that can't be opened is reported once on the console (33130),
// and the run continues without it.
void start_messages(const std::string &program);
void start_messages_truncating(const std::string &program);               // the log starts empty
void start_messages_truncating_without_table(const std::string &program); // no text is ever withheld
void stop_messages();

// The text is formatted into the shared message buffer, which cuts it to 1,023 bytes.
void print_line(const char *format, ...) __attribute__((format(printf, 1, 2)));
void report_error(int number, const char *format, ...) __attribute__((format(printf, 2, 3)));
void report_warning(int number, const char *format, ...) __attribute__((format(printf, 2, 3)));
void report_system_error(int number, const char *format, ...) __attribute__((format(printf, 2, 3)));
void report_internal_error(int number, const char *format, ...) __attribute__((format(printf, 2, 3)));

void suppress_messages(bool on);
void switch_console_off(bool off);

// A message whose wrapped text is a key of this table is not printed. The keys are allocated with std::malloc
// and owned by the table; null before the start and after the stop.
HashTable *withheld_texts();

// Wraps one text as the reporters do; `prefix` only reserves room on the first line.
std::string wrap_message(std::string_view text, std::string_view prefix);

} // namespace cubenet
