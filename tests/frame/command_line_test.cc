#include "frame/command_line.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "frame/banner.h"
#include "frame/messages.h"
#include "frame/run.h"
#include "model/run_settings.h"
#include "support/capture.h"
#include "support/temp_dir.h"

namespace cubenet {
namespace {

struct Arguments {
  std::vector<std::string> texts;
  std::vector<char *> pointers;

  explicit Arguments(const std::string &line) {
    for (std::size_t at = 0, end; at < line.size(); at = end + 1) {
      end = std::min(line.find(' ', at), line.size());
      texts.push_back(line.substr(at, end - at));
    }
    for (std::string &text : texts) pointers.push_back(text.data());
    pointers.push_back(nullptr);
  }
  int count() const { return static_cast<int>(texts.size()); }
};

// "usage", or everything that the line sets, in one text.
std::string outcome(const std::string &line) {
  Arguments arguments("cubenet " + line);
  const CommandLine command = parse_command_line(arguments.count(), arguments.pointers.data());
  if (command.usage_error) return "usage";
  const FileNames names = make_file_names(command);
  std::string text = names.input + " " + names.nxf;
  if (command.version) text += " version";
  if (command.brief) text += " brief";
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
      // A value needs a further argument behind it, and the would-be value is looked at next.
      {"-i x.tt2", "usage"},
      {"-i", "usage"},
      {"-i x.tt2 d", "x.tt2 d.nxf 12/12"},
      {"-i -v d", "usage"},
      {"-p -b d", "usage"},
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

const char *const kUsageTail = "Usage: cubenet [-b] [-i file_name] [-v] [-V level] design_name\n\n"
                               "       -b                               print brief program name\n"
                               "       -i file_name                     input file name specification\n"
                               "       -v                               print version number and compile date\n"
                               "       -C                               identifiers are case-sensitive\n"
                               "       -V                               debug level (not for general use)\n";
const char *const kRights = "All rights reserved.\nUse and copying are subject to the license agreement.\n\n";

TEST(Run, AWrongLineShowsTheTitleOfItsFlagsAndTheUsage) {
  const std::string version = "Version 7.1.01, Mon Jan 11 14:11:10 PST 1999";
  const struct {
    const char *line;
    std::string head;
  } rows[] = {
      {"cubenet", std::string("PLA Reading and Translation Software\n\n") + kRights},
      {"cubenet -v", "PLA Reading and Translation Software " + version + "\n\n" + kRights},
      {"cubenet -b", "PLA Reading and Translation\n\n"},
      {"cubenet -vb -x", "PLA Reading and Translation " + version + "\n\n"},
      {"cubenet -x -b -v d", "PLA Reading and Translation " + version + "\n\n"},
  };
  const WorkingDir dir;
  for (const auto &row : rows) {
    CapturedConsole console;
    Arguments arguments(row.line);
    EXPECT_EQ(run_program(arguments.count(), arguments.pointers.data()), 2);
    EXPECT_EQ(console.text(), row.head + kUsageTail) << row.line;
  }
  CapturedConsole console;
  char *none[] = {nullptr};
  EXPECT_EQ(run_program(0, none), 2);
  EXPECT_TRUE(std::filesystem::is_empty(dir.path)); // no log for any of them
}

TEST(Run, AnInputThatCanNotBeOpenedEndsItWithoutAnOutput) {
  const WorkingDir dir;
  std::filesystem::create_directory("folder.tt2");
  std::string log;
  for (const std::string design : {"missing", "folder"}) {
    CapturedConsole console;
    Arguments arguments("cubenet -b " + design);
    EXPECT_EQ(run_program(arguments.count(), arguments.pointers.data()), 2);
    EXPECT_EQ(console.text(), "PLA Reading and Translation \n  \nReading design '" + design +
                                  "'... \n31102 SYSTEM ERROR: Unable to open file '" + design + ".tt2' for reading \n");
    log += console.text();
  }
  EXPECT_EQ(read_file("cubenet.log"), log);
  std::filesystem::remove("cubenet.log");
  std::filesystem::remove("folder.tt2");
  EXPECT_TRUE(std::filesystem::is_empty(dir.path));
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
