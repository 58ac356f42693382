// Outputs that can't be opened or don't take all their bytes, through whole runs: the first one that fails
// ends the run with its message and status 2, and leaves what was there before; only the constraints fail
// silently.
#include <csignal>
#include <filesystem>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/resource.h>
#include <unistd.h>

#include "frame/run.h"
#include "reliability/spawn.h"
#include "support/arguments.h"
#include "support/capture.h"
#include "support/temp_dir.h"

namespace cubenet {
namespace {

namespace fs = std::filesystem;

const std::vector<std::string> kOrder{"ddf", "tvx", "par", "nxf"}; // of writing

struct Outputs : testing::Test {
  const WorkingDir dir;
  std::vector<std::string> whole; // in the same order
  std::string console;

  Outputs() {
    std::signal(SIGXFSZ, SIG_IGN);
    std::signal(SIGPIPE, SIG_IGN);
    fs::copy(fs::path(PROJECT_DIR) / "examples/constraints/constraints.tt2", "d.tt2");
    EXPECT_EQ(run(), 0) << console;
    for (const std::string &extension : kOrder) whole.push_back(read_file("d." + extension));
    remove_all();
  }
  ~Outputs() override {
    std::signal(SIGXFSZ, SIG_DFL);
    std::signal(SIGPIPE, SIG_DFL);
  }

  int run(const std::string &line = "cubenet d") {
    CapturedConsole captured;
    Arguments arguments(line);
    const int status = run_program(arguments.count(), arguments.pointers.data());
    console = captured.text();
    return status;
  }
  static void remove_all() {
    for (const std::string &extension : kOrder) fs::remove_all("d." + extension);
    fs::remove("cubenet.log");
  }

