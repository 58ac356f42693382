// The companion as a command: exit statuses, and which stream speaks.
#include <cstdlib>
#include <string>

#include <gtest/gtest.h>
#include <sys/wait.h>

#include "support/temp_dir.h"

namespace cubekit {
namespace {

struct CommandRun {
  const char *arguments;
  int status;
  const char *out, *err; // parts of what must be said; empty: nothing may be said
};

TEST(Command, EndsWithTheStatusOfItsAnswerAndSpeaksOnTheRightStream) {
  const cubenet::WorkingDir directory;
  const std::string tt2 = cubenet::read_file(PROJECT_DIR "/examples/counter/counter.tt2");
  cubenet::write_file("c.tt2", tt2);
  ASSERT_EQ(std::system(CUBENET_PROGRAM " -b c >/dev/null"), 0);
  const std::string nxf = cubenet::read_file("c.nxf");
  cubenet::write_file("bad.nxf", "NXF");
  std::string wrong = nxf;
  wrong.replace(wrong.find("\t0 1"), 2, "\t1");
  cubenet::write_file("wrong.nxf", wrong);
  const CommandRun runs[] = {
      {"check c", 0, "in order: ", ""},
      {"check nothing", 2, "", "nothing.nxf: No such file"},
      {"prove c", 0, "proved: ", ""},
      {"prove c --abc", 0, "abc agrees", ""},
      {"prove c --nxf wrong.nxf", 1, "not proved: 1 of ", ""},
      {"prove c --nxf bad.nxf", 2, "", "bad.nxf:1: "},
      {"prove c --tt2 nothing", 2, "", "nothing: No such file"},
      {"prove c --tt2 wrong.nxf", 2, "", " ERROR: "},
      {"explain 31301", 0, "A register has no clock.", ""},
      {"explain --all", 0, "\n### 31301\n", ""},
      {"explain --all 31301", 2, "", "Exactly 1 option"},
      {"explain 1", 1, "", "no message has the number 1"},
      {"explain x", 2, "", "NUMBER"},
      {"random 7 --series 3", 2, "", "series"},
      {"random 7 --series 8", 0, ".end\n", ""},
      {"help prove", 0, "Usage: cubekit prove ", ""},
      {"help nothing", 2, "", "there is no command 'nothing'"},
      {"--help", 0, "Subcommands:", ""},
      {"--version", 0, "cubekit 7.1.01\n", ""},
      {"", 2, "", "subcommand"},
      {"nothing", 2, "", "subcommand"},
  };
  for (const CommandRun &run : runs) {
    const std::string line = std::string(CUBEKIT_PROGRAM) + ' ' + run.arguments + " >out 2>err";
    const int status = std::system(line.c_str());
    EXPECT_EQ(WEXITSTATUS(status), run.status) << run.arguments;
    for (const auto &[file, part] : {std::pair{"out", run.out}, std::pair{"err", run.err}}) {
      const std::string said = cubenet::read_file(file);
      if (*part == '\0')
        EXPECT_EQ(said, "") << run.arguments;
      else
        EXPECT_NE(said.find(part), std::string::npos) << run.arguments << ": " << said;
    }
  }
}

TEST(Command, NeverCallsLostOutputOrAFileThatDoesNotFitASuccess) {
  const cubenet::WorkingDir directory;
  cubenet::write_file("c.tt2", cubenet::read_file(PROJECT_DIR "/examples/counter/counter.tt2"));
  ASSERT_EQ(std::system(CUBENET_PROGRAM " -b c >/dev/null"), 0);
  const auto status_of = [](const std::string &arguments) {
    return WEXITSTATUS(
        std::system(("ASAN_OPTIONS=allocator_may_return_null=1 " CUBEKIT_PROGRAM " " + arguments).c_str()));
  };
  for (const char *command : {"check c", "prove c", "explain 31301", "help prove", "--help", "stat c", "export json c"})
    EXPECT_EQ(status_of(std::string(command) + " >/dev/full 2>/dev/null"), 2) << command;
  ASSERT_EQ(std::system("truncate -s 100G huge.nxf"), 0);
  EXPECT_EQ(status_of("stat huge 2>err"), 2);
  EXPECT_NE(cubenet::read_file("err").find("not enough memory"), std::string::npos);
  EXPECT_EQ(status_of("prove c --nxf /dev/stdin <c.nxf >out"), 0);
  ASSERT_EQ(std::system("mkfifo pipe && { cat c.nxf >pipe & }"), 0);
  EXPECT_EQ(status_of("prove c --nxf pipe >out"), 0);
}

} // namespace
} // namespace cubekit
