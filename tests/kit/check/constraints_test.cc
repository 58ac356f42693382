// The check of the fitter's files: nothing that the translator writes is refused, and of random edits only
// those of free values are accepted. CUBEKIT_DESIGNS and CUBEKIT_EDITS set how many designs, and how many
// edits of each file.
#include <cstdlib>
#include <filesystem>
#include <random>
#include <regex>

#include "kit/random/random_design.h"
#include "kit/support/translate.h"
#include "reader/property_keywords.h"

namespace cubekit {
namespace {

using cubenet::read_file;
using cubenet::write_file;

std::size_t setting(const char *name, std::size_t otherwise) {
  const char *text = std::getenv(name);
  return text == nullptr ? otherwise : std::strtoull(text, nullptr, 10);
}

struct Random {
  std::mt19937 numbers;
  std::size_t below(std::size_t limit) { return numbers() % limit; }
  template <typename List> const auto &pick(const List &list) { return list[below(std::size(list))]; }
};

std::vector<std::string> words_behind(const std::string &text, const std::string &head) {
  std::istringstream line(text.substr(std::min(text.find(head) + head.size(), text.size())));
  std::string words;
  std::getline(line, words);
  std::istringstream each(words);
  return {std::istream_iterator<std::string>(each), {}};
}

// What may follow a keyword; the reader refuses some of it.
std::string random_operand(const cubenet::KeywordRow &row, const std::vector<std::string> &signals, Random &random) {
  const std::string switches[] = {"on", "OFF", "up", "Hold", "fast"}, voltages[] = {"INPUT", "OUTPUT", "BIDI"},
                    levels[] = {"vcc", "VVCIO"}, clocks[] = {"clk0", "CLK2", "ioclk1", "FASTCLK", "slowclk"},
                    words[] = {"g1", "g2", "glb", "IOC", "17", "4"}, files[] = {"a/b=c;d", "X:y", "P;"},
                    values[] = {"on", "verbose", "area", "2", "07", "SIM none edif", "vhdl"};
  const bool is_switch = random.below(2) == 0;
  if (row.handler == cubenet::HANDLE_VOLTAGE)
    return (is_switch ? random.pick(voltages) : random.pick(signals)) + ' ' + random.pick(levels);
  if (row.handler == cubenet::HANDLE_SWITCH || (row.handler == cubenet::HANDLE_EITHER && is_switch))
    return random.pick(switches);
  if (row.operand == cubenet::VALUE_FILE) return random.pick(files);
  if (row.handler == cubenet::HANDLE_PARAMETER) return random.pick(values);
  const std::string &signal = random.pick(signals);
  if (row.operand == cubenet::OPERAND_CLOCK) return signal + ' ' + random.pick(clocks);
  return row.operand == cubenet::OPERAND_NONE ? signal : signal + ' ' + random.pick(words);
}

// Attributes of every keyword, and texts that are passed on.
std::string random_statements(const std::string &table, Random &random) {
  std::vector<std::string> signals{"undeclared"};
  for (const char *head : {"#$ PINS ", "#$ NODES ", ".ilb ", ".ob "})
    for (const std::string &word : words_behind(table, head)) signals.push_back(word);
  const std::string passed_on[] = {"SLEW SLOW=x:S;",   "SLEW FAST",      "PULL DOWN=S:z; more", "PULL HOLD=,",
                                   "LOC S=pin,4,-,-;", "IO_TYPES",       "LOC [CLK]",           "LOC",
                                   "OTHER x",          "IO_TYPES S=x,,;"};
  std::string statements;
  for (std::size_t count = random.below(40); count > 0; count--) {
    const cubenet::KeywordRow &row = random.pick(cubenet::keyword_rows());
    if (row.handler == cubenet::HANDLE_PART) continue;
    statements += "#$ PROPERTY ";
    statements += random.below(20) == 0
                      ? "Mirn " + random.pick(passed_on)
                      : "corvane " + std::string(row.keyword) + ' ' + random_operand(row, signals, random);
    statements += '\n';
  }
  return statements;
}

// Without a table, the translator's files may be undecided, but not wrong.
TEST(Constraints, OfRandomDesignsAreInOrder) {
  const cubenet::WorkingDir directory;
  const std::size_t count = setting("CUBEKIT_DESIGNS", 60);
  const std::vector<std::pair<int, std::string>> parts{
      {1, ""}, {1, "-p Tarvex"}, {5, "-p tarvex5128k-100xq64"}, {8, "-p mirn8840x"}, {1, "-p 8x"}};
  std::size_t translated = 0, judged = 0;
  for (std::size_t seed = 1; seed <= count; seed++) {
    Random random{std::mt19937(static_cast<unsigned>(seed))};
    const auto &[series, part] = parts[seed % parts.size()];
    const std::string table = random_design(seed, series), text = random_statements(table, random) + table;
    for (const std::string mode : {"", "-and 3 -or 2", "-C"}) {
      Translation translation;
      translate(text, part + (part.empty() || mode.empty() ? "" : " ") + mode, translation);
      if (translation.status != 0) continue; // two locations of one pin, say
      translated++;
      ASSERT_EQ(check_translation(), "") << text << part << ' ' << mode;
      std::remove("d.tt2");
      std::ostringstream said;
      const int status = check_files("d", "", said, said);
      ASSERT_NE(status, 1) << said.str() << text << part << ' ' << mode;
      judged += status == 0 ? 1 : 0;
    }
  }
  EXPECT_GT(translated, count);
  EXPECT_GT(judged, count / 5);
}

// Lines with values that are nowhere else in the files: first with or without a truth table, then without
// one.
const std::regex kFreeAnyway("\tPART .*;");
const std::regex kFree("\tPART .*;|\tDESCRIPTION .*;|\t[01-]+ 1|[^=]+=pin,.*,-,-;|.+=-,\\*,.*;|Tarvex_PARAM_FILE=.*;|"
                       "[A-Z]+=(on|o?ff|vcc|.*hold);",
                       std::regex::icase);

std::string edit(const std::string &text, Random &random) {
  const std::size_t at = random.below(text.size()), kind = random.below(3); // replace, insert, delete
  const std::string by(1, random.below(2) == 0 ? random.pick(text) : static_cast<char>(random.below(96) + ' '));
  return text.substr(0, at) + (kind == 2 ? "" : by) + text.substr(at + (kind == 1 ? 0 : 1));
}

// The line in which the texts begin to differ.
std::string changed_line(const std::string &text, const std::string &edited) {
  const std::size_t at = static_cast<std::size_t>(std::ranges::mismatch(text, edited).in1 - text.begin());
  const std::size_t start = at == 0 ? 0 : edited.rfind('\n', at - 1) + 1;
  return edited.substr(start, edited.find('\n', start) - start);
}

void try_edits(const std::regex &free) {
  for (const std::string file : {"d.nxf", "d.ddf", "d.tvx", "d.par"}) {
    const std::string sound = read_file(file);
    Random random{std::mt19937(7)};
    for (std::size_t i = setting("CUBEKIT_EDITS", 100); i > 0; i--) {
      const std::string edited = edit(sound, random);
      if (edited == sound) continue;
      std::remove(file.c_str()); // some file systems wait for the disk when a file was emptied
      write_file(file, edited);
      if (std::ostringstream said; check_files("d", "", said, said) != 0) continue;
      EXPECT_TRUE(std::regex_match(changed_line(sound, edited), free)) << file << ": " << changed_line(sound, edited);
    }
    write_file(file, sound);
    std::ostringstream said;
    EXPECT_EQ(check_files("d", "", said, said), 0) << said.str();
  }
}

TEST(Constraints, AndAllOtherFilesBearNoEditButOfFreeValues) {
  const cubenet::WorkingDir directory;
  const std::string text =
      std::regex_replace(read_file(PROJECT_DIR "/examples/constraints/constraints.tt2"), std::regex(".*Mirn.*\n"), "");
  Translation translation;
  for (const std::string options : {"", "-and 2", "-p Tarvex5128K -C"}) {
    translate(text, options, translation);
    try_edits(kFreeAnyway);
    std::remove("d.tt2");
    try_edits(kFree);
  }
  EXPECT_EQ(check_translation(), "");
  std::remove("d.par");
  EXPECT_EQ(check_translation(), "d.par: is missing\n");
}

struct Judged {
  const char *text, *wrong, *open; // the findings; empty: none
};

TEST(Constraints, AreJudgedLineByLineWithoutATruthTable) {
  NameIndex signals;
  add_name(signals, "a", 0);
  add_name(signals, "b", 0);
  const Judged rows[] = {
      {"", "", ""},
      {"a=b;\n", "1: the line stands in no section", ""},
      {"[CLK]\nCLK0=a;\n\n[Power]\nLow = a;\n", "4: the section is out of order", ""},
      {"[CLK]\nCLK3=a;\n", "2: a line of section [CLK] must stand here", ""},
      {"[CLK]\nCLK1=a;\nCLK0=b;\n\n", "3: the line is none of section [CLK], or out of order", ""},
      {"[CLK]\nCLK0=a;", "1: the last line has no end", ""},
      {"[CLK]\nCLK0=a;\n[PRESERVE]\nPRESERVE=a;\n\n", "3: an empty line must stand here", ""},
      {"[CLK]\nCLK0=a,c;\n\n", "", "2: only the truth table can tell of 'c'"},
      {"[Power]\nLow = a, b;\n[Powr]\nHigh = a;\n", "3: the line is none of section [Power], or out of order", ""},
      {"[IO TYPES]\na=LVCMOS33,PIN,-,-;\n\n", "", ""},
      {"[LOCATION ASSIGNMENTS]\na=pin,1,-,-;\nx\n\n[CLK]\nCLK0=a;\n\n", "", "3: only the truth table can tell of 'x'"},
      {"[symbol/MODULE attribute]\na=OFF,-;\n\n", "2: a line of section [symbol/MODULE attribute] must stand here", ""},
      {"[PTSABYPASS]\nBYPASS=a;\n\n[4PTs Bypass]\nBYPASS=a;\n\n", "4: the section is out of order", ""},
      {"[GROUP ASSIGNMENTS]\n1=-,*,a;\n", "2: a line of section [GROUP ASSIGNMENTS] must stand here", ""},
      {"[GLOBAL CONSTRAINTS]\nSLEWRATE=;\nPULL=Hold;\n\n", "", ""},
      {"[GLOBAL CONSTRAINTS]\nSLEWRATE=SLOW;\n\n", "1: found '[GLOBAL CONSTRAINTS]', expected nothing", ""},
      {"[GLOBAL CONSTRAINTS]\nISP=ON;\nTarvex_Max_GLB_Inputs=25;\n\n",
       "3: found 'Tarvex_Max_GLB_Inputs=25;', expected ''", ""},
  };
  const auto listed = [](const std::vector<Finding> &findings) {
    std::string text;
    for (const Finding &finding : findings)
      text += (text.empty() ? "" : "\n") + std::to_string(finding.line) + ": " + finding.text;
    return text;
  };
  for (const Judged &row : rows) {
    const Judgement judgement = check_constraints(row.text, signals, "d.rsp");
    EXPECT_EQ(listed(judgement.wrong), row.wrong) << row.text;
    EXPECT_EQ(listed(judgement.open), row.open) << row.text;
  }
}

} // namespace
} // namespace cubekit
