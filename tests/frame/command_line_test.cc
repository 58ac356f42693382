#include "frame/command_line.h"

#include <string>

#include <gtest/gtest.h>

#include "frame/banner.h"
#include "model/run_settings.h"
#include "report/messages.h"
#include "support/arguments.h"
#include "support/capture.h"

namespace cubenet {
namespace {

// "usage" with its title, or everything that the line sets, in one text.
std::string outcome(const std::string &line) {
  Arguments arguments("cubenet " + line);
  const CommandLine command = parse_command_line(arguments.count(), arguments.pointers.data());
  const FileNames names = make_file_names(command);
  std::string text = command.usage_error ? "usage" : names.input + " " + names.nxf;
  if (command.version) text += " version";
  if (command.brief) text += " brief";
  if (command.usage_error) return text;
  if (run_settings.part_name) text += " " + *run_settings.part_name + ":" + std::to_string(run_settings.part_flag);
  if (run_settings.expand) text += " gates";
  text += " " + std::to_string(run_settings.and_width) + "/" + std::to_string(run_settings.or_width);
  if (run_settings.debug_level != 0) text += " level " + std::to_string(run_settings.debug_level);
  if (run_settings.case_sensitive) text += " case";
  return text;
}

TEST(CommandLine, SetsWhatEachOptionSays) {
  const struct {
    const char *line, *expected;
  } rows[] = {
      {"", "usage"},
      {"d", "d.tt2 d.nxf 12/12"},
      {"my.design", "my.design.tt2 my.design.nxf 12/12"},
      {"d extra", "usage"},
      {"d -b", "usage"},
      {"-", "usage"},
      {"-B d", "usage"},
      {"-b=1 d", "usage"},
      {"-vb d", "d.tt2 d.nxf version brief 12/12"},
      {"-b -bv d", "d.tt2 d.nxf version brief 12/12"},
      {"-v d", "d.tt2 d.nxf version 12/12"},
      {"-C d", "d.tt2 d.nxf 12/12 case"},
      // A value needs another argument after it; otherwise it is read as an argument of its own.
      {"-i x.tt2", "usage"},
      {"-i", "usage"},
      {"-i x.tt2 d", "x.tt2 d.nxf 12/12"},
      {"-i -v d", "usage version"},
      {"-p -b d", "usage brief"},
      {"-and -v", "usage version"},
      {"-fext out d", "d.tt2 d.out 12/12"},
      {"-fext a -fext b -i 1 -i 2 d", "2 d.b 12/12"},
      {"-p Tarvex7710K-100XQ64 d", "d.tt2 d.nxf Tarvex7710K-100XQ64:1 12/12"},
      {"-p a5 d", "d.tt2 d.nxf a5:5 12/12"},
      {"-p x81 d", "d.tt2 d.nxf x81:8 12/12"},
      {"-p none d", "d.tt2 d.nxf none:0 12/12"},
      {"-and 1 d", "d.tt2 d.nxf gates 12/12"},
      {"-and 2 -or 100 d", "d.tt2 d.nxf gates 2/100"},
      {"-and 100 -or 3 -and 101 d", "d.tt2 d.nxf gates 100/3"},
      {"-or 5 -pla d", "d.tt2 d.nxf 12/5"},
      {"-or x -and 4294967298 d", "d.tt2 d.nxf gates 12/12"},
      {"-and 99999999999999999999 d", "d.tt2 d.nxf gates 12/12"},
      {"-or 7x d", "d.tt2 d.nxf gates 12/7"},
      {"-and -v d", "d.tt2 d.nxf gates 12/12"},
      {"-V -3 d", "d.tt2 d.nxf 12/12"},
      {"-V 2 -V 0 d", "d.tt2 d.nxf 12/12 level 2"},
      {"-V 2147483648 d", "d.tt2 d.nxf 12/12"},
      {"-V 3", "usage"},
  };
  for (const auto &row : rows) EXPECT_EQ(outcome(row.line), row.expected) << row.line;
}

TEST(Banner, ShowsTitleNoticeAndDesignInWrappedLines) {
  CapturedMessages messages;
  print_banner(true, false, "d");
  EXPECT_EQ(messages.text(), "PLA Reading and Translation Software Version 7.1.01, Mon Jan 11 14:11:10\n"
                             "      PST 1999 \n  \nAll rights reserved. \n"
                             "Use and copying are subject to the license agreement. \n  \nReading design 'd'... \n");
}

TEST(Banner, PadsTheNumbersOfADateAndLeavesOtherTextsAlone) {
  EXPECT_EQ(format_compile_date("Tue Feb 2 3:4:5 Z 99"), "Tue Feb 02 03:04:05   Z 0099");
  EXPECT_EQ(format_compile_date("Tue Feb 2 3:4:5 PST"), "Tue Feb 2 3:4:5 PST");
  EXPECT_EQ(format_compile_date("today"), "today");
}

} // namespace
} // namespace cubenet
