// The companion as a command: exit statuses, and which stream gets the text.
#include <csignal>
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
  const char *out, *err; // parts of what must be printed; empty: nothing may be
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
  // Registers without an equation that are read, in a table that otherwise fits the netlist.
  cubenet::write_file("illegal.tt2",
                      "#$ PINS 3 clk q0 q1\n.i 3\n.o 2\n.ilb clk q0.Q q1.Q\n.ob q0.D q0\n-0- 11\n-10 01\n1-- 10\n");
  cubenet::write_file("instance.tt2", "#$ EXTERNAL m 1 i'i\n#$ INSTANCE u m 2 clk clk\n" + tt2);
  const CommandRun runs[] = {
      {"check c", 0, "in order: ", ""},
      {"check nothing", 2, "", "nothing.nxf: No such file"},
      {"prove c", 0, "proved: ", ""},
      {"prove c --abc", 0, "abc agrees", ""},
      {"prove c --nxf wrong.nxf", 1, "not proved: 1 of ", ""},
      {"prove c --nxf bad.nxf", 2, "", "bad.nxf:1: "},
      {"prove c --tt2 nothing", 2, "", "nothing: No such file"},
      {"prove c --tt2 wrong.nxf", 2, "", " ERROR: "},
      {"prove c --tt2 illegal.tt2", 1, "", "31311 ERROR: Signal 'q0' is used as register data input"},
      {"dump c --tt2 illegal.tt2", 1, "", "31311 ERROR: "},
      {"prove c --tt2 instance.tt2", 2, "", "instance.tt2: an INSTANCE statement"},
      {"dump c --tt2 instance.tt2", 2, "", "instance.tt2: an INSTANCE statement"},
      {"page c --tt2 instance.tt2", 2, "", "instance.tt2: an INSTANCE statement"},
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

TEST(Command, NeverWritesOverWhatItReadsOrPrintsTo) {
  const cubenet::WorkingDir directory;
  const std::string tt2 = cubenet::read_file(PROJECT_DIR "/examples/counter/counter.tt2");
  cubenet::write_file("c.tt2", tt2);
  cubenet::write_file("v", "clk\n0\n");
  ASSERT_EQ(std::system(CUBENET_PROGRAM " -b c >/dev/null && ln -s c.nxf link && ln c.nxf hard && ln -s c.tt2 table"),
            0);
  const std::string nxf = cubenet::read_file("c.nxf");
  struct Refusal {
    const char *arguments, *file;
  };
  const Refusal refusals[] = {
      {"dump -o c.tt2 c", "c.tt2"},
      {"dump -o c.tt2 -i table x", "c.tt2"},
      {"page -o table c", "table"},
      {"page -o link c", "link"},
      {"graph -o c.nxf c", "c.nxf"},
      {"graph -o ./hard c", "./hard"},
      {"export json -o link c", "link"},
      {"sim c --vectors v --vcd c.nxf", "c.nxf"},
      {"sim c --vectors v --vcd v", "v"},
      {"export blif -o out c", "out"},
      {"sim c --vectors v --vcd err", "err"},
      {"sim c --vectors v --vcd c.tt2", "c.tt2"},
      {"page -o cubenet.log c", "cubenet.log"},
  };
  for (const auto &[arguments, file] : refusals) {
    const int status = std::system((std::string(CUBEKIT_PROGRAM) + ' ' + arguments + " >out 2>err").c_str());
    EXPECT_EQ(WEXITSTATUS(status), 2) << arguments;
    EXPECT_EQ(cubenet::read_file("err"), std::string(file) + ": is still needed; not overwritten\n");
    EXPECT_EQ(cubenet::read_file("out"), "") << arguments;
    EXPECT_EQ(cubenet::read_file("c.nxf"), nxf) << arguments;
  }
  EXPECT_EQ(cubenet::read_file("c.tt2"), tt2);
  EXPECT_EQ(cubenet::read_file("v"), "clk\n0\n");
}

// A limit on the size of files, and a run that is ended while the waveform is open.
TEST(Command, LeavesNoPartOfAnOutput) {
  const cubenet::WorkingDir directory;
  cubenet::write_file("c.tt2", cubenet::read_file(PROJECT_DIR "/examples/counter/counter.tt2"));
  ASSERT_EQ(std::system(CUBENET_PROGRAM " -b c >/dev/null && mkfifo v && echo former >w && ls -A >before"), 0);
  for (const char *command : {"export verilog c -o w", "dump c -o w", "graph c -o w", "page c -o w"}) {
    const std::string line = std::string("ulimit -f 1; " CUBEKIT_PROGRAM " ") + command + " 2>err";
    EXPECT_EQ(WEXITSTATUS(std::system(line.c_str())), 2) << command;
    EXPECT_EQ(cubenet::read_file("err"), "w: can't be written: File too large\n");
  }
  EXPECT_EQ(WEXITSTATUS(std::system("ulimit -f 1; " CUBEKIT_PROGRAM " export verilog c >out 2>err")), 2);
  EXPECT_EQ(cubenet::read_file("err"), "standard output: can't be written: File too large\n");
  const char *const kEnded =
      CUBEKIT_PROGRAM " sim c --vectors v --vcd w >out 2>err & exec 2>/dev/null 3>v; echo clk >&3; "
                      "for i in $(seq 500); do ls -A | grep -q cubenet- && break; sleep 0.01; "
                      "done; kill $!; wait $!";
  EXPECT_EQ(WEXITSTATUS(std::system(kEnded)), 128 + SIGTERM);
  EXPECT_EQ(cubenet::read_file("w"), "former\n");
  EXPECT_EQ(std::system("rm err out; ls -A | diff before -"), 0);
}

} // namespace
} // namespace cubekit
