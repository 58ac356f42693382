// Every example, damaged in every way that a broken editor, disk or generator would: whatever the damage is,
// the run keeps all promises, and what it still translates is whole and well formed.
#include <filesystem>
#include <functional>
#include <random>
#include <set>

#include <gtest/gtest.h>

#include "reliability/promises.h"
#include "support/temp_dir.h"

namespace cubenet {
namespace {

namespace fs = std::filesystem;

struct Span {
  std::size_t begin, end;
};

// The spans between the separators.
std::vector<Span> split(std::string_view text, std::string_view separators) {
  std::vector<Span> spans;
  for (std::size_t at = 0; (at = text.find_first_not_of(separators, at)) != std::string_view::npos;) {
    const std::size_t end = std::min(text.find_first_of(separators, at), text.size());
    spans.push_back({at, end});
    at = end;
  }
  return spans;
}

std::string replaced(const std::string &text, Span span, std::string_view by) {
  return text.substr(0, span.begin) + std::string(by) + text.substr(span.end);
}

// Under the address sanitizer, where a run takes ten times as long, every fourth damage is tried.
#ifdef __SANITIZE_ADDRESS__
constexpr std::size_t kShare = 4;
#else
constexpr std::size_t kShare = 1;
#endif

struct DamagedDesigns : testing::Test {
  const WorkingDir dir;
  std::size_t asked = 0, runs = 0, translated = 0;

  // The runs cycle through the options.
  void try_text(const std::string &text, const std::string &what) {
    if (HasFailure() || asked++ % kShare != 0) return; // one finding at a time
    fs::remove("d.tt2");                               // some file systems wait for the disk when a file was emptied
    write_file("d.tt2", text);
    std::string said;
    EXPECT_EQ(broken_promise(runs, &said), "")
        << what << " with '" << kRunOptions[runs % std::size(kRunOptions)] << "'\n"
        << said << text.substr(0, 5000);
    runs++;
    translated += said.find("successfully") != std::string::npos ? 1 : 0;
  }

