// What surrounds a run: other runs in the same folder, a run that was killed, the environment, the argument
// count.
#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <map>
#include <random>
#include <set>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "reliability/spawn.h"
#include "support/temp_dir.h"

namespace cubenet {
namespace {

namespace fs = std::filesystem;

// Outputs of some hundred KiB and `warnings` messages, all of which name the design.
std::string large_design(const std::string &name, int warnings, int terms = 20'000) {
  std::string text = "#$ PINS 17 y";
  for (int i = 0; i < 16; i++) text += " " + name + std::to_string(i);
  text += "\n";
  for (int i = 0; i < warnings; i++)
    text += "#$ PROPERTY corvane LOCK " + name + "_unknown_" + std::to_string(i) + " 5\n";
  text += ".i 16\n.o 1\n.ilb";
  for (int i = 0; i < 16; i++) text += " " + name + std::to_string(i);
  text += "\n.ob y\n";
  for (int i = 0; i < terms; i++) {
    for (int bit = 0; bit < 16; bit++) text += (i * 3 >> bit & 1) != 0 ? '1' : '0';
    text += " 1\n";
  }
  return text + ".e\n";
}

std::map<std::string, std::string> outputs(const std::string &design) {
  std::map<std::string, std::string> texts;
  for (const std::string extension : {".nxf", ".ddf", ".tvx"}) texts[extension] = read_file(design + extension);
  return texts;
}

// A line and those that continue it.
std::vector<std::string> messages(const std::string &text) {
  std::vector<std::string> all;
  for (std::size_t at = 0, end; at < text.size(); at = end + 1) {
    end = std::min(text.find('\n', at), text.size());
    const std::string line = text.substr(at, end - at);
    if (line.starts_with("      ") && !all.empty())
      all.back() += line;
    else
      all.push_back(line);
  }
  std::sort(all.begin(), all.end());
  return all;
}

TEST(Environment, TwoRunsInOneFolderMixNoMessages) {
  const WorkingDir dir;
  std::map<std::string, std::map<std::string, std::string>> alone;
  for (const std::string design : {"a", "b"}) {
    write_file(design + ".tt2", large_design(design, 3000));
    ASSERT_EQ(Spawned("cubenet " + design).wait(), 0);
    alone[design] = outputs(design);
  }
  for (const std::string second : {"b", "a"}) { // another design, and the same one
    fs::remove("cubenet.log");
    Spawned first("cubenet a"), other("cubenet " + second);
    EXPECT_EQ(first.wait(), 0);
    EXPECT_EQ(other.wait(), 0);
    EXPECT_EQ(messages(read_file("cubenet.log")), messages(first.text() + other.text()));
    EXPECT_TRUE(outputs("a") == alone["a"]);
    EXPECT_TRUE(outputs(second) == alone[second]);
  }
}

std::set<std::string> files() {
  std::set<std::string> names;
  for (const auto &entry : fs::directory_iterator(".")) names.insert(entry.path().filename());
  return names;
}

constexpr int kTrials = 10; // of each kind; --gtest_repeat makes more
constexpr int kTerms = 500; // some 10 ms in gates

// Every file under a final name is the one of a whole run, this one or an earlier one, and a run that is
// asked to end leaves no other file.
TEST(Environment, ARunThatIsEndedLeavesWholeFiles) {
  const WorkingDir dir;
  write_file("d.tt2", large_design("in", 10, kTerms));
  ASSERT_EQ(Spawned("cubenet -pla d").wait(), 0);
  const auto former = outputs("d");
  const auto start = std::chrono::steady_clock::now();
  ASSERT_EQ(Spawned("cubenet -and 2 d").wait(), 0);
  const std::chrono::duration<double, std::micro> run_time = std::chrono::steady_clock::now() - start;
  const auto whole = outputs("d");
  const std::set<std::string> names = files();
  std::mt19937 random(std::random_device{}());
  std::uniform_real_distribution<double> delay(0, run_time.count());
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGKILL})
    for (int trial = 0; trial < kTrials; trial++) {
      const bool is_first = trial % 2 == 0; // there is no file yet
      for (const auto &[extension, text] : former)
        is_first ? void(fs::remove("d" + extension)) : write_file("d" + extension, text);
      Spawned run("cubenet -and 2 d", [signal] { std::signal(signal, SIG_DFL); });
      ASSERT_GT(run.process, 0);
      usleep(static_cast<useconds_t>(delay(random)));
      kill(run.process, signal);
      const int status = run.wait();
      EXPECT_TRUE(status == 0 || status == 128 + signal) << status;
      for (const auto &[extension, text] : former) {
        if (is_first && !fs::exists("d" + extension)) continue;
        const std::string left = read_file("d" + extension);
        EXPECT_TRUE((left == text && !is_first) || left == whole.at(extension)) << extension << " by " << signal;
      }
      for (const std::string &name : files())
        EXPECT_TRUE(names.contains(name) || (signal == SIGKILL && fs::remove(name))) << name << " by " << signal;
    }
  // A run in the background, which such signals don't concern, goes on.
  std::signal(SIGINT, SIG_IGN);
  Spawned run("cubenet -and 2 d");
  ASSERT_GT(run.process, 0);
  kill(run.process, SIGINT);
  EXPECT_EQ(run.wait(), 0);
  std::signal(SIGINT, SIG_DFL);
}

