// The check of what goes to the fitter: nothing that the translator writes is refused, and of random edits only those
// of free values are accepted. CUBEKIT_DESIGNS and CUBEKIT_EDITS set how many designs, and how many edits of each file.
#include <cstdlib>
#include <filesystem>
#include <random>
#include <regex>

#include "kit/random/random_design.h"
#include "kit/support/translate.h"
#include "model/names.h"

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

// S is a signal, E one that may have an extension, P a path, G a group, N a number that no other statement has.
const char *const kStatements[] = {
    "corvane OPENDRAIN=ON S",
    "corvane OPENDRAIN = off S",
    "corvane OPENDRAIN S",
    "corvane OPENDRAIN=OFF S",
    "corvane VOLTAGE S VCC",
    "corvane VOLTAGE S vvcio",
    "corvane VOLTAGE=VVCIO S",
    "corvane VOLTAGE S",
    "corvane SLOWSLEW=ON S",
    "corvane SLEWRATE=OFF S",
    "corvane SLOWSLEW = OFF S",
    "corvane PULL=UP S",
    "corvane PULL = HOLD S",
    "corvane PULL=OFF S",
    "corvane PULLUP=ON S",
    "corvane OUTDELAY=ON S",
    "corvane OUTDELAY = OFF S",
    "corvane CRIT S",
    "corvane OSMBYPASS S",
    "corvane LOCK S N",
    "corvane LOC S N",
    "corvane PRESERVE E",
    "corvane PROTECT E",
    "corvane REGTYPE S glb",
    "corvane REGTYPE E IOC",
    "corvane CLK S clk0",
    "corvane CLK E IOCLK1",
    "corvane CLK S FASTCLK",
    "corvane CLK E CLK2",
    "corvane GROUP E G",
    "corvane GROUP S G",
    "corvane SCP E P",
    "corvane ECP E P P",
    "corvane PTSABYPASS E P",
    "corvane SLP E P",
    "corvane ELP E P",
    "corvane STP E P",
    "corvane ETP S P",
    "corvane ENP E P",
    "corvane RESERVE_PIN S",
    "corvane BI_Z S",
    "corvane SECURITY On",
    "corvane PULL up",
    "corvane PULL_UP off",
    "corvane OUTDELAY on",
    "corvane OPENDRAIN OFF",
    "corvane SLOWSLEW on",
    "corvane SLEWRATE off",
    "corvane SLEWRATE fast",
    "corvane LOWPOWER ON",
    "corvane POWER_DOWN off",
    "corvane Y1_AS_RESET ON",
    "corvane TOE_AS_IO on",
    "corvane ISP ON",
    "corvane ISP_EXCEPT_Y2 OFF",
    "corvane VOLTAGE INPUT vcc",
    "corvane VOLTAGE OUTPUT VVCIO",
    "corvane VOLTAGE BIDI VCC",
    "corvane STRATEGY area",
    "corvane MAX_GLB_IN 07",
    "corvane MAX_GLB_OUT 4",
    "corvane EFFORT 2147483647",
    "corvane CARRY_PIN_DIRECTION on",
    "corvane IGNORE_FIXED_PIN OFF",
    "corvane FIX_TO_ASSIGNED_PIN on",
    "corvane EXTENDED_ROUTE ON",
    "corvane USE_GLOBAL_RESET off",
    "corvane CASE_SENSITIVE on",
    "corvane REDUCE_LEVEL off",
    "corvane TIMING_ANALYZER verbose",
    "corvane ROUTING_PIN_FILE a/b=c;d",
    "corvane PARAM_FILE X:y",
    "corvane TIMING_FILE t.t",
    "corvane PIN_FILE P;",
    "corvane OUTPUT_FORM sim none EDIF",
    "corvane OUTPUT_FORM vhdl",
    "Mirn SLEW SLOW=x:S;",
    "Mirn SLEW FAST",
    "Mirn SLEW SLOW=",
    "Mirn SLEW FAST=S",
    "Mirn PULL DOWN=S:z; more",
    "Mirn PULL HOLD=,",
    "Mirn PULL UP=S",
    "Mirn IO_TYPES S=LVCMOS33,PIN,-,-;",
    "Mirn IO_TYPES",
    "Mirn LOC S=pin,4,-,-;",
    "Mirn LOC [CLK]",
    "Mirn LOC",
    "Mirn OTHER x",
};

