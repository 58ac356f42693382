// The Windows program under Wine, inside a host library that records how it is called. Besides these tests
// this test program runs the end-to-end cases, on the Windows program. scripts/windows builds what they need
// and runs them; the folders of the builds come in the environment.
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <regex>
#include <set>
#include <sstream>
#include <string>

#include <gtest/gtest.h>
#include <sys/wait.h>

#include "support/temp_dir.h"

namespace cubenet {
namespace {

const std::string kCounter = PROJECT_DIR "/examples/counter/counter.tt2";

std::string environment(const char *name) {
  const char *const value = std::getenv(name);
  return value != nullptr ? value : "";
}

std::string quoted(const std::string &text) { return "'" + text + "'"; }

struct Outcome {
  int status = -1;
  std::string text; // of both streams
};

// Into a file, not a pipe: Wine's own servers, which the first program starts, would hold the pipe open.
Outcome run_shell(const std::string &command) {
  const TempDir folder;
  const std::string said = folder.file("said");
  const int status = std::system(("{ " + command + "; } >" + quoted(said) + " 2>&1").c_str());
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, read_file(said)};
}

// A run of the Windows program in a folder of its own, which holds counter.tt2.
struct WindowsRun {
  TempDir folder;
  std::string record; // the calls of the host library
  Outcome outcome;

