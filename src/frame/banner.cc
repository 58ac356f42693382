// Banner and usage text. Both show the same title; the usage text goes to the console unchanged, the banner
// through the messages, which wrap it.
#include "frame/banner.h"

#include <cstdio>

#include "report/console.h"
#include "report/messages.h"

namespace cubenet {
namespace {

constexpr const char *kVersion = "Version 7.1.01";
constexpr const char *kCompileDate = "Mon Jan 11 14:11:10 PST 1999";

constexpr const char *kRightsNotice[] = {
    "All rights reserved.",
    "Use and copying are subject to the license agreement.",
};

// "-p", "-fext", "-pla", "-and", "-or", "-vb" and "-bv" are for tools that start this program, and are not
// listed.
constexpr const char *kUsage = //
    "Usage: cubenet [-b] [-i file_name] [-v] [-V level] design_name\n\n"
    "       -b                               print brief program name\n"
    "       -i file_name                     input file name specification\n"
    "       -v                               print version number and compile date\n"
    "       -C                               identifiers are case-sensitive\n"
    "       -V                               debug level (not for general use)\n";

} // namespace

std::string format_compile_date(const char *date) {
  char day_name[32], month[32], zone[32];
  int day, hour, minute, second, year;
  if (std::sscanf(date, "%31s %31s %2d %2d:%2d:%2d %31s %4d", day_name, month, &day, &hour, &minute, &second, zone,
                  &year) != 8)
    return date;
  char text[160];
  std::snprintf(text, sizeof text, "%3s %3s %02d %02d:%02d:%02d %3s %04d", day_name, month, day, hour, minute, second,
                zone, year);
  return text;
}

std::string version_text() { return std::string(kVersion) + ", " + format_compile_date(kCompileDate); }

std::string program_title(bool version, bool brief) {
  std::string title = "PLA Reading and Translation";
  if (!brief) title += " Software";
  if (version) title += " " + version_text();
  return title;
}

void print_usage(bool version, bool brief) {
  console_put_text((program_title(version, brief) + "\n\n").c_str());
  if (!brief) console_printf("%s\n%s\n\n", kRightsNotice[0], kRightsNotice[1]);
  console_put_text(kUsage);
}

void print_banner(bool version, bool brief, const std::string &design_name) {
  print_line("%s", program_title(version, brief).c_str());
  if (!brief) {
    print_line(" ");
    for (const char *line : kRightsNotice) print_line("%s", line);
  }
  print_line(" ");
  print_line("Reading design '%s'...", design_name.c_str());
}

} // namespace cubenet
