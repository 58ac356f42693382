// Whatever the bytes are, import ends with a table that the translator accepts, or with a reason.
#include "kit/import/importing.h"

namespace cubekit {
namespace {

const std::pair<SourceKind, std::string> kSources[] = {
    {SourceKind::PLA, "# c\n.i 2\n.o 2\n.ilb a b\n.ob y z\n.type fr\n.phase 10\n.p 2\n1- 1|0\n0\n1 0~\n.e\n"},
    {SourceKind::PLA, ".i 3\n.o 1\n.type dr\n1-0 0\n011 -\n"},
    {SourceKind::BLIF,
     ".model m\n.inputs a \\\nb\n.outputs y q\n.clock c\n.names a n\n0 1\n.latch n q re c 0\n"
     ".latch y r 2\n.subckt s i=r o=y\n.end\n.model s\n.inputs i\n.outputs o\n.names i o\n1 0\n.end\n"},
    {SourceKind::JSON,
     R"({"modules":{"m":{"attributes":{"top":1},"ports":{"c":{"direction":"input","bits":[2]},"q":{"direction":)"
     R"("output","offset":1,"bits":[3,"1"]},"b":{"direction":"inout","bits":[4]}},"cells":{"x":{"type":"$sop",)"
     R"("parameters":{"DEPTH":"10","TABLE":"0110","WIDTH":1},"attributes":{"src":"a.v:3.1-4.2"},"connections":)"
     R"({"A":[2],"Y":[5]}},"y":{"type":"$_DFFE_PN0P_","connections":{"C":[2],"D":[5],"E":["1"],"Q":[3],"R":[4]}},)"
     R"("z":{"type":"$_TBUF_","connections":{"A":[3],"E":[5],"Y":[4]}}},"netnames":{"n.q":{"hide_name":0,)"
     R"("bits":[5],"attributes":{"init":"0","src":"a.v:7.1|b.v:8"}}}}}})"},
};

// JSON text from Yosys itself; elsewhere it is read by Yosys first.
bool make(std::string_view text, SourceKind kind, Draft &draft, Remark &fault) {
  const ImportOptions options{.path = "source", .kind = kind, .flatten = 3};
  if (kind != SourceKind::JSON) return make_draft(text, options, draft, fault);
  draft.files = {options.path};
  return read_yosys_json(text, draft, fault) && finish_draft(options, draft, fault);
}

// Says what is wrong; empty when nothing is.
std::string judge(std::string_view text, SourceKind kind) {
  Draft draft;
  Remark fault;
  if (!make(text, kind, draft, fault)) return fault.text.empty() ? "no reason" : "";
  std::ostringstream stream;
  write_table(stream, draft, lay_out_table(draft));
  const ReadTable table(stream.str());
  std::string messages;
  if (table.design != nullptr && check_design(*table.design, table.cubes, messages)) return "";
  return messages + stream.str();
}

TEST(ImportAnyBytes, EveryTruncationAndOneByteEditEndsInATableOrAReason) {
  const cubenet::WorkingDir directory;
  for (const auto &[kind, source] : kSources) {
    Draft draft;
    Remark fault;
    ASSERT_TRUE(make(source, kind, draft, fault)) << fault.text;
    for (std::size_t at = 0; at < source.size(); at++) {
      ASSERT_EQ(judge(source.substr(0, at), kind), "") << source.substr(0, at);
      for (const char c : {'\0', '\n', '.', '1', '-', 'q', '\\', '\xff'}) {
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
  for (const SourceKind kind : {SourceKind::PLA, SourceKind::BLIF, SourceKind::JSON}) {
    Draft draft;
    Remark fault;
    EXPECT_FALSE(make(noise, kind, draft, fault));
  }
  // Long numbers, long lines, deep lists.
  EXPECT_FALSE(import_text(".i 99999999999999999999\n", SourceKind::PLA).is_done);
  EXPECT_FALSE(import_text(std::string(std::size_t{64} << 10, '1'), SourceKind::PLA).is_done);
  EXPECT_FALSE(import_text(".i 1\n.o 1\n" + std::string(std::size_t{64} << 10, '.'), SourceKind::PLA).is_done);
}

} // namespace
} // namespace cubekit
