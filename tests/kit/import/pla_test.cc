// PLAs become equivalent tables, checked point by point.
#include "kit/import/random_sources.h"

namespace cubekit {
namespace {

struct Listed {
  bool on = false, off = false, free = false;
};

Listed listed_at(const RandomPla &pla, std::size_t point, std::size_t output) {
  Listed listed;
  for (const std::string &term : pla.terms) {
    bool is_met = true;
    for (std::size_t i = 0; i < pla.inputs; i++)
      is_met &= term[i] == '-' || term[i] == '2' || (term[i] == '1') == ((point >> i & 1U) != 0);
    const char c = term[pla.inputs + output];
    if (!is_met) continue;
    listed.on |= c == '1' || c == '4';
    listed.off |= c == '0';
    listed.free |= c == '-' || c == '2';
  }
  return listed;
}

// What the type makes of a point: '1', '0', or '-' where it may be either.
char meant_at(const RandomPla &pla, std::size_t point, std::size_t output) {
  const Listed listed = listed_at(pla, point, output);
  const std::string type = pla.type.empty() ? "fd" : pla.type;
  if (type == "f") return listed.on ? '1' : '0';
  if (type == "fd") return listed.on ? '1' : listed.free ? '-' : '0';
  if (type == "r") return listed.off ? '0' : '1';
  if (type == "dr") return listed.off ? '0' : listed.free ? '-' : '1';
  return listed.on ? '1' : listed.off ? '0' : '-';
}

// The free points of a table: '-' in its output part, with ".type fd" above it.
bool is_free_in(const std::string &table, std::size_t inputs, std::size_t point, std::size_t output) {
  if (table.find("\n.type fd\n") == std::string::npos) return false;
  std::istringstream lines(table);
  for (std::string line; std::getline(lines, line);) {
    if (line[0] == '#' || line[0] == '.') continue;
    bool is_met = line[inputs + 1 + output] == '-';
    for (std::size_t i = 0; i < inputs; i++) is_met &= line[i] == '-' || (line[i] == '1') == ((point >> i & 1U) != 0);
    if (is_met) return true;
  }
  return false;
}

TEST(ImportPla, MeansWhatTheTypeSaysAtEveryPoint) {
  const cubenet::WorkingDir directory;
  for (std::uint64_t seed = 1; seed <= source_count(200); seed++) {
    const RandomPla pla = random_pla(seed);
    SCOPED_TRACE(pla.text);
    const Imported imported = import_text(pla.text, SourceKind::PLA);
    ASSERT_TRUE(imported.is_done) << imported.told;
    ASSERT_EQ(imported.told, "");
    const ReadTable table(imported.table);
    for (std::size_t point = 0; point < std::size_t{1} << pla.inputs; point++) {
      Levels levels;
      for (std::size_t i = 0; i < pla.inputs; i++) levels["in" + std::to_string(i)] = (point >> i & 1U) != 0;
      evaluate_table(table, levels);
      for (std::size_t o = 0; o < pla.outputs; o++) {
        const char meant = meant_at(pla, point, o);
        const bool is_inverted = !pla.phase.empty() && pla.phase[o] == '0';
        const char found = levels["out" + std::to_string(o)] != is_inverted   ? '1'
                           : is_free_in(imported.table, pla.inputs, point, o) ? '-'
                                                                              : '0';
        ASSERT_TRUE(found == meant || (found == '1' && meant == '-' && pla.type != "fd")) << imported.table << point;
      }
    }
    ASSERT_EQ(translate_and_prove(imported.table), "") << imported.table;
  }
}

TEST(ImportPla, KeepsNamesAndOrderAndSharesRows) {
  const Imported imported = import_text(".i 3\n.o 3\n.ilb a b.x 3c\n.ob a q_D q\n.type fd\n.p 9\n"
                                        "1-0|1-0\n0-- 010 # joined with the last\n11\n- 001\n0-- 001\n.end\nbehind",
                                        SourceKind::PLA, {.path = "dir/some.pla", .part = "Tarvex5128K-100XQ64"});
  EXPECT_EQ(imported.told, "dir/some.pla:3: 'b.x' is called 'b/x' in the table\n"
                           "dir/some.pla:3: '3c' is called 'n3c' in the table\n"
                           "dir/some.pla:4: 'a' is called 'a~2' in the table\n"
                           "dir/some.pla:4: 'q' is called 'q~2' in the table\n");
  EXPECT_EQ(imported.table, "# Imported from some.pla\n#$ MODULE some\n#$ PROPERTY corvane PART Tarvex5128K-100XQ64\n"
                            "#$ PINS 6 a b/x n3c a~2 q_D q~2\n.i 3\n.o 3\n.ilb a b/x n3c\n.ob a~2 q_D q~2\n.type fd\n"
                            ".p 3\n1-0 1-0\n0-- 011\n11- 001\n.end\n");
}

TEST(ImportPla, RefusesWhatATableCanNotSayWithItsLine) {
  const std::pair<std::string, std::string> cases[] = {
      {"", "source: no PLA: it has no '.i' or no '.o'\n"},
      {".i 2\n.o 1\n.mv 3 2 4\n", "source:3: '.mv' is not supported: import takes inputs and outputs of two values\n"},
      {".i 2\n.o 1\n.kiss\n", "source:3: '.kiss' is not supported: import takes inputs and outputs of two values\n"},
      {".i 2\n.o 1\n1x 1\n", "source:3: 'x' in the input part of a term, which has only 0, 1, - and 2\n"},
      {".i 2\n.o 1\n\n11 1 1\n.e\n", "source:4: a term is cut short\n"},
      {".i 4000000000\n.o 4000000000\n", "source: no term\n"},
      {".i 2\n.o 1\n.ilb a\n11 1\n", "source:3: 1 names of inputs, and '.i 2'\n"},
      {".i 2\n.o 1\n.ilb a a\n11 1\n", "source:3: 'a' is listed twice\n"},
      {".i 2\n.o 1\n.type fr\n1- 1\n11 0\n",
       "source:5: an output is on here and off in line 4, or the other way round, for the same inputs\n"},
  };
  for (const auto &[text, told] : cases) {
    const Imported imported = import_text(text, SourceKind::PLA);
    EXPECT_FALSE(imported.is_done);
    EXPECT_EQ(imported.told, told);
  }
}

} // namespace
} // namespace cubekit
