// What is around a run: other runs in the same folder, a run that was killed, the environment, the argument count.
#include <algorithm>
#include <csignal>
#include <filesystem>
#include <map>
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
std::string large_design(const std::string &name, int warnings) {
  std::string text = "#$ PINS 17 y";
  for (int i = 0; i < 16; i++) text += " " + name + std::to_string(i);
  text += "\n";
  for (int i = 0; i < warnings; i++)
    text += "#$ PROPERTY corvane LOCK " + name + "_unknown_" + std::to_string(i) + " 5\n";
  text += ".i 16\n.o 1\n.ilb";
  for (int i = 0; i < 16; i++) text += " " + name + std::to_string(i);
  text += "\n.ob y\n";
  for (int i = 0; i < 20'000; i++) {
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

TEST(Environment, AKilledRunIsMadeGoodByTheNext) {
  const WorkingDir dir;
  write_file("d.tt2", large_design("in", 10));
  ASSERT_EQ(Spawned("cubenet d").wait(), 0);
  const auto whole = outputs("d");
  for (useconds_t delay = 500; delay < 40'000; delay += delay / 2) {
    Spawned killed("cubenet d");
    usleep(delay);
    kill(killed.process, SIGKILL);
    killed.wait();
    ASSERT_EQ(Spawned("cubenet d").wait(), 0);
    ASSERT_TRUE(outputs("d") == whole) << delay;
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
  // A console that takes nothing changes neither the files nor the status.
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
