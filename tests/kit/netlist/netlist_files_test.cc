// Damaged netlist files: each fault must be found, with its line, and none invented.
#include <string>
#include <vector>

#include "kit/check/check.h"
#include "kit/check/ddf_parser.h"
#include "kit/netlist/check_netlist.h"
#include "kit/support/translate.h"

namespace cubekit {
namespace {

// A toggling bit with a pad, from a table that is inverted in places; small, but with every statement form.
const char *const kDesign = R"(#$ MODULE files
#$ PINS 5 clk go y- z w
#$ NODES 1 n
#$ PROPERTY corvane PROTECT z
#$ PROPERTY corvane ZDOT w
#$ PROPERTY corvane GROUP n g
#$ PROPERTY corvane LOCK go 7
.i 4
.o 8
.ilb clk go y.Q n
.ob y.T y.C y.AP z- z.OE n w w.OE
-1-- 10000000
1--- 01000000
--1- 00101000
-01- 00010100
---1 00000011
.end
)";

// The file with the first occurrence of one text replaced by another.
std::string edited(const std::string &text, const std::string &from, const std::string &to) {
  const std::size_t at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  return at == std::string::npos ? text : text.substr(0, at) + to + text.substr(at + from.size());
}

std::string findings_text(const std::vector<Finding> &findings) {
  std::ostringstream text;
  for (const Finding &finding : findings) print_finding(text, "f", finding);
  return text.str();
}

std::string check_text(const std::string &text) {
  Netlist netlist;
  Finding error;
  return findings_text(parse_nxf(text, netlist, error) ? check_netlist(netlist) : std::vector{error});
}

struct Files {
  std::string nxf, ddf;
};

Files translate_files(const std::string &options) {
  const cubenet::WorkingDir directory;
  Translation translation;
  translate(kDesign, options, translation);
  EXPECT_EQ(translation.status, 0) << translation.console;
  return {cubenet::read_file("d.nxf"), cubenet::read_file("d.ddf")};
}

std::string compare_texts(const std::string &nxf, const std::string &ddf) {
  Netlist netlist;
  Finding error;
  DdfReading reading;
  EXPECT_TRUE(parse_nxf(nxf, netlist, error)) << error.text;
  return findings_text(compare_netlists(netlist, ddf, reading));
}

TEST(NetlistFiles, AreInOrderAsTheTranslatorWritesThem) {
  for (const std::string options : {"", "-and 2", "-p Tarvex5128K-100XQ64", "-p Tarvex8840K-100XQ64 -or 2"}) {
    const Files files = translate_files(options);
    EXPECT_EQ(check_text(files.nxf), "") << options;
    EXPECT_EQ(compare_texts(files.nxf, files.ddf), "") << options;
  }
}

TEST(NetlistFiles, ThatEndTooEarlyAreRefusedAtEveryByte) {
  const Files files = translate_files("");
  for (std::size_t size = 0; size < files.nxf.size(); size++)
    EXPECT_NE(check_text(files.nxf.substr(0, size)), "") << size;
  for (std::size_t size = 0; size < files.ddf.size(); size++)
    EXPECT_NE(compare_texts(files.nxf, files.ddf.substr(0, size)), "") << size;
}

// A netlist of one input and one output with these statements between, as one text.
std::string make_nxf(const std::string &nets, const std::string &symbols) {
  return "NXF 11.0.5 L;\n\nSECTION HEADER;\nEND;\n\nSECTION DEVICE;\nEND;\n\nSECTION LOGICAL;\nXPIN a IN a;\n"
         "XPIN y OUT y_PIN;\n\n" +
         nets + symbols + "END;\n\nEND;\n\n";
}

// Gates in a chain that all read one net, with names of one byte and of many.
std::string make_chain() {
  const auto name = [](int gate) { return gate == 0 ? "y" : std::string(static_cast<std::size_t>(gate), 'g'); };
  std::string nets = "NET a EXT DST", chain, symbols;
  constexpr int kGates = 20;
  for (int i = kGates - 1; i >= 0; i--) {
    const std::string instance = name(i), before = i == kGates - 1 ? "a" : name(i + 1);
    nets += ' ' + instance + ".A0" + (before == "a" ? ' ' + instance + ".A1" : "");
    chain += "NET " + instance + (i == 0 ? "_PIN EXT" : "") + " SRC " + instance + ".Z0" +
             (i == 0 ? "" : " DST " + name(i - 1) + ".A1") + ";\n\n";
    symbols += "SYM AND2 " + instance + ";\n\tPIN A0 IN a;\n\tPIN A1 IN " + before + ";\n\tPIN Z0 OUT " + instance +
               (i == 0 ? "_PIN" : "") + ";\nEND;\n\n";
  }
  return make_nxf(nets + ";\n" + chain, symbols);
}

// No byte of the nets and symbols can be changed, left out or inserted without a finding.
TEST(NetlistFiles, CountToEveryByte) {
  for (const std::string &sound : {make_chain(), translate_files("").nxf, translate_files("-and 2").nxf}) {
    ASSERT_EQ(check_text(sound), "");
    std::string text = sound;
    for (std::size_t at = text.find("\nNET "); at < text.size(); at++) {
      for (const char other : {'~', ' ', ';', '\n'}) {
        if (text[at] == other) continue;
        text[at] = other;
        EXPECT_NE(check_text(text), "") << at << ": " << other;
        text[at] = sound[at];
      }
      EXPECT_NE(check_text(sound.substr(0, at) + sound.substr(at + 1)), "") << at;
      EXPECT_NE(check_text(sound.substr(0, at) + ' ' + sound.substr(at)), "") << at;
    }
  }
}

struct Edit {
  const char *from, *to;
  const char *finding; // part of what must be found
};

TEST(NetlistFiles, TellWhatIsWrongWithAnNxfFile) {
  const Files files = translate_files("");
  const std::vector<Edit> edits{
      {"NXF 11.0.5 L;", "NXF 11.0.6 L;", "f:1: 'NXF 11.0.5 L;' must stand here"},
      {"\tTECHNOLOGY", " TECHNOLOGY", "'END;' must stand here"},
      {"XPIN clk IN clk;\n", "XPIN clk  IN clk;\n", "must stand here"},
      {"XPIN clk IN clk;\n", "XPIN clk IN clk;\nXPIN clk IN clk;\n", "pin 'clk' has two XPIN lines"},
      {"XPIN go IN go;\n", "", "net 'go' meets no device pin"},
      {"XPIN go IN go;\n", "XPIN go OUT go;\n", "pin 'go' is not driven"},
      {"NET clk EXT DST", "NET clock EXT DST", "on net 'clk'"},
      {" DST y.CLK;", ";", "pin 'CLK' of 'y' is on net 'y_C', which doesn't name it"},
      {" DST y.CLK;", " DST y.CLK y.CLK;", "which a net has named already"},
      {" DST y.CLK;", " DST y.CLOCK;", "the symbol has no such pin"},
      {" DST y.CLK;", " DST x.CLK;", "there is no such symbol"},
      {"SYM FD21 y;", "SYM FD12 y;", "the library has no primitive FD12"},
      {"SYM FD21 y;", "SYM FDC1 y;", "devices of this series have no such primitive"},
      {"SYM FD21 y;", "SYM FD11 y;", "the pins are not those of the primitive"},
      {"SYM LXOR2 y_1;", "SYM AND3 y_1;", "the pins are not those of the primitive"},
      {"\t01 1\n", "\t0 1\n", "a row of 2 inputs or END_PLA must stand here"},
      {"\t01 1\n", "\t0x 1\n", "a row of 2 inputs or END_PLA must stand here"},
      {"SYM PLA n;", "SYM PLA n PROTECT;", "a block can't be protected"},
      {"SYM PLA n;", "SYM PLA y_T;", "two symbols are named 'y_T'"},
      {"END;\n\nEND;\n\nEND;\n\n", "END;\n\nEND;\n\nEND;\n\n\n", "the file must end here"},
  };
  for (const Edit &edit : edits) {
    const std::string found = check_text(edited(files.nxf, edit.from, edit.to));
    EXPECT_NE(found.find(edit.finding), std::string::npos) << edit.from << " -> " << edit.to << ":\n" << found;
  }
}

TEST(NetlistFiles, TellWhereTheDdfDiffers) {
  const Files files = translate_files("");
  const std::vector<Edit> edits{
      {"OUTPUTS: y, ", "OUTPUTS: ", "OUTPUTS lack pin 'y'"},
      {"INPUTS: clk, go;", "INPUTS: clk, go, y;", "INPUTS list 'y' too much"},
      {"INPUTS: clk, go;", "INPUTS: clk, , go;", "a list of pins names an empty one"},
      {"FD21: y;", "FD11: y;", "'y' is FD21 in the .nxf"},
      {"FD21: y;\n", "", "symbol 'y' of the .nxf is missing"},
      {"FD21: y;", "FD21: y", "must hold a name and ';'"},
      {"clk: .clk", "clk: .go", "names device pin '.go', other than in the .nxf"},
      {"PIN D0 IN y_BD;", "PIN D0 IN y_D;", "'y' has another pin line below it in the .nxf"},
      {"FD21: y;", "FD21: y PROTECT;", "'y' is not protected in the .nxf"},
      {"clk: .clk", "clk: clk", "should meet a device pin, or should not"},
      {", y.CLK;", ";", "lacks a pin of symbol 'y'"},
      {", y.CLK;", ", y.D0;", "names 'y.D0', other than in the .nxf"},
      {"y_C: y_C.Z0", "y_C: y_T.Z0", "has another source in the .nxf"},
      {"ENDCELL: files;", "ENDCELL: file;", "'ENDCELL: files;' must stand here"},
  };
  for (const Edit &edit : edits) {
    const std::string found = compare_texts(files.nxf, edited(files.ddf, edit.from, edit.to));
    EXPECT_NE(found.find(edit.finding), std::string::npos) << edit.from << " -> " << edit.to << ":\n" << found;
  }
  EXPECT_EQ(compare_texts(edited(files.nxf, "DESIGN files", "DESIGN file"), files.ddf),
            "f:1: the cell is 'files', the design of the .nxf 'file'\n");
  // The pins that nets lack are reported net by net, not in the symbol's order.
  EXPECT_EQ(compare_texts(files.nxf, edited(edited(files.ddf, ", y.CLK;", ";"), ", y.D0", "")),
            "f:28: net 'y_C' lacks a pin of symbol 'y'\nf:32: net 'y_BD' lacks a pin of symbol 'y'\n");
}

// Searching the rest of the line for each of the latches on it would take hours.
TEST(NetlistFiles, MayHoldAllLatchesOnOneLine) {
  constexpr std::size_t kLatches = 1000000;
  std::string text = "CELL: c;\n\n\nSYMBOLS:\n";
  for (std::size_t i = 0; i < kLatches; i++) text += "XDL2: latch" + std::to_string(i) + '_';
  text += "ENDSYMBOLS;\n\nNETS:\nENDNETS;\n\nENDCELL: c;\n";
  DdfNetlist ddf;
  Finding error;
  const auto is_latch = [](std::string_view name) { return name.ends_with('_'); };
  ASSERT_TRUE(parse_ddf(text, is_latch, ddf, error)) << error.text;
  ASSERT_EQ(ddf.symbols.size(), kLatches);
  EXPECT_EQ(ddf.symbols.back().instance, "latch999999_");
  EXPECT_FALSE(parse_ddf(
      text, [](std::string_view) { return false; }, ddf, error));
}

// Nets that list their pins in another order than the symbols, and symbols in another order than their nets.
TEST(NetlistFiles, AreJoinedInAnyOrder) {
  const std::string gates = "SYM OR2 g;\n\tPIN A0 IN b;\n\tPIN A1 IN a;\n\tPIN Z0 OUT y_PIN;\nEND;\n\n";
  const std::string buffer = "SYM BUF h;\n\tPIN A0 IN a;\n\tPIN Z0 OUT b;\nEND;\n\n";
  const std::string a = "NET a EXT DST g.A1 h.A0;\n", b = "NET b SRC h.Z0 DST g.A0;\n\n";
  const std::string y = "NET y_PIN EXT SRC g.Z0;\n\n";
  const std::string wrong_order = "f:13: net 'a': the destinations don't follow the symbols\n";
  EXPECT_EQ(check_text(make_nxf(a + b + y, gates + buffer)), "");
  EXPECT_EQ(check_text(make_nxf(a + b + y, buffer + gates)), wrong_order);
  EXPECT_EQ(check_text(make_nxf(a + y + b, buffer + gates)), wrong_order);
  // As above, but with a net that names one pin as its source and again as a destination.
  EXPECT_EQ(check_text(make_nxf(a + "NET b SRC h.Z0 DST g.A0 h.Z0;\n\n" + y, gates + buffer)),
            "f:14: net 'b' names 'h.Z0', which a net has named already\n");
  EXPECT_EQ(check_text(make_nxf(a + "NET b SRC g.A0 DST h.Z0;\n\n" + y, gates + buffer)),
            "f:14: net 'b' has a source that is no output\nf:14: net 'b' has a destination that is an output\n");
}

// A macro of ten pins, whose ports are found by name, and symbols of one primitive that differ in marks and
// ports.
TEST(NetlistFiles, MayHoldManyKindsOfSymbols) {
  const auto macro = [](const std::string &instance, const std::string &out) {
    std::string text = "SYM WIDE " + instance + " HARD;\n";
    for (int port = 0; port < 9; port++) text += "\tPIN P" + std::to_string(port) + " IN a;\n";
    return text + "\tPIN Q OUT " + out + ";\nEND;\n\n";
  };
  const auto ports = [](const std::string &instance, std::vector<int> order) {
    std::string text;
    for (const int port : order) text += ' ' + instance + ".P" + std::to_string(port);
    return text;
  };
  const std::vector<int> up{0, 1, 2, 3, 4, 5, 6, 7, 8}, mixed{3, 8, 1, 0, 7, 2, 6, 5, 4};
  const auto gate = [](const std::string &head, const std::string &out) {
    return "SYM AND2 " + head + ";\n\tPIN A0 IN m;\n\tPIN A1 IN n;\n" + out + "END;\n\n";
  };
  const std::string symbols = macro("m", "m") + macro("n", "n") + gate("g", "\tPIN Z0 OUT g;\n") +
                              gate("h HARD", "\tPIN Z0 OUT h;\n") + gate("i", "\tPIN Z0 OUT i;\n") +
                              gate("j HARD", "\tPIN B IN i;\n\tPIN Z0 OUT y_PIN;\n") + gate("k PROTECT", "");
  const auto nets = [&](const std::string &inputs) {
    std::string text = "NET a EXT DST" + inputs + ";\n";
    for (const char *const net : {"m", "n"}) {
      text += std::string("NET ") + net + " SRC " + net + ".Q DST";
      for (const char *const reader : {"g", "h", "i", "j", "k"})
        text += std::string(" ") + reader + (*net == 'm' ? ".A0" : ".A1");
      text += ";\n\n";
    }
    return text + "NET g SRC g.Z0;\n\nNET h SRC h.Z0;\n\nNET i SRC i.Z0 DST j.B;\n\nNET y_PIN EXT SRC j.Z0;\n\n";
  };
  const std::string no_output = "f:77: AND2 k: the pins are not those of the primitive\n";
  EXPECT_EQ(check_text(make_nxf(nets(ports("m", up) + ports("n", up)), symbols)), no_output);
  EXPECT_EQ(check_text(make_nxf(nets(ports("m", mixed) + ports("n", up)), symbols)), no_output);
  EXPECT_EQ(check_text(make_nxf(nets(ports("m", up) + ports("n", mixed) + " n.P9"), symbols)),
            "f:13: net 'a' names 'n.P9', but the symbol has no such pin\n" + no_output);
}

// Faults in one thing only, with everything else right.
TEST(NetlistFiles, AreTakenAtTheirWord) {
  const auto symbol = [](const std::string &head, const std::string &pins) {
    return "SYM " + head + ";\n" + pins + "END;\n\n";
  };
  const auto buffer = [&](const std::string &name, const std::string &in, const std::string &out) {
    return symbol("BUF " + name, "\tPIN A0 IN " + in + ";\n\tPIN Z0 OUT " + out + ";\n");
  };
  const auto pla = [&](const std::string &head, const std::string &out) {
    return symbol("PLA " + head, "\tPIN A0 IN a;\n\tPIN Z0 OUT " + out + ";\n\tBEGIN_PLA\n\t1 1\n\tEND_PLA\n");
  };
  const std::string sound = make_nxf(
      "NET a EXT DST g.A0 m.P p.A0 q.A0;\nNET g SRC g.Z0 DST h.A0;\n\nNET h SRC h.Z0 DST i.A0;\n\n"
      "NET m SRC m.Q DST n.P;\n\nNET n SRC n.Q;\n\nNET p SRC p.Z0;\n\nNET q SRC q.Z0;\n\nNET y_PIN EXT SRC i.Z0;\n\n",
      buffer("g", "a", "g") + buffer("h", "g", "h") + buffer("i", "h", "y_PIN") +
          symbol("WIDE m HARD", "\tPIN P IN a;\n\tPIN Q OUT m;\n") +
          symbol("WIDE n HARD", "\tPIN P IN m;\n\tPIN Q OUT n;\n") + pla("p", "p") + pla("q", "q"));
  ASSERT_EQ(check_text(sound), "");
  using Edits = std::vector<std::pair<std::string, std::string>>;
  struct Row {
    Edits edits;
    const char *finding;
  };
  const auto with = [](const std::string &nets, const std::string &readers, const std::string &symbols) {
    return Edits{{"NET y_PIN", nets + "NET y_PIN"},
                 {" q.A0;", " q.A0" + readers + ";"},
                 {"\tEND_PLA\nEND;\n\nEND;", "\tEND_PLA\nEND;\n\n" + symbols + "END;"}};
  };
  const std::string many = "\tPIN B0 IN a;\n\tPIN B1 IN a;\n\tPIN B2 IN a;\n\tPIN B3 IN a;\n\tPIN B4 IN a;\n"
                           "\tPIN B5 IN a;\n\tPIN B6 IN a;\n\tPIN B7 IN a;\n\tPIN B0 IN a;\n";
  const std::vector<Row> rows{
      {{{"SRC h.Z0", "SRC h.Z0x"}}, "net 'h' names 'h.Z0x', but the symbol has no such pin"},
      {{{"\tPIN Z0 OUT h;", "\tPIN Z0 IN h;"}}, "BUF h: the pins are not those of the primitive"},
      {{{"\tPIN Z0 OUT h;\n", ""}}, "net 'h' names 'h.Z0', but the symbol has no such pin"},
      {{{"SYM WIDE n HARD", "SYM WIDE n"}}, "the library has no primitive WIDE"},
      {{{"SYM PLA q", "SYM PLA q PROTECT"}}, "PLA q: a block can't be protected"},
      {{{"OUT h;\nEND", "OUT h;\n\tBEGIN_PLA\n\tEND_PLA\nEND"}}, "BUF h: only a PLA has rows"},
      {{{"OUT n;\nEND", "OUT n;\n\tBEGIN_PLA\n\t 1\n\tEND_PLA\nEND"}}, "WIDE n: only a PLA has rows"},
      {{{"SRC n.Q;", "SRC n.Q DST;"}}, "a pin must stand here"},
      {{{" q.A0;", " q.A0 ;"}}, "a pin must stand here"},
      {{{"NET h SRC h.Z0 DST i.A0;", "NET g SRC h.Z0;"},
        {"OUT h;", "OUT g;"},
        {"IN h;", "IN a;"},
        {"g.A0 m.P", "g.A0 i.A0 m.P"}},
       "net 'g' has two statements"},
      {with("NET z SRC z.Z0;\n\n", " z.A0 z.A0", buffer("z", "a", "z") + buffer("z", "a", "z")),
       "two symbols are named 'z'"},
      {with("", "", symbol("WIDE g HARD", "")), "two symbols are named 'g'"},
      {with("", "", symbol("WIDE z HARD", "") + symbol("WIDE z HARD", "")), "two symbols are named 'z'"},
      {with("NET z SRC n.R;\n\n", "", ""), "net 'z' names 'n.R', but the symbol has no such pin"},
      {with("", " z.A0 w.A0", symbol("M z HARD", "\tPIN A0 OUT a;\n") + symbol("M w HARD", "\tPIN A0 IN a;\n")),
       "net 'a' has a destination that is an output"},
      {with("", " z.Z0 w.Z0", symbol("M z HARD", "\tPIN Z0 IN a;\n") + symbol("M w HARD", "\tPIN Z0 OUT a;\n")),
       "net 'a' has a destination that is an output"},
      {with("", " z.A.0", symbol("M z HARD", "\tPIN A.0 IN a;\n")), "names 'z.A.0', but there is no such symbol"},
      {with("", " z.P z.P", symbol("M z HARD", "\tPIN P IN a;\n\tPIN P IN a;\n")),
       "names 'z.P', which a net has named"},
      {with("", " z.B0 z.B1 z.B2 z.B3 z.B4 z.B5 z.B6 z.B7 z.B0", symbol("M z HARD", many)),
       "names 'z.B0', which a net has"},
  };
  for (const Row &row : rows) {
    std::string text = sound;
    for (const auto &[from, to] : row.edits) text = edited(text, from, to);
    EXPECT_NE(check_text(text).find(row.finding), std::string::npos) << row.finding << ":\n" << check_text(text);
  }
}

TEST(NetlistFiles, MayHaveLongNames) {
  std::string items;
  for (int i = 0; i < 1000; i++) items += " x";
  EXPECT_LT(check_text(make_nxf("NET " + std::string(100000, 'G') + " EXT SRC a.b DST" + items + ";\n\n", "")).size(),
            std::size_t{400000});
}

std::string prove_text(const std::string &nxf) {
  Translation translation;
  cubenet::write_file("d.tt2", "#$ PINS 2 a y\n.i 1\n.o 1\n.ilb a\n.ob y\n1 1\n.end\n");
  cubenet::write_file("d.nxf", nxf);
  translation.design = read_design("d.tt2", false, translation.cubes, translation.messages);
  return prove_translation(translation);
}

TEST(NetlistFiles, AreProvedWhateverTheirDepthAndRefusedWhenTheyLoop) {
  const cubenet::WorkingDir directory;
  constexpr std::size_t kDepth = 200000;
  std::string nets = "NET a EXT DST g0.A0;\n", symbols;
  for (std::size_t i = 0; i < kDepth; i++) {
    const bool last = i + 1 == kDepth;
    const std::string gate = "g" + std::to_string(i), in = i == 0 ? "a" : "n" + std::to_string(i - 1);
    const std::string out = last ? "y_PIN" : "n" + std::to_string(i);
    nets += "NET " + out + (last ? " EXT" : "") + " SRC " + gate + ".ZN0" +
            (last ? "" : " DST g" + std::to_string(i + 1) + ".A0") + ";\n\n";
    symbols += "SYM INV " + gate + ";\n\tPIN A0 IN " + in + ";\n\tPIN ZN0 OUT " + out + ";\nEND;\n\n";
  }
  EXPECT_EQ(prove_text(make_nxf(nets, symbols)), "");

  // Two gates in a ring beside the path from a to y.
  const std::string ring = prove_text(make_nxf(
      "NET a EXT DST g.A0;\nNET r SRC r.Z0 DST s.A0;\n\nNET s SRC s.Z0 DST g.A1 r.A0;\n\nNET y_PIN EXT SRC g.Z0;\n\n",
      "SYM OR2 g;\n\tPIN A0 IN a;\n\tPIN A1 IN s;\n\tPIN Z0 OUT y_PIN;\nEND;\n\n"
      "SYM BUF r;\n\tPIN A0 IN s;\n\tPIN Z0 OUT r;\nEND;\n\nSYM BUF s;\n\tPIN A0 IN r;\n\tPIN Z0 OUT s;\nEND;\n\n"));
  EXPECT_NE(ring.find("a loop of gates runs through net"), std::string::npos) << ring;
  EXPECT_NE(ring.find("1 differences"), std::string::npos) << ring;
}

} // namespace
} // namespace cubekit