std::vector<std::string> words_behind(const std::string &text, const std::string &head) {
  const std::size_t at = text.find(head);
  if (at == std::string::npos) return {};
  std::istringstream line(text.substr(at + head.size(), text.find('\n', at) - at - head.size()));
  std::vector<std::string> words(std::istream_iterator<std::string>(line), {});
  for (std::string &word : words)
    if (word.ends_with('-')) word.pop_back();
  return words;
}

// The design with random attributes of its signals.
std::string with_attributes(const std::string &text, Random &random) {
  std::vector<std::string> signals = words_behind(text, "#$ PINS "), entries = words_behind(text, ".ilb ");
  const auto add = [](std::vector<std::string> &list, const std::vector<std::string> &more) {
    list.insert(list.end(), more.begin(), more.end());
  };
  add(signals, words_behind(text, "#$ NODES "));
  add(entries, words_behind(text, ".ob "));
  signals.push_back("undeclared");
  std::string statements;
  int number = 0;
  for (std::size_t count = random.below(40); count > 0; count--) {
    const std::string form = std::string(" ") + random.pick(kStatements) + '\n';
    statements += "#$ PROPERTY";
    for (std::size_t i = 0; i < form.size(); i++) {
      std::string value(1, form[i]);
      const bool alone = std::string(" =:").find(form[i - (i > 0)]) != std::string::npos && !isalpha(form[i + 1]);
      if (alone && form[i] == 'S') value = random.pick(signals);
      if (alone && form[i] == 'E') value = random.below(3) == 0 ? random.pick(signals) : random.pick(entries);
      if (alone && form[i] == 'P') value = "path" + std::to_string(random.below(5));
      if (alone && form[i] == 'G') value = "group" + std::to_string(random.below(3));
      if (alone && form[i] == 'N') value = std::to_string(++number);
      statements += random.below(8) == 0 && value.size() > 1 ? cubenet::upper_case(value) : value;
    }
  }
  return statements + text;
}

TEST(Constraints, OfRandomDesignsAreInOrder) {
  const cubenet::WorkingDir directory;
  const std::size_t count = setting("CUBEKIT_DESIGNS", 100);
  const std::vector<std::pair<int, std::string>> parts{
      {1, ""}, {1, "-p Tarvex"}, {5, "-p tarvex5128k-100xq64"}, {8, "-p mirn8840x"}, {1, "-p 8x"}};
  std::size_t done = 0;
  for (std::size_t seed = 1; seed <= count; seed++) {
    Random random{std::mt19937(static_cast<unsigned>(seed))};
    const auto &[series, part] = parts[seed % parts.size()];
    const std::string text = with_attributes(random_design(seed, series), random);
    for (const std::string mode : {"", "-and 3 -or 2"}) {
      Translation translation;
      translate(text, part + (part.empty() || mode.empty() ? "" : " ") + mode, translation);
      if (translation.status != 0) continue; // two locations of one pin, say
      done++;
      ASSERT_EQ(check_translation(), "") << text << part << mode;
    }
  }
  EXPECT_GT(done, count);
}