  explicit WindowsRun(const std::string &arguments) {
    outcome = run_shell("cd " + quoted(folder.path) + " && cp " + quoted(kCounter) + " . && HOSTIO6_RECORD=record " +
                        quoted(CUBENET_PROGRAM) + " " + arguments);
    record = read_file(folder.path / "record");
  }
};

TEST(Windows, CallsTheHostInOrderAndPrintsThroughItAlone) {
  const WindowsRun run("-b counter");
  EXPECT_EQ(run.outcome.status, 0);
  const std::string start = "8\n7 the program\n1 3: <-b> <counter>\n";
  ASSERT_TRUE(run.record.starts_with(start)) << run.record;
  const std::string prints = run.record.substr(start.size());
  EXPECT_TRUE(std::regex_match(prints, std::regex("(3 %s [0-9]+\n)+"))) << run.record;
  std::size_t printed = 0;
  const std::regex print("3 %s ([0-9]+)");
  for (std::sregex_iterator at(prints.begin(), prints.end(), print), end; at != end; ++at)
    printed += std::stoul((*at)[1]);
  EXPECT_EQ(printed, run.outcome.text.size());
  EXPECT_EQ(run.outcome.text, read_file(run.folder.path / "cubenet.log"));
}

TEST(Windows, TakesTheArgumentsAsTheHostSplitsThem) {
  const WindowsRun blanks("-i counter.tt2 'two words'");
  EXPECT_EQ(blanks.outcome.status, 0) << blanks.outcome.text;
  EXPECT_NE(blanks.outcome.text.find("Reading design 'two words'..."), std::string::npos);
  EXPECT_NE(read_file(blanks.folder.path / "two words.nxf"), "");

  // 101 pointers: the program's name, 99 options and the design; one option more pushes the design out.
  std::string options;
  for (int i = 0; i < 99; i++) options += "-b ";
  EXPECT_EQ(WindowsRun(options + "counter").outcome.status, 0);
  const WindowsRun cut(options + "-b counter");
  EXPECT_EQ(cut.outcome.status, 2);
  EXPECT_NE(cut.outcome.text.find("Usage: cubenet"), std::string::npos) << cut.outcome.text;
}

TEST(Windows, ReportsFilesThatTakeNoMore) {
  const TempDir folder;
  const Outcome full = run_shell("cd " + quoted(folder.path) + " && cp " + quoted(kCounter) +
                                 " . && ln -s /dev/full counter.nxf && " + quoted(CUBENET_PROGRAM) + " counter");
  EXPECT_EQ(full.status, 2);
  EXPECT_NE(full.text.find("31103 ERROR: Unable to write file 'counter.nxf'"), std::string::npos) << full.text;
}

TEST(Windows, GivesAnOutputItsNameOnceItIsWhole) {
  const TempDir folder;
  const auto write_output = [&](const std::string &arguments) {
    const std::string probe = environment("CUBENET_WINDOWS") + "/tests/windows/windows_probe.exe";
    return run_shell("cd " + quoted(folder.path) + " && WINEDEBUG=-all \"$CUBENET_WINE\" " + quoted(probe) + " " +
                     arguments)
        .text;
  };
  for (const std::string former : {"", "former"}) {
    const std::string written = former.empty() ? "written new" : "written over";
    if (!former.empty()) write_file(folder.file("out"), former);
    for (const std::string end : {"discarded", "ended"}) {
      EXPECT_EQ(write_output("out " + end), written);
      EXPECT_EQ(std::filesystem::exists(folder.file("out")) ? read_file(folder.file("out")) : "", former);
    }
    EXPECT_EQ(write_output("out kept"), written + " whole");
    EXPECT_EQ(read_file(folder.file("out")), "text");
  }
  std::filesystem::create_symlink("out", folder.file("link"));
  for (const std::string arguments : {"link kept", "out read"}) {
    write_file(folder.file("out"), "a longer former text");
    EXPECT_EQ(write_output(arguments), "written over whole");
    EXPECT_EQ(read_file(folder.file("out")), "text");
  }
  EXPECT_TRUE(std::filesystem::is_symlink(folder.file("link")));
  const std::filesystem::directory_iterator files(folder.path);
  EXPECT_EQ(std::distance(begin(files), end(files)), 2);
}

TEST(Windows, TakesANullArgumentForAnEmptyOne) {
  const TempDir folder;
  const Outcome outcome =
      run_shell("cd " + quoted(folder.path) + " && HOSTIO6_NULL=counter " + quoted(CUBENET_PROGRAM) + " -b counter");
  EXPECT_EQ(outcome.status, 2);
  EXPECT_NE(outcome.text.find("Unable to open file '.tt2' for reading"), std::string::npos) << outcome.text;
}

TEST(Windows, NeverOverwritesTheInputTheLogOrTheConsole) {
  const std::string counter = read_file(kCounter);
  for (const char *arguments : {"-fext tt2 counter", "-fext TT2 counter", "-fext log -i counter.tt2 cubenet"}) {
    const WindowsRun run(arguments);
    EXPECT_EQ(run.outcome.status, 2) << arguments;
    EXPECT_NE(run.outcome.text.find("31103 ERROR: "), std::string::npos) << run.outcome.text;
    EXPECT_EQ(read_file(run.folder.path / "counter.tt2"), counter);
    EXPECT_EQ(read_file(run.folder.path / "cubenet.log"), run.outcome.text);
  }
  // Opened by a program of Windows: Wine reports nothing about other streams.
  const TempDir folder;
  const std::string line = "Z:" + environment("CUBENET_WINDOWS") + "/cubenet.exe counter >counter.nxf";
  const Outcome console = run_shell("cd " + quoted(folder.path) + " && cp " + quoted(kCounter) +
                                    " . && WINEDEBUG=-all \"$CUBENET_WINE\" cmd /c " + quoted(line));
  EXPECT_EQ(console.status, 2) << console.text;
  EXPECT_EQ(read_file(folder.file("counter.nxf")), read_file(folder.file("cubenet.log")));
}

// Files are bytes on Windows as elsewhere: a carriage return doesn't end a name, and the byte that once ended
// texts ends nothing.
TEST(Windows, ReadsAndWritesBytes) {
  const WindowsRun plain("counter");
  const std::string program = CUBENET_PROGRAM;
  const Outcome outcome = run_shell("cd " + quoted(plain.folder.path) +
                                    " && mkdir crlf && cd crlf && { printf '# \\032\\n'; cat ../counter.tt2; }" +
                                    " | sed 's/$/\\r/' >counter.tt2 && " + quoted(program) + " counter");
  EXPECT_EQ(outcome.status, 0) << outcome.text;
  for (const char *name : {"counter.nxf", "counter.ddf", "counter.tvx", "cubenet.log"}) {
    const std::string text = read_file(plain.folder.path / "crlf" / name);
    EXPECT_EQ(text, read_file(plain.folder.path / name)) << name;
    EXPECT_EQ(text.find('\r'), std::string::npos) << name;
  }
}

// The lines of a log, whatever the design is called.
std::multiset<std::string> log_lines(const std::filesystem::path &folder) {
  std::multiset<std::string> lines;
  std::istringstream log(std::regex_replace(read_file(folder / "cubenet.log"), std::regex("'[^']*'"), "'d'"));
  for (std::string line; std::getline(log, line);) lines.insert(line);
  return lines;
}

TEST(Windows, RunsAtOnceMixNoLines) {
  const WindowsRun one("counter");
  std::multiset<std::string> expected;
  for (int i = 0; i < 5; i++) expected.merge(log_lines(one.folder.path));
  run_shell("cd " + quoted(one.folder.path) + " && for i in 1 2 3 4; do cp counter.tt2 c$i.tt2; " +
            quoted(CUBENET_PROGRAM) + " c$i & done; wait");
  EXPECT_EQ(log_lines(one.folder.path), expected);
}

TEST(Windows, FindsItsInstallationAndShowsIt) {
  const std::string folder = environment("CUBENET_WINDOWS"),
                    probe = quoted(folder + "/tests/windows/windows_probe.exe");
  const Outcome plain = run_shell("WINEDEBUG=-all \"$CUBENET_WINE\" " + probe);
  EXPECT_TRUE(std::regex_match(plain.text, std::regex("1 (Z:.*\\\\tests) \\1"))) << plain.text;
  const Outcome kept = run_shell("QVSROOT=mine QVS_USE_QVSROOT=1 WINEDEBUG=-all \"$CUBENET_WINE\" " + probe);
  EXPECT_EQ(kept.text, "0 mine mine");
  // The boxes can't be seen here, but the calls can.
  const TempDir calls;
  const Outcome boxes =
      run_shell("cd " + quoted(calls.path) + " && QVS_DEBUG_ENV=1 WINEDEBUG=+relay \"$CUBENET_WINE\" " + probe +
                " >calls 2>&1; grep -ao 'Call user32.MessageBoxA(.*' calls");
  EXPECT_TRUE(std::regex_search(boxes.text, std::regex("\"QVSROOT=Z:.*\",[0-9a-f]+ \"qvprint: QVSROOT\"")))
      << boxes.text;
  EXPECT_TRUE(std::regex_search(boxes.text, std::regex("\"Z:.*\",[0-9a-f]+ \"qvprint: getenv\\(QVSROOT\\)\"")))
      << boxes.text;
}

// The libraries that a program imports, and the host's ordinals.
TEST(Windows, ImportsTheHostByOrdinalAndTheSystemAlone) {
  const struct {
    const char *folder, *dump;
  } programs[] = {{"CUBENET_WINDOWS", "x86_64-w64-mingw32-objdump"}, {"CUBENET_WINDOWS32", "i686-w64-mingw32-objdump"}};
  for (const auto &[folder, dump] : programs) {
    if (environment(folder).empty()) continue; // not built here
    const std::string text = run_shell(std::string(dump) + " -p " + quoted(environment(folder) + "/cubenet.exe")).text;
    std::set<std::string> libraries;
    const std::regex name("DLL Name: (\\S+)");
    for (std::sregex_iterator at(text.begin(), text.end(), name), end; at != end; ++at) libraries.insert((*at)[1]);
    EXPECT_EQ(libraries, (std::set<std::string>{"HOSTIO6.dll", "KERNEL32.dll", "msvcrt.dll"})) << folder;
    const std::size_t host = text.find("DLL Name: HOSTIO6.dll");
    const std::string rows = text.substr(host, text.find("\n\n", host) - host);
    // Below two lines of heading each import has a row; one by ordinal has a number and no name.
    EXPECT_EQ(std::count(rows.begin(), rows.end(), '\n'), 5) << rows;
    std::set<std::string> ordinals;
    const std::regex row("\\s0*([0-9a-f]+)\\s+<none>");
    for (std::sregex_iterator at(rows.begin(), rows.end(), row), end; at != end; ++at) ordinals.insert((*at)[1]);
    EXPECT_EQ(ordinals, (std::set<std::string>{"1", "3", "7", "8"})) << rows;
    EXPECT_NE(text.find("(Windows GUI)"), std::string::npos);
  }
}

} // namespace
} // namespace cubenet
