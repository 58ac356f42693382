// Runs the real program over the cases under cases/, each in a fresh directory, and compares everything that
// it leaves with the case's expected/ directory, both ways: a missing file fails, and so does an extra one.
//
// A case is a directory with a file `steps`, one step a line, and the input files that it brings along:
//   input PATH     copies a file of the project (from its root) into the directory of the run
//   mkdir NAME     makes a directory, where a file of that name is to be impossible
//   cubenet ARGS   runs the program; arguments are separated by single spaces
// expected/ holds `console` (of all runs in a row) and `log`, or `console_and_log` where both are the same,
// `status` (one exit status a line) and the other files that the runs left. With CUBENET_RENEW=1 in the
// environment expected/ is rewritten instead (scripts/renew_cases does it for all cases); CUBENET_PROGRAM
// there names another program to run (scripts/check_32_bits does).

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "support/temp_dir.h"

namespace {

namespace fs = std::filesystem;
using cubenet::read_file;

using Files = std::map<std::string, std::string>; // name, content

const char *program() {
  const char *const other = std::getenv("CUBENET_PROGRAM");
  return other != nullptr ? other : CUBENET_PROGRAM;
}

const fs::path kCases = fs::path(PROJECT_DIR) / "tests/end_to_end/cases";

Files read_files(const fs::path &directory) {
  Files files;
  if (!fs::exists(directory)) return files;
  for (const auto &entry : fs::directory_iterator(directory))
    if (entry.is_regular_file()) files[entry.path().filename()] = read_file(entry.path());
  return files;
}

std::vector<std::string> split(const std::string &line, char separator) {
  std::vector<std::string> words;
  std::istringstream stream(line);
  for (std::string word; std::getline(stream, word, separator);) words.push_back(word);
  return words;
}

// Runs the program in `directory`, both streams appended to `console`; returns its exit status, -1 when it
// was killed.
int run_program(std::vector<std::string> words, const fs::path &directory, const fs::path &console) {
  std::vector<char *> arguments;
  for (std::string &word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  const pid_t child = fork();
  if (child == 0) {
    const int stream = open(console.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0666);
    if (chdir(directory.c_str()) != 0 || dup2(stream, 1) < 0 || dup2(stream, 2) < 0) _exit(126);
    execv(program(), arguments.data());
    _exit(127);
  }
  int status = 0;
  if (child < 0 || waitpid(child, &status, 0) != child || !WIFEXITED(status)) return -1;
  return WEXITSTATUS(status);
}

// Carries out the steps of a case and returns what they left.
Files run_case(const fs::path &source, const fs::path &scratch) {
  const fs::path directory = scratch / "run", console = scratch / "console";
  fs::create_directories(directory);
  for (const auto &entry : fs::directory_iterator(source))
    if (entry.is_regular_file() && entry.path().filename() != "steps") fs::copy(entry.path(), directory);
  std::string statuses;
  std::set<std::string> inputs;
  for (const std::string &step : split(read_file(source / "steps"), '\n')) {
    const std::vector<std::string> words = split(step, ' ');
    if (words.at(0) == "input") {
      fs::copy(fs::path(PROJECT_DIR) / words.at(1), directory);
    } else if (words.at(0) == "mkdir") {
      fs::create_directory(directory / words.at(1));
    } else if (words.at(0) == "cubenet") {
      if (statuses.empty())
        for (const auto &[name, content] : read_files(directory)) inputs.insert(name);
      statuses += std::to_string(run_program(words, directory, console)) + '\n';
    } else {
      ADD_FAILURE() << "unknown step: " << step;
    }
  }
  Files result = read_files(directory);
  for (const std::string &name : inputs) result.erase(name);
  result["console"] = read_file(console);
  if (auto log = result.extract("cubenet.log")) {
    const bool is_same = log.mapped() == result["console"];
    if (is_same) result.erase("console");
    log.key() = is_same ? "console_and_log" : "log"; // *.log is what version control ignores
    result.insert(std::move(log));
  }
  result["status"] = statuses;
  return result;
}

void renew(const fs::path &expected, const Files &files) {
  fs::remove_all(expected);
  fs::create_directories(expected);
  for (const auto &[name, content] : files) cubenet::write_file(expected / name, content);
}

class EndToEnd : public testing::TestWithParam<std::string> {};

TEST_P(EndToEnd, LeavesWhatIsExpected) {
  const cubenet::TempDir scratch;
  const fs::path source = kCases / GetParam();
  const Files files = run_case(source, scratch.path);

  if (const char *mode = std::getenv("CUBENET_RENEW"); mode != nullptr && std::string(mode) == "1")
    renew(source / "expected", files);
  const Files expected = read_files(source / "expected");
  for (const auto &[name, content] : expected) {
    if (!files.contains(name))
      ADD_FAILURE() << name << " was not written";
    else
      EXPECT_EQ(files.at(name), content) << "in " << name;
  }
  for (const auto &[name, content] : files) EXPECT_TRUE(expected.contains(name)) << name << " is not expected";
}

std::vector<std::string> case_names() {
  std::vector<std::string> names;
  for (const auto &entry : fs::directory_iterator(kCases)) names.push_back(entry.path().filename());
  std::sort(names.begin(), names.end());
  return names;
}

INSTANTIATE_TEST_SUITE_P(Cases, EndToEnd, testing::ValuesIn(case_names()),
                         [](const auto &case_name) { return case_name.param; });

} // namespace