// What may differ in an accepted edit, as the part of one line behind the first group and in front of the second.
struct FreeValue {
  std::string extension, pattern;
  bool with_table;
};
const FreeValue kFreeValues[] = {
    {"nxf", "(\tDESCRIPTION ).*(;)", true},     {"nxf", "(\tPART ).+(;)", true},
    {"nxf", "(\t[01-]*)[01-]([01-]* 1)", true}, // a literal of a block: the proof tells
    {"tvx", "([^=]+=pin,)[^,]+(,-,-;)", false}, // a package pin
    {"tvx", "()[^=]+(=-,\\*,.*)", false},       // the name of a group
    {"tvx", "((?:.*=)?)i?clk([=;].*)", false},  // of the names here, two that are one byte apart
    {"tvx", "([A-Z_]+=)(?:ON|HOLD)(;)", false},
};

std::vector<std::string> lines_of(const std::string &text) {
  std::vector<std::string> lines(1);
  for (const char c : text)
    if (c == '\n')
      lines.emplace_back();
    else
      lines.back() += c;
  return lines;
}

bool is_free(const std::string &extension, bool with_table, const std::string &sound, const std::string &edited) {
  const std::vector<std::string> before = lines_of(sound), after = lines_of(edited);
  if (before.size() != after.size()) return false;
  const auto [a, b] = std::mismatch(before.begin(), before.end(), after.begin());
  if (!std::equal(a + 1, before.end(), b + 1)) return false;
  for (const FreeValue &value : kFreeValues) {
    std::smatch was, is;
    const std::regex pattern(value.pattern, std::regex::icase);
    if (value.extension == extension && (value.with_table || !with_table) && std::regex_match(*a, was, pattern) &&
        std::regex_match(*b, is, pattern) && was[1] == is[1] && was[2] == is[2])
      return true;
  }
  return false;
}

std::string edit(const std::string &text, Random &random) {
  const std::size_t at = random.below(text.size());
  const std::string by(1, random.below(2) == 0 ? random.pick(text) : static_cast<char>(random.below(96) + ' '));
  const std::size_t kind = random.below(3); // replace, insert, delete
  return text.substr(0, at) + (kind == 2 ? "" : by) + text.substr(at + (kind == 1 ? 0 : 1));
}

// Tries edits of each file of the design in the directory, which is in order as it stands, or can't be judged.
void try_edits(bool with_table, int status) {
  for (const std::string extension : {"nxf", "ddf", "tvx", "par"}) {
    const std::string file = "d." + extension, sound = std::filesystem::exists(file) ? read_file(file) : "";
    Random random{std::mt19937(7)};
    for (std::size_t i = sound.empty() ? 0 : setting("CUBEKIT_EDITS", 300); i > 0; i--) {
      const std::string edited = edit(sound, random);
      if (edited == sound) continue;
      std::remove(file.c_str()); // some file systems wait for the disk when a file was emptied
      write_file(file, edited);
      if (std::ostringstream said; check_files("d", "", said, said) != 0) continue;
      EXPECT_TRUE(is_free(extension, with_table, sound, edited)) << file << ' ' << with_table << '\n' << edited;
    }
    if (!sound.empty()) write_file(file, sound);
    std::ostringstream said;
    EXPECT_EQ(check_files("d", "", said, said), status) << said.str();
  }
}

// The example with all attributes, and a design with latches, a stored complement and renamed signals.
TEST(Constraints, AndAllOtherFilesBearNoEditButOfFreeValues) {
  const cubenet::WorkingDir directory;
  const std::string constraints = read_file(PROJECT_DIR "/examples/constraints/constraints.tt2");
  const std::string renamed = "#$ TITLE t\n#$ PINS 8 clk go q q_C l_D l GND b\n#$ PROPERTY corvane PULL=UP GND\n"
                              "#$ PROPERTY corvane LOCK GND 1\n#$ PROPERTY corvane GROUP l.D g\n.i 5\n.o 9\n"
                              ".ilb clk go q_C l_D GND\n.ob q.D q.C q.AP q.OE l.D l.LH l.AR b b.OE\n"
                              "1---- 010000001\n-1--1 100010100\n--1-- 001101010\n---1- 000010000\n.end\n";
  Translation translation;
  for (const std::string options : {"", "-and 2"}) {
    translate(constraints, options, translation);
    try_edits(true, 0);
    // Without the table copied texts can't be judged.
    translate(std::regex_replace(constraints, std::regex(".*Mirn.*\n"), ""), options, translation);
    std::remove("d.tt2");
    try_edits(false, 0);
  }
  for (const std::string options : {"", "-p Tarvex5128K"}) {
    translate(renamed, options, translation);
    try_edits(true, 0);
    std::remove("d.tt2"); // where GND stands as it was written
    try_edits(false, 2);
  }
}

