// Inputs that are not ordinary files, and inputs of unusual size.
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>
#include <set>
#include <string>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "frame/run.h"
#include "reliability/spawn.h"
#include "report/console.h"
#include "support/temp_dir.h"

namespace cubenet {
namespace {

namespace fs = std::filesystem;

constexpr long kSmallPeak = 100'000; // KiB, sanitizers' own memory included

// A new process counts the memory of the one it was forked from.
long own_peak() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

std::set<std::string> files() {
  std::set<std::string> names;
  for (const auto &entry : fs::directory_iterator(".")) names.insert(entry.path().filename());
  names.erase("cubenet.log");
  return names;
}

TEST(Inputs, ThatHoldNoDesignAreRefusedAtOnce) {
  const WorkingDir dir;
  write_file("empty", "");
  write_file("blank", " \n\t\r\n\f\n");
  std::string noise;
  for (std::mt19937 random(3); noise.size() < 300'000;) noise += static_cast<char>(random());
  write_file("noise", noise);
  write_file("zeros", "");
  fs::resize_file("zeros", std::uintmax_t{1} << 30);
  const std::set<std::string> before = files();
  const struct {
    const char *input, *numbers;
  } rows[] = {{"empty", "31204"}, {"blank", "31410"},     {"noise", "31410"},
              {"zeros", "31204"}, {"/dev/null", "31204"}, {"missing", "31102"},
              {".", "31102"},     {"empty/x", "31102"},   {"/proc/self/mem", "31102"}};
  for (const auto &row : rows) {
    long peak = 0;
    Spawned run(std::string("cubenet -i ") + row.input + " d");
    EXPECT_EQ(run.wait(&peak), 2) << row.input;
    EXPECT_NE(run.text().find(row.numbers), std::string::npos) << row.input << run.text();
    EXPECT_LT(peak, own_peak() + kSmallPeak) << row.input;
    EXPECT_EQ(files(), before) << row.input;
  }
}

TEST(Inputs, ThatMayNotBeReadAreReported) {
  const WorkingDir dir;
  fs::permissions(dir.path, fs::perms::all);
  write_file("d.tt2", ".i 1\n");
  fs::permissions("d.tt2", fs::perms::none);
  const int program = open(CUBENET_PROGRAM, O_PATH); // its folder may be closed to the other user
  Spawned run("cubenet d", [program] {
    if (getuid() != 0) return;
    char name[] = "cubenet", design[] = "d";
    char *arguments[] = {name, design, nullptr};
    if (setgid(65534) == 0 && setuid(65534) == 0) fexecve(program, arguments, environ);
    _exit(126);
  });
  EXPECT_EQ(run.wait(), 2);
  EXPECT_NE(run.text().find("31102 SYSTEM ERROR: Unable to open file 'd.tt2' for reading"), std::string::npos)
      << run.text();
  close(program);
}

TEST(Inputs, MayComeThroughAPipe) {
  const WorkingDir dir;
  std::string design = "#$ PINS 3 a b y\n.i 2\n.o 1\n.ilb a b\n.ob y\n";
  for (int i = 0; i < 30'000; i++) design += "# a comment that fills the pipe many times\n";
  design += "11 1\n.e\n";
  write_file("file.tt2", design);
  EXPECT_EQ(Spawned("cubenet file").wait(), 0);
  int ends[2];
  ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
  Spawned run("cubenet -i /dev/stdin piped", [&ends] { dup2(ends[0], 0); });
  close(ends[0]);
  std::thread writer([&] {
    for (std::size_t at = 0; at < design.size(); at += 1000)
      EXPECT_GT(write(ends[1], design.data() + at, std::min<std::size_t>(1000, design.size() - at)), 0);
    close(ends[1]);
  });
  writer.join();
  EXPECT_EQ(run.wait(), 0) << run.text();
  for (const std::string extension : {".nxf", ".ddf", ".tvx"})
    EXPECT_EQ(read_file("piped" + extension).size(), read_file("file" + extension).size());
}

// Changes the input when the reader first warns.
struct MeddlingConsole final : HostConsole {
  std::function<void()> meddle;
  std::string text;
  void print(std::string_view more) override {
    text += more;
    if (more.find(" WARNING: ") != std::string_view::npos) std::exchange(meddle, [] {})();
  }
};

TEST(Inputs, ThatChangeWhileTheyAreReadAreRefused) {
  const WorkingDir dir;
  const std::string head = "#$ PINS 3 a b y\n#$ PROPERTY corvane NOSUCH a\n.i 2\n.o 1\n.ilb a b\n.ob y\n";
  const std::string design = head + std::string(1'000'000, '\n') + "11 1\n.e\n";
  const struct {
    std::function<void()> change;
    int status;
  } rows[] = {
      {[] {}, 0},
      {[&] { fs::resize_file("d.tt2", head.size() + 500'000); }, 2},
      {[] { std::fstream("d.tt2", std::ios::in | std::ios::out) << '#'; }, 2},
      {[] { std::fstream("d.tt2", std::ios::app) << "11 1\n"; }, 2}, // after what is read
      {[] { fs::create_hard_link("d.tt2", "other"), fs::rename("d.tt2", "moved"); }, 0},
  };
  for (const auto &row : rows) {
    write_file("d.tt2", design);
    fs::last_write_time("d.tt2", fs::last_write_time("d.tt2") - std::chrono::hours(1));
    MeddlingConsole console;
    console.meddle = row.change;
    HostConsole *const before = set_host_console(&console);
    Arguments arguments("cubenet d");
    const int status = run_program(arguments.count(), arguments.pointers.data());
    set_host_console(before);
    EXPECT_EQ(status, row.status) << &row - rows;
    const std::string refusal = "31102 SYSTEM ERROR: Unable to open file 'd.tt2' for reading";
    EXPECT_EQ(console.text.find(refusal) == std::string::npos, row.status == 0) << &row - rows << console.text;
    EXPECT_EQ(fs::remove("d.nxf"), row.status == 0) << &row - rows;
  }
}

// Nothing here measures time; a step that is not linear runs into the suite's own limit.
TEST(Inputs, MayBeLarge) {
  const WorkingDir dir;
  constexpr int kPins = 100'000, kNodes = 10'000, kAttributes = 1'000'000;
  std::string text = "#$ PINS " + std::to_string(kPins);
  for (int i = 0; i < kPins; i++) text += " p" + std::to_string(i);
  text += "\n#$ NODES " + std::to_string(kNodes);
  for (int i = 0; i < kNodes; i++) text += " n" + std::to_string(i);
  text += "\n.i 2\n.o " + std::to_string(kNodes) + "\n.ilb p0 p1\n.ob";
  for (int i = 0; i < kNodes; i++) text += i % 2 == 0 ? " p" + std::to_string(i + 2) : " n" + std::to_string(i);
  text += "\n";
  for (int i = 0; i < kAttributes; i++)
    text +=
        "#$ PROPERTY corvane " + std::string(i % 2 == 0 ? "CRIT p" : "NOSUCH n") + std::to_string(i % kNodes) + "\n";
  text += "11 " + std::string(kNodes, '1') + "\n.e\n";
  write_file("d.tt2", text);
  long peak = 0;
  Spawned run("cubenet d");
  EXPECT_EQ(run.wait(&peak), 0) << run.text().substr(0, 2000);
  EXPECT_LT(peak, own_peak() + 700'000) << "KiB";
}

} // namespace
} // namespace cubenet