  void for_each_example(const std::function<void(const std::string &)> &each) {
    std::set<fs::path> designs;
    for (const auto &entry : fs::recursive_directory_iterator(fs::path(PROJECT_DIR) / "examples"))
      if (entry.path().extension() == ".tt2") designs.insert(entry.path());
    for (const fs::path &design : designs) {
      SCOPED_TRACE(design.filename());
      each(read_file(design));
    }
    EXPECT_GT(translated, 0U);
    EXPECT_GT(runs, translated);
    RecordProperty("runs", std::to_string(runs) + ", translated " + std::to_string(translated));
  }
};

const std::string_view kIntruders[] = {"\f", {"\0", 1}, "\r", "\x80\xff", "\xef\xbb\xbf", "%s%n%d", ".", ":", "-"};
const std::string_view kLies[] = {
    "0", "1", "-1", "2147483647", "2147483648", "9223372036854775808", "99999999999999999999"};

TEST_F(DamagedDesigns, OfLines) {
  for_each_example([&](const std::string &text) {
    const std::vector<Span> lines = split(text, "\n");
    for (std::size_t i = 0; i < lines.size(); i++) {
      const std::string line = text.substr(lines[i].begin, lines[i].end - lines[i].begin);
      try_text(replaced(text, {lines[i].begin, lines[i].end + 1}, ""), "without " + line);
      try_text(replaced(text, lines[i], line + "\n" + line), "twice " + line);
      if (i == 0) continue;
      const std::string above = text.substr(lines[i - 1].begin, lines[i - 1].end - lines[i - 1].begin);
      try_text(replaced(text, {lines[i - 1].begin, lines[i].end}, line + "\n" + above), "swapped " + line);
    }
    std::string ends = text;
    for (std::size_t at = 0; (at = ends.find('\n', at)) != std::string::npos; at += 2) ends.insert(at, "\r");
    try_text(ends, "CR LF");
  });
}

TEST_F(DamagedDesigns, OfWords) {
  for_each_example([&](const std::string &text) {
    std::size_t turn = runs;
    for (const Span word : split(text, " \t\n")) {
      const std::string was = text.substr(word.begin, word.end - word.begin);
      try_text(replaced(text, {word.begin, word.end + 1}, ""), "dropped " + was);
      try_text(replaced(text, word, ""), "emptied " + was);
      const std::size_t at = turn % 2 == 0 ? word.begin : word.end;
      try_text(replaced(text, {at, at}, kIntruders[turn++ % std::size(kIntruders)]), "intruder at " + was);
      const char line = text[text.rfind('\n', word.begin) + 1];
      const bool is_term = line != '#' && line != '.';
      if (is_term || was.find_first_not_of("0123456789") != std::string::npos) continue;
      for (const std::string_view lie : kLies) try_text(replaced(text, word, lie), std::string(lie) + " for " + was);
    }
  });
}

TEST_F(DamagedDesigns, OfBytes) {
  std::mt19937 random(11);
  for_each_example([&](const std::string &text) {
    for (std::size_t n = text.find("#$"); n < text.size(); n++) { // after the leading comment
      try_text(text.substr(0, n), "cut");
      if (n % 4 != 0) continue;
      std::string noisy = text;
      for (int i = 0; i < 3; i++) noisy[random() % noisy.size()] = static_cast<char>(random());
      try_text(noisy, "noise");
    }
  });
}

// Long and strange names, the same wherever the name occurs: around the limits of the buffers.
TEST_F(DamagedDesigns, OfNames) {
  std::vector<std::string> suffixes{"%s%n", "_PIN", "_D", "_Q", "_PLA0", "'", "$"};
  for (const std::size_t length : {48, 49, 50, 254, 255, 256, 1023, 1024, 10'000}) suffixes.emplace_back(length, 'x');
  for_each_example([&](const std::string &text) {
    std::set<std::string> names;
    const std::string_view separators = " \t\n.:+-,;='|";
    const std::size_t pins = text.find("#$ PINS") + 8, end = text.find('\n', pins);
    for (const Span name : split(std::string_view(text).substr(pins, end - pins), separators))
      names.insert(text.substr(pins + name.begin, name.end - name.begin));
    for (const std::string &name : names)
      for (const std::string &suffix : suffixes) {
        std::string renamed;
        std::size_t kept = 0;
        for (const Span word : split(text, separators)) {
          if (text.substr(word.begin, word.end - word.begin) != name) continue;
          renamed += text.substr(kept, word.end - kept) + suffix;
          kept = word.end;
        }
        try_text(renamed + text.substr(kept), "renamed " + name);
      }
  });
}

// One AND of that many inputs, and one OR of that many terms.
TEST_F(DamagedDesigns, OfWidths) {
  for (const int width : {1, 2, 11, 12, 13, 24, 100, 101, 144, 145, 2'000}) {
    std::string ands = "#$ PINS " + std::to_string(width + 1) + " y", ilb = ".ilb";
    for (int i = 0; i < width; i++) ilb += " i" + std::to_string(i);
    ands += ilb.substr(4) + "\n.i " + std::to_string(width) + "\n.o 1\n" + ilb + "\n.ob y\n";
    ands += std::string(static_cast<std::size_t>(width), '1') + " 1\n.e\n";
    std::string ors =
        "#$ PINS 15 y a b c d e f g h i j k l m n\n.i 14\n.o 1\n.ilb a b c d e f g h i j k l m n\n.ob y\n";
    for (int i = 0; i < width; i++) {
      for (int bit = 0; bit < 14; bit++) ors += (i >> bit & 1) != 0 ? '1' : '0';
      ors += " 1\n";
    }
    for (std::size_t i = 0; i < std::size(kRunOptions); i++) {
      try_text(ands, "AND of " + std::to_string(width));
      try_text(ors + ".e\n", "OR of " + std::to_string(width));
    }
  }
  EXPECT_EQ(translated, runs);
}

} // namespace
} // namespace cubenet
