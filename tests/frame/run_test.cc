#include "frame/run.h"

#include <cstdlib>
#include <filesystem>
#include <set>
#include <string>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "report/console.h"
#include "support/arguments.h"
#include "support/capture.h"
#include "support/temp_dir.h"
#include "util/memory.h"

namespace cubenet {
namespace {

int run_line(const std::string &line) {
  Arguments arguments(line);
  return run_program(arguments.count(), arguments.pointers.data());
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
    EXPECT_EQ(run_line(row.line), 2);
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
    EXPECT_EQ(run_line("cubenet -b " + design), 2);
    EXPECT_EQ(console.text(), "PLA Reading and Translation \n  \nReading design '" + design +
                                  "'... \n31102 SYSTEM ERROR: Unable to open file '" + design + ".tt2' for reading \n");
    log += console.text();
  }
  EXPECT_EQ(read_file("cubenet.log"), log);
  std::filesystem::remove("cubenet.log");
  std::filesystem::remove("folder.tt2");
  EXPECT_TRUE(std::filesystem::is_empty(dir.path));
}

// A register, a shared term, a location and a parameter: every file of a run is written.
const char *const kDesign = "#$ PINS 3 clk:1 a:2 q:14\n"
                            "#$ MODULE small\n"
                            "#$ PROPERTY corvane MAX_GLB_IN 16\n"
                            ".i 2\n.o 2\n.type f\n.ilb clk a\n.ob q.D q.C\n.p 2\n-1 1-\n1- -1\n.e\n";

TEST(Run, NeverWritesOverItsInputOrItsLog) {
  const WorkingDir dir;
  write_file("d.tt2", kDesign);
  write_file("e.ddf", kDesign);
  for (const std::string line : {"cubenet -fext tt2 d", "cubenet -i e.ddf e", "cubenet -i d.tt2 -fext log cubenet"}) {
    CapturedConsole console;
    EXPECT_EQ(run_line(line), 2) << line;
    EXPECT_NE(console.text().find("31103 "), std::string::npos) << console.text();
  }
  EXPECT_EQ(read_file("d.tt2"), kDesign);
  EXPECT_EQ(read_file("e.ddf"), kDesign);
  EXPECT_EQ(read_file("cubenet.log").substr(0, 3), "PLA");

  // A log that messages are appended to is not a design, whatever is in it.
  write_file("cubenet.log", kDesign);
  std::filesystem::create_symlink("cubenet.log", "log.tt2");
  for (const std::string line : {"cubenet -i cubenet.log x", "cubenet log"}) {
    CapturedConsole console;
    EXPECT_EQ(run_line(line), 2) << line;
    EXPECT_NE(console.text().find("31102 SYSTEM ERROR: Unable to open file '"), std::string::npos) << console.text();
    EXPECT_TRUE(read_file("cubenet.log").starts_with(kDesign) && !std::filesystem::exists("x.nxf"));
  }
}

// Runs in a process of its own, in which the n-th allocation from now on fails.
int run_short_of_memory(unsigned long n) {
  const pid_t child = fork();
  if (child == 0) {
    if (std::freopen("console", "w", stdout) == nullptr) _exit(99);
    Arguments arguments("cubenet d");
    fail_allocation(n);
    std::exit(run_program(arguments.count(), arguments.pointers.data()));
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 100 + WTERMSIG(status);
}

// With the address sanitizer a process starts slowly: every seventh request must do there.
#ifdef __SANITIZE_ADDRESS__
constexpr unsigned long kStep = 7;
#else
constexpr unsigned long kStep = 1;
#endif

TEST(Run, EndsCleanlyWhicheverRequestForMemoryFails) {
  const WorkingDir dir;
  write_file("d.tt2", kDesign);
  ASSERT_EQ(run_short_of_memory(0), 0) << read_file("console");
  std::set<std::string> outputs = {"d.ddf", "d.nxf", "d.par", "d.tvx"};
  std::set<std::string> whole;
  for (const std::string &name : outputs) whole.insert(name + read_file(name));
  unsigned long n = 1;
  for (int status = 2; status != 0; n += kStep) {
    for (const std::string &name : outputs) std::filesystem::remove(name);
    std::filesystem::remove("cubenet.log");
    status = run_short_of_memory(n);
    const std::string said = read_file("console");
    ASSERT_TRUE(status == 0 || status == 2) << n << "\n" << said;
    ASSERT_EQ(said.find("31104 SYSTEM ERROR: Out of memory allocating ") == std::string::npos, status == 0) << n;
    // One verdict, on the console and in the log.
    const std::string log = std::filesystem::exists("cubenet.log") ? read_file("cubenet.log") : "";
    ASSERT_EQ(said.find(" completed ") == std::string::npos, status == 2) << n << said;
    ASSERT_FALSE(log.find(" completed ") != std::string::npos && log.find("31104") != std::string::npos) << n << log;
    for (const std::string &name : outputs) {
      if (!std::filesystem::exists(name)) continue;
      ASSERT_EQ(whole.count(name + read_file(name)), 1U) << name << " " << n;
    }
  }
  EXPECT_GT(n, 100U);
}

} // namespace
} // namespace cubenet
