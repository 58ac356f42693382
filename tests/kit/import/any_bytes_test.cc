// Whatever the bytes are, import ends with a table that the translator takes, or with a reason.
#include "kit/import/importing.h"

namespace cubekit {
namespace {

const std::pair<SourceKind, std::string> kSources[] = {
    {SourceKind::PLA, "# c\n.i 2\n.o 2\n.ilb a b\n.ob y z\n.type fr\n.phase 10\n.p 2\n1- 1|0\n0\n1 0~\n.e\n"},
    {SourceKind::PLA, ".i 3\n.o 1\n.type dr\n1-0 0\n011 -\n"},
    {SourceKind::BLIF,
     ".model m\n.inputs a \\\nb\n.outputs y q\n.clock c\n.names a n\n0 1\n.latch n q re c 0\n"
     ".latch y r 2\n.subckt s i=r o=y\n.end\n.model s\n.inputs i\n.outputs o\n.names i o\n1 0\n.end\n"},
};

// Says what is wrong; empty when nothing is.
std::string judge(std::string_view text, SourceKind kind) {
  const Imported imported = import_text(std::string(text), kind, {.flatten = 3});
  if (!imported.is_done)
    return imported.told.starts_with("source") && imported.told.size() > 10 ? "" : "no reason: " + imported.told;
  const ReadTable table(imported.table);
  std::string messages;
  if (table.design != nullptr && check_design(*table.design, table.cubes, messages)) return "";
  return messages + imported.table;
}

TEST(ImportAnyBytes, EveryTruncationAndOneByteEditEndsInATableOrAReason) {
  const cubenet::WorkingDir directory;
  for (const auto &[kind, source] : kSources) {
    ASSERT_NE(import_text(source, kind).table, "") << import_text(source, kind).told;
    for (std::size_t at = 0; at < source.size(); at++) {
      ASSERT_EQ(judge(source.substr(0, at), kind), "") << source.substr(0, at);
      for (const char c : {'\0', '\n', ' ', '.', '0', '1', '2', '-', 'a', 'q', '\\', '#', '=', ';', '\xff'}) {
        std::string edited = source;
        edited[at] = c;
        ASSERT_EQ(judge(edited, kind), "") << edited;
      }
      ASSERT_EQ(judge(source.substr(0, at) + source.substr(at + 1), kind), "") << at;
    }
  }
}

TEST(ImportAnyBytes, NoiseIsRefused) {
  Random random{7};
  std::string noise(std::size_t{64} << 10, '\0');
  for (char &c : noise) c = static_cast<char>(random(256));
  for (const SourceKind kind : {SourceKind::PLA, SourceKind::BLIF}) EXPECT_FALSE(import_text(noise, kind).is_done);
  // Long numbers, long lines, deep lists.
  EXPECT_FALSE(import_text(".i 99999999999999999999\n", SourceKind::PLA).is_done);
  EXPECT_FALSE(import_text(std::string(std::size_t{64} << 10, '1'), SourceKind::PLA).is_done);
  EXPECT_FALSE(import_text(".i 1\n.o 1\n" + std::string(std::size_t{64} << 10, '.'), SourceKind::PLA).is_done);
}

} // namespace
} // namespace cubekit
