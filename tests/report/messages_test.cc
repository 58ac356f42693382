#include "report/messages.h"

#include <cstring>
#include <filesystem>
#include <sstream>
#include <string>

#include <gtest/gtest.h>
#include <stdlib.h>

#include "support/capture.h"
#include "support/temp_dir.h"

namespace cubenet {
namespace {

std::string x(std::size_t count) { return std::string(count, 'x'); }
const std::string kOrdinary = "\n      "; // six spaces
const std::string kBroken = "-\n       "; // seven

TEST(WrapMessage, LaysWordsOutInTheRoomOfEachLine) {
  const struct {
    std::string text, prefix, expected;
  } rows[] = {
      {"", "", " "},
      {" ", "", "  "},
      {"a b", "", "a b "},
      {"\ta\n\t\nb\t", "", " a b  "},
      {"a\rb", "", "a\rb "},
      {x(72), "", x(72)},
      {x(71) + " y", "", x(71) + " " + kOrdinary + "y "},
      {x(72) + " y", "", x(72) + kOrdinary + "y "},
      {x(59), "12345 ERROR: ", x(59)},
      {x(60), "12345 ERROR: ", kOrdinary + x(60) + " "},
      {"y " + x(65), "1234567", "y " + kOrdinary + x(65)},
      // Longer than a line: filled up, a hyphen in the last place, and one more place on each line after it.
      {x(66), "1234567", x(64) + kBroken + x(2) + " "},
      {x(73), "", x(71) + kBroken + x(2) + " "},
      {x(71 + 65 + 66), "", x(71) + kBroken + x(65) + kBroken + x(66)},
      {x(71 + 65 + 66) + " y", "", x(71) + kBroken + x(65) + kBroken + x(66) + kOrdinary + "y "},
      {x(70) + " " + x(66), "", x(70) + " " + kBroken + x(66)},
      {x(72) + " " + x(66), "", x(72) + kOrdinary + x(64) + kBroken + x(2) + " "},
      {x(200), std::string(90, 'p'), kOrdinary + x(64) + kBroken + x(65) + kBroken + x(65) + kBroken + x(6) + " "},
  };
  for (const auto &row : rows) EXPECT_EQ(wrap_message(row.text, row.prefix), row.expected) << row.text;
}

TEST(WrapMessage, KeepsEveryCharacterAndNoLinePastTheWidth) {
  // Texts of words of all lengths, from one small generator.
  unsigned state = 1;
  const auto next = [&state](unsigned limit) { return (state = state * 1103515245U + 12345U) / 65536U % limit; };
  for (int round = 0; round < 500; round++) {
    std::string text;
    for (unsigned words = next(12); words > 0; words--)
      text += std::string(next(round % 2 == 0 ? 12 : 150), static_cast<char>('a' + next(26))) + (next(5) ? " " : "\n");
    const std::string wrapped = wrap_message(text, "12345 ERROR: ");
    std::string letters, expected;
    for (const char c : wrapped)
      if (c >= 'a' && c <= 'z') letters += c;
    for (const char c : text)
      if (c >= 'a' && c <= 'z') expected += c;
    EXPECT_EQ(letters, expected);
    std::istringstream lines(wrapped);
    std::size_t room = 59;
    for (std::string line; std::getline(lines, line); room = 73) EXPECT_LE(line.size(), room) << line;
  }
}

TEST(Messages, StandOnTheConsoleAndInTheLogWithNumberAndKind) {
  const WorkingDir dir;
  CapturedConsole console;
  start_messages("tool");
  print_line(" ");
  print_line("Reading design '%s'...", "d");
  report_error(31204, "Pin '%s'\nunknown", "a%s%n");
  report_warning(31501, "W %d", -1);
  report_system_error(31102, "S");
  report_internal_error(7, "%s", x(53).c_str()); // its prefix is two characters shorter: 52 places, not 50
  report_error(1, "%s", x(2000).c_str());
  const std::string text = console.text();
  EXPECT_EQ(text.substr(0, text.find("1 ERROR: x")), "  \n"
                                                     "Reading design 'd'... \n"
                                                     "31204 ERROR: Pin 'a%s%n' unknown \n"
                                                     "31501 WARNING: W -1 \n"
                                                     "31102 SYSTEM ERROR: S \n"
                                                     "7 INTERNAL ERROR: \n      " +
                                                         x(53) + " \n");
  EXPECT_EQ(std::count(text.begin(), text.end(), 'x'), 53 + 1023);
  stop_messages();
  EXPECT_EQ(read_file("tool.log"), text);

  start_messages("tool");
  print_line("again");
  stop_messages();
  EXPECT_EQ(read_file("tool.log"), text + "again \n");
  start_messages_truncating("tool");
  EXPECT_NE(withheld_texts(), nullptr);
  print_line("new");
  start_messages_truncating_without_table("tool"); // ends the message still open
  EXPECT_EQ(withheld_texts(), nullptr);
  print_line("newer");
  stop_messages();
  EXPECT_EQ(read_file("tool.log"), "newer \n");
}

TEST(Messages, GoOnWithoutALog) {
  const WorkingDir dir;
  std::filesystem::create_directory("tool.log");
  CapturedConsole console;
  start_messages("tool");
  report_error(2, "x");
  stop_messages();
  EXPECT_EQ(console.text(), "33130 SYSTEM ERROR: Message file 'tool.log' cannot be opened\n2 ERROR: x \n");
}

TEST(Messages, AreSwitchedOffAndWithheld) {
  const WorkingDir dir;
  CapturedConsole console;
  start_messages("tool");
  suppress_messages(true);
  report_error(1, "suppressed");
  print_line("suppressed");
  suppress_messages(false);
  switch_console_off(true);
  report_error(2, "log only");
  switch_console_off(false);
  for (const char *text : {"known ", "  "}) hash_insert(withheld_texts(), {.text = strdup(text)}, {.number = 0});
  report_warning(3, "known");
  print_line("known");
  print_line(" ");
  report_warning(4, " ");
  report_warning(5, "known not");
  switch_console_off(true);
  suppress_messages(true);
  start_messages("tool"); // everything is on again
  print_line("on");
  stop_messages();
  EXPECT_EQ(console.text(), "  \n5 WARNING: known not \non \n");
  EXPECT_EQ(read_file("tool.log"), "2 ERROR: log only \n" + console.text());
}

TEST(Messages, ReachTheLogInWholeMessages) {
  const WorkingDir dir;
  CapturedConsole console;
  start_messages("tool");
  std::size_t logged = 0;
  for (int i = 0; i < 3000; i++) {
    report_warning(31501, "Attribute %d is ignored", i);
    const std::size_t size = std::filesystem::file_size("tool.log");
    if (size == logged) continue;
    logged = size;
    EXPECT_EQ(read_file("tool.log").back(), '\n');
  }
  EXPECT_GT(logged, 0U);
  stop_messages();
  EXPECT_EQ(read_file("tool.log"), console.text());
}

TEST(Console, CutsLongTextsAndTellsStreamsFromFiles) {
  CapturedConsole console;
  EXPECT_EQ(console_printf("%s", x(3000).c_str()), 3000);
  EXPECT_EQ(console.take(), x(2061));
  stream_printf(stderr, "%d", 1);
  stream_put_text("%d", stdout);
  EXPECT_EQ(stream_put_char('c', stdout), 'c');
  const TempDir dir;
  std::FILE *const file = std::fopen(dir.file("f").c_str(), "w");
  stream_printf(file, "%d", 2);
  stream_put_text("%d", file);
  EXPECT_EQ(stream_put_char('\0', file), '\0');
  std::fclose(file);
  EXPECT_EQ(console.text(), "1%dc");
  EXPECT_EQ(read_file(dir.file("f")), std::string("2%d\0", 4));
}

} // namespace
} // namespace cubenet
