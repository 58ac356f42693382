// Whole files: order of the lines, header texts, terms, macros, and what makes a file incomplete or hostile.
#include <sys/resource.h>

#include <gtest/gtest.h>

#include "model/run_settings.h"
#include "reader/reader.h"
#include "reader/reading.h"
#include "support/capture.h"
#include "support/temp_dir.h"

namespace cubenet {
namespace {

constexpr std::string_view kCounter = R"(#$ TOOL any
#$ MODULE Count+1
#$ TITLE a two-bit counter;
#$PINS PINS 3 clk:1 q0:14 q1-:15
#$ NODES 1 n
#$ PROPERTY corvane LOCK q0 14
#$ TITLE , with a second line
.I 3x
.o 4
.phase 1101
.ilb clk,q0.q q1.Q
.OB q0.d- q1.D q0.C+ q1.C
.type f
.p 99
-0- | 1000
# a comment
-10 0100
-01 0400
1--0000
2-- 0011
.END
#$ PINS junk
x
)";

TEST(ReadTt2, FillsTheDesign) {
  const Reading reading(kCounter);
  EXPECT_EQ(reading.messages, "");
  ASSERT_NE(reading.design, nullptr);
  const Design &design = *reading.design;
  EXPECT_EQ(join(design.pin_names) + "/ " + join(design.node_names), "clk q0 q1 / n ");
  EXPECT_EQ(join(design.ILB) + "/ " + join(design.IB_EXT), "clk q0 q1 /  Q Q ");
  EXPECT_EQ(join(design.OLB) + "/ " + join(design.OB_EXT), "q0 q1 q0 q1 / D D C C ");
  EXPECT_EQ(design.pin_inversion.words[1], 4U);
  EXPECT_EQ(design.output_inversion.words[1], 5U); // one by its '-', one by its phase
  EXPECT_EQ(design.header.design, "Count+1");
  EXPECT_EQ(design.header.desc, "a two-bit counter  with a second line");
  EXPECT_EQ(describe_attributes(design), "51 clk=1; 51 q0=14; 51 q1=15; 51 q0=14");
  EXPECT_EQ(design.device_series, 1);
  ASSERT_EQ(reading.cubes.NUM_CUBES, 4U);
  EXPECT_EQ(cube(reading.cubes, 0)[1], 0b0001'11'01'11U);
  EXPECT_EQ(cube(reading.cubes, 3)[1], 0b1100'11'11'11U);
}

TEST(ReadTt2, TheDeviceSeriesIsThatOfTheCommandLineOrThePart) {
  run_settings.part_flag = 8;
  EXPECT_EQ(Reading(kCounter).design->device_series, 8);
  reset_run_settings();
  EXPECT_EQ(Reading(design_with("#$ PROPERTY corvane PART Mirn5x")).design->device_series, 5);
}

// A design whose statements and terms follow its header.
std::string with_header(std::string_view rest) {
  return "#$ PINS 2 a y\n.i 3\n.o 2\n.ilb a b c\n.ob y z\n" + std::string(rest);
}
std::string with_header_and_term(std::string_view rest) { return with_header(std::string(rest) + "1-0 01\n"); }
std::string alone(std::string_view text) { return std::string(text); }

TEST(ReadTt2, WarningsKeepTheFirstOccurrence) { check_case_file("warnings.txt", with_header_and_term); }

TEST(ReadTt2, ErrorsEndTheReadingAtTheNextTerm) {
  check_case_file("errors.txt", alone);
  check_case_file("terms.txt", with_header);
  EXPECT_EQ(Reading(with_header("1-\xff 01\n")).messages,
            "31413 ERROR: Product term '1-\xff 01' on line 6 in file 't' is incomplete\nread_tt2_cube\n");
  EXPECT_EQ(Reading("\xef\xbb\xbf" + with_header_and_term("")).messages,
            "31410 ERROR: PLA size must be declared before product term in file 't'\n");
  EXPECT_EQ(Reading(with_header("1-0 00\n")).cubes.NUM_CUBES, 0U); // dropped, but there was a term
}

TEST(ReadTt2, ModuleNamesAndTitlesAreCutAtTheirLimit) {
  const auto module = [](std::size_t length) {
    const Reading reading(design_with("#$ MODULE " + std::string(length, 'm')));
    return std::pair(reading.design->header.design.size(), message_numbers(reading.messages));
  };
  EXPECT_EQ(module(255), std::pair(std::size_t{255}, std::string()));
  EXPECT_EQ(module(256), std::pair(std::size_t{255}, std::string("31512 ")));
  struct TitleRow {
    std::vector<std::size_t> lines;
    std::size_t stored;
    const char *numbers;
  };
  for (const TitleRow &row : std::vector<TitleRow>{{{255}, 255, ""},
                                                   {{256}, 255, "31513 "},
                                                   {{255, 1}, 255, "31513 "},
                                                   {{254, 1, 1}, 254, "31513 31513 "},
                                                   {{253, 1}, 255, ""},
                                                   {{253, 2, 1}, 255, "31513 31513 "},
                                                   {{200, 200, 200}, 255, "31513 31513 "}}) {
    std::string statements;
    for (const std::size_t length : row.lines) statements += "#$ TITLE " + std::string(length, 't') + "\n";
    const Reading reading(design_with(statements));
    EXPECT_EQ(reading.design->header.desc.size(), row.stored) << statements;
    EXPECT_EQ(message_numbers(reading.messages), row.numbers) << statements;
  }
}

TEST(ReadTt2, MacrosAndInstancesStandNewestFirst) {
  const Reading reading(design_with(R"(#$ EXTERNAL old 1 a'i
#$ EXTERNAL add 9 p'I q'x r'o s
#$ INSTANCE u1 old 1 n1
#$ EXTERNAL old 3 a'i b'i c'o d'o
#$ INSTANCE u2 old 3 a.D.X1 b. c extra
#$ INSTANCE u3 add 2 x y)"));
  EXPECT_EQ(reading.messages, "");
  ASSERT_NE(reading.design, nullptr);
  std::string text;
  for (const Macro &macro : reading.design->macros)
    text += macro.name + "( " + join(macro.inputs) + "/ " + join(macro.outputs) + ") ";
  EXPECT_EQ(text, "old( a b / c ) add( p / r ) old( a / ) ");
  text.clear();
  for (const Instance &instance : reading.design->instances) {
    text += instance.name + ":" + std::to_string(instance.macro) + " ";
    for (const auto *list : {&instance.inputs, &instance.outputs})
      for (const Connection &net : *list) text += net.name + "|" + net.pin_part + " ";
  }
  EXPECT_EQ(text, "u3:1 x| y| u2:0 a|D.X1 b| c| u1:2 n1| ");
}

TEST(ReadTt2, ABadInstanceFailsWithoutAMessage) {
  for (const char *statement :
       {"INSTANCE", "INSTANCE u m", "INSTANCE u M 1 a", "INSTANCE u m 2 a b", "INSTANCE u m 1", "INSTANCE u m 1 .q"}) {
    const Reading reading(design_with("#$ EXTERNAL\n#$ EXTERNAL m 1 a'i\n#$ " + std::string(statement)));
    EXPECT_EQ(reading.messages, "");
    EXPECT_EQ(reading.design, nullptr) << statement;
  }
}

TEST(ReadTt2, AFileThatCannotBeReadFails) {
  const TempDir directory;
  CapturedMessages captured;
  CubeTable cubes;
  std::FILE *file = std::fopen(directory.path.c_str(), "rb");
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(read_tt2(file, "folder", cubes), nullptr);
  std::fclose(file);
  EXPECT_EQ(captured.take_unwrapped(), "31102 SYSTEM ERROR: Unable to open file 'folder' for reading\n");
}

TEST(ReadTt2, AFileMayEndAtAnyByte) {
  for (std::size_t length = 0; length <= kCounter.size(); length++) {
    const Reading reading(kCounter.substr(0, length));
    EXPECT_TRUE(reading.design != nullptr || !reading.messages.empty()) << length;
  }
}

TEST(ReadTt2, CountsThatLieTakeNoMemory) {
  const auto peak = [] {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
  };
  const long before = peak();
  const Reading reading("#$ PINS 2147483647 a\n#$ EXTERNAL m 2147483647 a'i\n.i 2147483647\n.o 2147483647\n.phase 1" +
                        std::string(100, '0') + "\n#$ INSTANCE u m 2147483647 a\n" + std::string(5000, '1') + "\n");
  EXPECT_EQ(message_numbers(reading.messages), "31523 31408 31411 ");
  EXPECT_LT(peak() - before, 50'000) << "KiB";
}

TEST(ReadTt2, ALineOfTenMegabytesIsQuotedInPart) {
  const std::string word(10'000'000, 'x');
  for (const std::string start : {"", "#$ MODULE ", "#$ TITLE ", "#$ DEVICE a\n#$ DEVICE ", "#$ PROPERTY ", "#$ PINS ",
                                  "#$ PROPERTY corvane ", "#$ PROPERTY corvane LOCK a ", ".i ", ".phase "}) {
    const Reading reading(".i 1\n.o 1\n" + start + word + "\n");
    EXPECT_LT(reading.messages.size(), 6000U) << start;
  }
}

} // namespace
} // namespace cubenet