struct Judged {
  const char *text, *wrong, *open; // what is found; empty: nothing
};

TEST(Constraints, AreJudgedLineByLineWithTheOdditiesOfTheFormat) {
  DdfReading ddf;
  ddf.pins = {"a", "b"};
  const Signals signals = gather_signals(ddf, nullptr);
  const Judged rows[] = {
      {"", "", ""},
      {"a=b;\n", "1: the line stands in no section", ""},
      {"[CLK]\nCLK0=a;\n\n[Power]\nLow = a;\n", "4: the section is out of order", ""},
      {"[CLK]\nCLK3=a;\n", "2: the line is none of section [CLK], or out of order", ""},
      {"[CLK]\nCLK0=a\n", "2: the line is none of section [CLK], or out of order", ""},
      {"[CLK]\nCLK0=a;", "2: the last line has no end", ""},
      {"[CLK]\nCLK0=a;\n[PRESERVE]\nPRESERVE=a;\n\n", "3: an empty line must stand here", ""},
      {"[CLK]\nCLK0=a,c;\n\n", "", "2: only the truth table can tell whether 'c' may stand here"},
      {"[OUTDELAY]\nOn=b,a;\n", "2: 'a' has no place here, or is out of order", ""},
      {"[Power]\nLow = a, b;\n[Powr]\nHigh = a;\n", "3: the line is none of section [Power], or out of order", ""},
      {"[4PTs Bypass]\nBYPASS=a,b;\n\n[PTSABYPASS]\nBYPASS=a;\n\n", "4: the section is out of order", ""},
      {"[PULLUP]\nUP=a,x y;\n", "", "2: only the truth table can tell whether 'x y' may stand here"},
      {"[LOCATION ASSIGNMENTS]\na=pin,1,-,-;\nx\n\n", "",
       "3: only the truth table can tell whether 'x' may stand here"},
      {"[GLOBAL CONSTRAINTS]\nSLEWRATE=;\nPULL=Hold;\n\n", "", ""},
      {"[GLOBAL CONSTRAINTS]\nSLEWRATE=\n[Power]\nLow = a;\n", "", ""},
      {"[GLOBAL CONSTRAINTS]\nSLEWRATE=PULL=hold;\nTarvex_EFFORT=3;\n\n", "", ""},
      {"[GLOBAL CONSTRAINTS]\nSLEWRATE=Tarvex_EFFORT=3;\nTarvex_STRATEGY=AREA;\n\n", "", ""},
      {"[GLOBAL CONSTRAINTS]\nSLEWRATE=SLOW;\n\n",
       "2: the line is none of section [GLOBAL CONSTRAINTS], or out of order", ""},
      {"[GLOBAL CONSTRAINTS]\nTarvex_Max_GLB_Inputs=25;\n\n",
       "2: the line is none of section [GLOBAL CONSTRAINTS], or out of order", ""},
  };
  const auto listed = [](const std::vector<Finding> &findings) {
    std::string text;
    for (const Finding &finding : findings)
      text += (text.empty() ? "" : "\n") + std::to_string(finding.line) + ": " + finding.text;
    return text;
  };
  for (const Judged &row : rows) {
    ParameterSet parameters;
    const Judgement judgement = check_constraints(row.text, signals, parameters);
    EXPECT_EQ(listed(judgement.wrong), row.wrong) << row.text;
    EXPECT_EQ(listed(judgement.open), row.open) << row.text;
  }
}

} // namespace
} // namespace cubekit