  // What a run must have left and printed when its output `failing` (4: none) failed as `what` says.
  void check(int status, std::size_t failing, const std::string &what) {
    const bool silent = failing == 1 || failing == 4;
    EXPECT_EQ(status, silent ? 0 : 2);
    EXPECT_EQ(console.find("successfully") != std::string::npos, silent) << console;
    const std::string message = "31103 ERROR: " + std::string(failing == 0 ? "1 " : "") + "Unable to " + what +
                                " file 'd." + (silent ? "" : kOrder[failing]) + "'";
    EXPECT_EQ(console.find("31103") == std::string::npos, silent) << console;
    EXPECT_EQ(console.find(message) == std::string::npos, silent) << console;
    for (std::size_t i = 0; i < kOrder.size(); i++) {
      const std::string name = "d." + kOrder[i];
      if (i == failing) continue;
      if (i > failing && !silent)
        EXPECT_FALSE(fs::exists(name)) << name;
      else
        EXPECT_TRUE(fs::exists(name) && read_file(name) == whole[i]) << name;
    }
  }
};

TEST_F(Outputs, MayFailAtAnyByte) {
  rlimit before;
  getrlimit(RLIMIT_FSIZE, &before);
  std::size_t largest = 0;
  for (const std::string &text : whole) largest = std::max(largest, text.size());
  for (std::size_t n = 0; n <= largest && !HasFailure(); n++) {
    SCOPED_TRACE(n);
    const bool is_again = n % 2 == 1; // over the files of an earlier run
    for (std::size_t i = 0; is_again && i < kOrder.size(); i++) write_file("d." + kOrder[i], "former");
    const rlimit limit{n, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
    const int status = run();
    setrlimit(RLIMIT_FSIZE, &before);
    std::size_t failing = 0;
    while (failing < whole.size() && (failing == 1 || whole[failing].size() <= n)) failing++;
    for (std::size_t i = 0; is_again && i < kOrder.size(); i++) {
      const std::string name = "d." + kOrder[i];
      const bool is_former = fs::exists(name) && read_file(name) == "former";
      // Constraints of another run could be mistaken for this one's.
      EXPECT_EQ(is_former, i == 1 ? failing == 0 : i >= failing) << name;
      if (is_former) fs::remove(name);
    }
    const bool has_constraints = failing > 0 && whole[1].size() <= n;
    EXPECT_EQ(fs::exists("d.tvx"), has_constraints);
    if (failing > 1 && !has_constraints) write_file("d.tvx", whole[1]); // the rest is as if written
    check(status, failing, "write");
    EXPECT_FALSE(failing < whole.size() && fs::exists("d." + kOrder[failing]));
    remove_all();
  }
}

struct Fault {
  const char *what; // of the message
  void (*make)(const char *path, int closed_pipe);
};

TEST_F(Outputs, MayBeAnythingButAFile) {
  const Fault kFaults[] = {
      {"open", [](const char *path, int) { fs::create_directory(path); }},
      {"open", [](const char *path, int) { fs::create_symlink("nowhere/out", path); }},
      {"open", [](const char *path, int) { fs::create_symlink(path, path); }},
      {"open", [](const char *path, int) { fs::create_symlink("d.tt2", path); }},
      {"open", [](const char *path, int) { fs::create_hard_link("d.tt2", path); }},
      {"open", [](const char *path, int) { fs::create_symlink("cubenet.log", path); }},
      {"write", [](const char *path, int) { fs::create_symlink("/dev/full", path); }},
      {"write", [](const char *path, int pipe) { fs::create_symlink("/proc/self/fd/" + std::to_string(pipe), path); }},
  };
  const std::string input = read_file("d.tt2");
  for (const Fault &fault : kFaults)
    for (std::size_t failing = 0; failing < kOrder.size(); failing++) {
      SCOPED_TRACE(kOrder[failing] + " of fault " + std::to_string(&fault - kFaults));
      int ends[2];
      ASSERT_EQ(pipe(ends), 0);
      close(ends[0]);
      fault.make(("d." + kOrder[failing]).c_str(), ends[1]);
      check(run(), failing, fault.what);
      EXPECT_EQ(read_file("d.tt2"), input);
      EXPECT_TRUE(read_file("cubenet.log").starts_with("PLA Reading and Translation Software"));
      close(ends[1]);
      remove_all();
    }
}

// The run's console output would end up in the netlist, or over it.
TEST_F(Outputs, MayNotBeTheConsole) {
  for (const int stream : {1, 2})
    for (std::size_t failing : {0, 2, 3}) {
      const std::string name = "d." + kOrder[failing];
      Spawned run("cubenet d", [&] { dup2(open(name.c_str(), O_WRONLY | O_CREAT, 0666), stream); });
      EXPECT_EQ(run.wait(), 2);
      console = stream == 1 ? read_file(name) : run.text();
      check(2, failing, "open");
      EXPECT_EQ(stream == 1 ? console : read_file(name), stream == 1 ? read_file("cubenet.log") : "");
      remove_all();
    }
}

// Names in the input must not control a terminal; a file gets the bytes as they are.
TEST_F(Outputs, OnATerminalShowNoControls) {
  const std::string odd = "\x1b[2J\x07\x7f\x9b"
                          "0m\xc3\xa9\xc2\x9b\xe2\x82\xac\xf0\x9f\x98\x80\xe2\x82";
  write_file("d.tt2", "#$ PROPERTY corvane NOSUCH " + odd + "\n.e\n");
  Spawned plain("cubenet d");
  EXPECT_EQ(plain.wait(), 2);
  EXPECT_NE(plain.text().find(odd), std::string::npos) << plain.text();
  int terminal = -1, other_end = -1;
  ASSERT_EQ(openpty(&terminal, &other_end, nullptr, nullptr, nullptr), 0);
  Spawned shown("cubenet d", [&] { dup2(other_end, 1); });
  EXPECT_EQ(shown.wait(), 2);
  close(other_end);
  std::string text;
  char bytes[4096];
  for (ssize_t got; (got = read(terminal, bytes, sizeof bytes)) > 0;) text.append(bytes, static_cast<std::size_t>(got));
  close(terminal);
  EXPECT_NE(text.find("?[2J???0m\xc3\xa9\xc2?\xe2\x82\xac\xf0\x9f\x98\x80\xe2?'"), std::string::npos) << text;
}

TEST_F(Outputs, AreTheSameThroughLinksAndOverOlderFiles) {
  fs::create_directory("elsewhere");
  for (std::size_t i = 0; i < kOrder.size(); i++) {
    fs::create_symlink("elsewhere/" + kOrder[i], "d." + kOrder[i]); // two of them dangle
    if (i % 2 == 0) write_file("elsewhere/" + kOrder[i], std::string(100'000, 'x'));
  }
  check(run(), 4, "");
  EXPECT_TRUE(fs::is_symlink("d.nxf"));
  EXPECT_EQ(read_file("elsewhere/nxf"), whole[3]);
}

TEST_F(Outputs, OfAnEarlierRunStayWhenTheInputIsRefused) {
  for (const std::string &extension : kOrder) write_file("d." + extension, "older");
  write_file("e.tt2", ".i 1\n");
  EXPECT_EQ(run("cubenet -i e.tt2 d"), 2);
  EXPECT_EQ(run("cubenet -i missing.tt2 d"), 2);
  for (const std::string &extension : kOrder) EXPECT_EQ(read_file("d." + extension), "older");
}

// The input is the file that an output would replace, under its own name.
TEST_F(Outputs, NeverReplaceTheInput) {
  const std::string input = read_file("d.tt2");
  for (std::size_t i = 0; i < kOrder.size(); i++) {
    fs::copy("d.tt2", "d." + kOrder[i]);
    check(run("cubenet -i d." + kOrder[i] + " d"), i, "open");
    EXPECT_EQ(read_file("d." + kOrder[i]), input);
    remove_all();
  }
}

} // namespace
} // namespace cubenet