TEST(Environment, UnlikeRunsAtOnceLeaveTheFilesOfOneEach) {
  const WorkingDir dir;
  write_file("d.tt2", large_design("in", 10, kTerms));
  std::map<std::string, std::string> alone[2];
  const std::string lines[] = {"cubenet -pla d", "cubenet -and 2 d"};
  for (const std::size_t i : {0, 1}) {
    ASSERT_EQ(Spawned(lines[i]).wait(), 0);
    alone[i] = outputs("d");
  }
  ASSERT_NE(alone[0], alone[1]);
  const std::set<std::string> names = files();
  std::mt19937 random(std::random_device{}());
  for (int trial = 0; trial < kTrials; trial++) {
    Spawned first(lines[trial % 2]);
    usleep(static_cast<useconds_t>(random() % 20'000));
    Spawned second(lines[1 - trial % 2]);
    EXPECT_EQ(first.wait(), 0);
    EXPECT_EQ(second.wait(), 0);
    for (const auto &[extension, text] : outputs("d"))
      EXPECT_TRUE(text == alone[0][extension] || text == alone[1][extension]) << extension;
    EXPECT_EQ(files(), names);
  }
}

TEST(Environment, ChangesNoByte) {
  const WorkingDir dir;
  fs::copy(fs::path(PROJECT_DIR) / "examples/constraints/constraints.tt2", "d.tt2");
  Spawned plain("cubenet d");
  ASSERT_EQ(plain.wait(), 0);
  const auto expected = outputs("d");
  const std::string console = plain.text(), log = read_file("cubenet.log");
  void (*const worlds[])() = {
      [] { clearenv(); },
      [] { setenv("LC_ALL", "tr_TR.UTF-8", 1), setenv("LANG", "de_DE", 1), setenv("LANGUAGE", "ar", 1); },
      [] { setenv("LC_ALL", "C.UTF-8", 1), setenv("TZ", "Asia/Kathmandu", 1), unsetenv("HOME"); },
      [] { umask(0777), setenv("TMPDIR", "/nowhere", 1), setenv("QVSROOT", "/nowhere", 1); },
      [] { std::signal(SIGPIPE, SIG_IGN), setpriority(PRIO_PROCESS, 0, 1); },
      [] { close(0); },
  };
  for (const auto &world : worlds) {
    for (const char *name : {"d.nxf", "d.ddf", "d.tvx", "d.par", "cubenet.log"}) fs::remove(name);
    Spawned run("cubenet d", world);
    ASSERT_EQ(run.wait(), 0) << &world - worlds;
    for (const char *name : {"d.nxf", "d.ddf", "d.tvx", "d.par", "cubenet.log"})
      fs::permissions(name, fs::perms::owner_all);
    EXPECT_EQ(run.text(), console);
    EXPECT_EQ(read_file("cubenet.log"), log);
    EXPECT_TRUE(outputs("d") == expected) << &world - worlds;
  }
  // A console that accepts nothing changes neither the files nor the status.
  void (*const consoles[])() = {
      [] { close(1), close(2); },
      [] { dup2(open("/dev/full", O_WRONLY), 1); },
      [] {
        int ends[2];
        if (pipe(ends) == 0) dup2(ends[1], 1), close(ends[0]);
      },
  };
  for (const auto &prepare : consoles) {
    fs::remove("cubenet.log");
    EXPECT_EQ(Spawned("cubenet d", prepare).wait(), 0) << &prepare - consoles;
    EXPECT_EQ(read_file("cubenet.log"), log);
    EXPECT_TRUE(outputs("d") == expected);
  }
}

TEST(Environment, AnyNumberOfArgumentsIsReadToItsEnd) {
  const WorkingDir dir;
  fs::copy(fs::path(PROJECT_DIR) / "examples/counter/counter.tt2", "d.tt2");
  for (const int count : {0, 1, 2, 101, 102, 5000}) {
    std::string line = count > 0 ? "cubenet" : "";
    for (int i = 2; i < count; i++) line += " -b";
    const bool translates = count >= 2;
    Spawned run(line + (translates ? " d" : ""));
    EXPECT_EQ(run.wait(), translates ? 0 : 2) << count;
    EXPECT_EQ(run.text().find("Usage: cubenet") == std::string::npos, translates) << count;
    EXPECT_EQ(fs::remove("d.nxf"), translates);
  }
  EXPECT_EQ(Spawned("cubenet " + std::string(100'000, 'd')).wait(), 2);
  EXPECT_EQ(Spawned("cubenet %s%n%n").wait(), 2);
}

} // namespace
} // namespace cubenet
