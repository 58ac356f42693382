// The Windows program under Wine, inside a host library that records how it is called. Beside these tests the
// end-to-end cases run in this test program, on the Windows program. scripts/windows builds what they need and runs
// them; the folders of the builds come in the environment.
#include <cstdio>
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

struct Outcome {
  int status = -1;
  std::string text; // of both streams
};

Outcome run_shell(const std::string &command) {
  Outcome outcome;
  std::FILE *const pipe = popen(("{ " + command + "; } 2>&1").c_str(), "r");
  if (pipe == nullptr) return outcome;
  for (int c = std::fgetc(pipe); c != EOF; c = std::fgetc(pipe)) outcome.text += static_cast<char>(c);
  const int status = pclose(pipe);
  outcome.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return outcome;
}

// A run of the Windows program in a folder of its own, which holds counter.tt2.
struct WindowsRun {
  TempDir folder;
  std::string record; // the calls of the host library
  Outcome outcome;

  explicit WindowsRun(const std::string &arguments) {
    outcome = run_shell("cd " + folder.path.string() + " && cp " + kCounter + " . && HOSTIO6_RECORD=record " +
                        CUBENET_PROGRAM + " " + arguments);
    record = read_file(folder.path / "record");
  }
};

TEST(Windows, CallsTheHostInOrderAndPrintsThroughItAlone) {
  const WindowsRun run("-b counter");
  EXPECT_EQ(run.outcome.status, 0);
  EXPECT_EQ(run.record.find("8\n7 the program\n1 3: <-b> <counter>\n3 %s\n"), 0U) << run.record;
  EXPECT_TRUE(std::regex_match(run.record, std::regex("8\n7 .*\n1 .*\n(3 %s\n)+"))) << run.record;
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

TEST(Windows, NeverOverwritesTheInputOrTheLog) {
  const std::string counter = read_file(kCounter);
  for (const char *arguments : {"-fext tt2 counter", "-fext TT2 counter", "-fext log -i counter.tt2 cubenet"}) {
    const WindowsRun run(arguments);
    EXPECT_EQ(run.outcome.status, 2) << arguments;
    EXPECT_NE(run.outcome.text.find("31103 ERROR: "), std::string::npos) << run.outcome.text;
    EXPECT_EQ(read_file(run.folder.path / "counter.tt2"), counter);
    EXPECT_EQ(read_file(run.folder.path / "cubenet.log"), run.outcome.text);
  }
}

// Files are bytes on Windows as elsewhere: carriage returns end no name, and the byte that once ended texts ends
// nothing.
TEST(Windows, ReadsAndWritesBytes) {
  const WindowsRun plain("counter");
  const std::string program = CUBENET_PROGRAM;
  const Outcome outcome = run_shell("cd " + plain.folder.path.string() +
                                    " && mkdir crlf && cd crlf && { printf '# \\032\\n'; cat ../counter.tt2; }" +
                                    " | sed 's/$/\\r/' >counter.tt2 && " + program + " counter");
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
  run_shell("cd " + one.folder.path.string() + " && for i in 1 2 3 4; do cp counter.tt2 c$i.tt2; " + CUBENET_PROGRAM +
            " c$i & done; wait");
  EXPECT_EQ(log_lines(one.folder.path), expected);
}

TEST(Windows, FindsItsInstallationAndShowsIt) {
  const std::string folder = environment("CUBENET_WINDOWS"), probe = folder + "/tests/windows/installation_probe.exe";
  const Outcome plain = run_shell("WINEDEBUG=-all \"$CUBENET_WINE\" " + probe);
  EXPECT_TRUE(std::regex_match(plain.text, std::regex("1 (Z:.*\\\\tests) \\1"))) << plain.text;
  const Outcome kept = run_shell("QVSROOT=mine QVS_USE_QVSROOT=1 WINEDEBUG=-all \"$CUBENET_WINE\" " + probe);
  EXPECT_EQ(kept.text, "0 mine mine");
  // The boxes can't be seen here, but the calls can.
  const Outcome boxes = run_shell("QVS_DEBUG_ENV=1 WINEDEBUG=+relay \"$CUBENET_WINE\" " + probe +
                                  " 2>&1 | grep -ao 'Call user32.MessageBoxA(.*'");
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
    const std::string text = run_shell(std::string(dump) + " -p " + environment(folder) + "/cubenet.exe").text;
    std::set<std::string> libraries;
    const std::regex name("DLL Name: (\\S+)");
    for (std::sregex_iterator at(text.begin(), text.end(), name), end; at != end; ++at) libraries.insert((*at)[1]);
    EXPECT_EQ(libraries, (std::set<std::string>{"HOSTIO6.dll", "KERNEL32.dll", "msvcrt.dll"})) << folder;
    const std::string host = text.substr(text.find("DLL Name: HOSTIO6.dll"));
    std::set<std::string> ordinals;
    const std::regex row("8[0-9a-f]*0+([1-9])\\s+\\S+\\s+<none>");
    const std::string rows = host.substr(0, host.find("\n\n"));
    for (std::sregex_iterator at(rows.begin(), rows.end(), row), end; at != end; ++at) ordinals.insert((*at)[1]);
    EXPECT_EQ(ordinals, (std::set<std::string>{"1", "3", "7", "8"})) << rows;
    EXPECT_NE(text.find("(Windows GUI)"), std::string::npos);
  }
}

} // namespace
} // namespace cubenet
