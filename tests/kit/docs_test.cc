// The documentation is true: commands print what is shown, links lead somewhere, and pages that list
// something list all of it.
#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <map>
#include <set>
#include <span>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "kit/commands.h"
#include "kit/explain/explain.h"
#include "kit/netlist/primitives.h"
#include "reader/property_keywords.h"
#include "support/temp_dir.h"

namespace cubekit {
namespace {

namespace fs = std::filesystem;

std::vector<std::string> lines_of(const std::string &text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) {
    line.erase(line.find_last_not_of(" \t\r") + 1);
    lines.push_back(line);
  }
  return lines;
}

std::vector<fs::path> pages(const char *folder) {
  std::vector<fs::path> found;
  for (auto at = fs::recursive_directory_iterator(folder); at != fs::recursive_directory_iterator(); ++at) {
    const std::string name = at->path().filename();
    if (at->is_directory() && (name == "build" || name.starts_with('.'))) at.disable_recursion_pending();
    if (at->path().extension() == ".md") found.push_back(at->path());
  }
  std::sort(found.begin(), found.end());
  return found;
}

struct Block {
  std::string info; // the text after the opening fence
  std::vector<std::string> lines;
};

// Calls `text` with each line outside the fenced blocks of a page; returns the blocks.
std::vector<Block> split_page(const fs::path &page, const std::function<void(const std::string &)> &text) {
  std::vector<Block> blocks;
  bool is_fenced = false;
  for (const std::string &line : lines_of(cubenet::read_file(page))) {
    if (line.starts_with("```")) {
      if (!is_fenced) blocks.push_back({line.substr(3), {}});
      is_fenced = !is_fenced;
    } else if (is_fenced) {
      blocks.back().lines.push_back(line);
    } else {
      text(line);
    }
  }
  EXPECT_FALSE(is_fenced) << page;
  return blocks;
}

std::string join(const std::vector<std::string> &lines) {
  std::string text;
  for (const std::string &line : lines) text += line + "\n";
  return text;
}

std::vector<std::string> said_by(const std::string &command) {
  std::FILE *pipe = popen(("{ " + command + "; } 2>&1").c_str(), "r");
  std::string said;
  char block[4096];
  for (std::size_t got; (got = std::fread(block, 1, sizeof block, pipe)) > 0;) said.append(block, got);
  pclose(pipe);
  return lines_of(said);
}

// "..." alone on a line stands for any lines.
bool is_shown(std::span<const std::string> said, std::span<const std::string> shown) {
  if (shown.empty()) return said.empty();
  if (shown.front() != "...")
    return !said.empty() && said[0] == shown[0] && is_shown(said.subspan(1), shown.subspan(1));
  for (std::size_t skipped = 0; skipped <= said.size(); skipped++)
    if (is_shown(said.subspan(skipped), shown.subspan(1))) return true;
  return false;
}

// The blocks of a page in a directory of its own, in order: "tt2 NAME" and "text NAME" write the file NAME,
// "console" runs each line after "$ " and shows its output.
void run_page(const fs::path &page) {
  const cubenet::WorkingDir directory;
  fs::create_directory_symlink(PROJECT_DIR "/examples", "examples");
  for (const Block &block : split_page(page, [](const std::string &) {})) {
    const std::size_t space = block.info.find(' ');
    if (space != std::string::npos) cubenet::write_file(block.info.substr(space + 1), join(block.lines));
    if (block.info != "console") continue;
    for (std::size_t i = 0; i < block.lines.size();) {
      const std::string command = block.lines[i++];
      ASSERT_TRUE(command.starts_with("$ ")) << page << ": " << command;
      std::vector<std::string> shown;
      for (; i < block.lines.size() && !block.lines[i].starts_with("$ "); i++) shown.push_back(block.lines[i]);
      const std::vector<std::string> said = said_by(command.substr(2));
      EXPECT_TRUE(is_shown(said, shown)) << page << ": " << command << '\n' << join(said);
    }
  }
}

TEST(Docs, CommandsSayWhatIsShown) {
  const auto folder = [](const char *program) { return fs::path(program).parent_path().string(); };
  const std::string path = folder(CUBENET_PROGRAM) + ":" + folder(CUBEKIT_PROGRAM) + ":" + std::getenv("PATH");
  setenv("PATH", path.c_str(), 1);
  setenv("cubenet_ROOT", PROJECT_DIR, 1); // where builds look for the package
  int blocks = 0;
  for (const fs::path &page : pages(PROJECT_DIR "/docs")) {
    run_page(page);
    for (const Block &block : split_page(page, [](const std::string &) {})) blocks += block.info == "console";
  }
  EXPECT_GT(blocks, 10);
}

// The anchor that a heading gets.
std::string anchor_of(const std::string &heading) {
  std::string anchor;
  for (const char c : heading.substr(heading.find(' ') + 1)) {
    if (std::isalnum(static_cast<unsigned char>(c)) || c == '-' || c == '_') anchor += c;
    if (c == ' ') anchor += '-';
  }
  std::transform(anchor.begin(), anchor.end(), anchor.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return anchor;
}

TEST(Docs, LinksLeadToFilesAndHeadings) {
  std::map<fs::path, std::set<std::string>> anchors;
  std::vector<std::pair<fs::path, std::string>> links;
  for (const fs::path &page : pages(PROJECT_DIR)) {
    anchors[page];
    split_page(page, [&](const std::string &line) {
      if (line.starts_with('#')) anchors[page].insert(anchor_of(line));
      for (std::size_t at = 0; (at = line.find("](", at)) != std::string::npos; at += 2)
        links.emplace_back(page, line.substr(at + 2, line.find(')', at) - at - 2));
    });
  }
  EXPECT_GT(links.size(), 50U);
  for (const auto &[page, link] : links) {
    if (link.find("://") != std::string::npos) continue;
    const std::size_t mark = std::min(link.find('#'), link.size());
    const fs::path target = mark == 0 ? page : (page.parent_path() / link.substr(0, mark)).lexically_normal();
    EXPECT_TRUE(fs::exists(target)) << page << ": " << link;
    if (mark == link.size()) continue;
    EXPECT_TRUE(anchors[target].count(link.substr(mark + 1)) != 0) << page << ": " << link;
  }
}

TEST(Docs, ThePageOfMessagesIsMadeFromTheExplanations) {
  EXPECT_TRUE(cubenet::read_file(PROJECT_DIR "/docs/messages.md") == messages_page())
      << "cubekit explain --all >docs/messages.md";
}

// The first cells of a primitive's row: name, pins in the order of a netlist, device series.
std::string primitive_cells(const PrimitiveRow &row) {
  std::string cells = "| `" + std::string(row.name) + (row.width_in_name ? "`*n* | " : "` | ");
  if (row.numbered) cells += "A0, A1, ..., ";
  for (const PinRow &pin : row.pins) {
    if (pin.name.empty()) break;
    const char *direction = pin.direction == Direction::IN    ? ""
                            : pin.direction == Direction::OUT ? " (out)"
                                                              : " (bidi)";
    const std::string text = std::string(pin.name) + direction;
    cells += (pin.optional ? "[" + text + "]" : text) + ", ";
  }
  cells.resize(cells.size() - 2);
  std::string series;
  for (const int each : {0, 1, 5, 8})
    if (each >= row.min_series && each <= row.max_series) series += (series.empty() ? "" : ", ") + std::to_string(each);
  return cells + " | " + (series == "0, 1, 5, 8" ? "all" : series) + " | ";
}

TEST(Docs, ThePageOfPrimitivesHasThePinsAndADrawingOfEach) {
  const std::string page = cubenet::read_file(PROJECT_DIR "/docs/primitives.md");
  std::size_t drawings = 0;
  for (const PrimitiveRow &row : kPrimitives) {
    if (row.function == Function::MACRO) continue;
    const std::string drawing = "(images/primitives/" + std::string(row.name) + ".svg) |";
    const std::size_t at = page.find(primitive_cells(row));
    ASSERT_NE(at, std::string::npos) << primitive_cells(row);
    EXPECT_NE(page.substr(at, page.find('\n', at) - at).find(drawing), std::string::npos) << row.name;
    drawings++;
  }
  for (std::size_t at = 0; (at = page.find("](images/primitives/", at)) != std::string::npos; at++) drawings--;
  EXPECT_EQ(drawings, 0U) << "a drawing of no primitive";
}

TEST(Docs, ThePagesOfTheInputNameEveryKeyword) {
  for (const char *file : {"/docs/tt2.md", "/docs/man/tt2.5"}) {
    const std::string page = cubenet::read_file(std::string(PROJECT_DIR) + file);
    for (const cubenet::KeywordRow &row : cubenet::keyword_rows())
      EXPECT_NE(page.find(row.keyword), std::string::npos) << file << ": " << row.keyword;
  }
}

TEST(Docs, TheManualOfTheCompanionNamesEveryCommand) {
  const std::string manual = cubenet::read_file(PROJECT_DIR "/docs/man/cubekit.1");
  for (const Command &command : commands())
    EXPECT_NE(manual.find("\n.Ss " + std::string(command.name) + "\n"), std::string::npos) << command.name;
}

// ---- architecture

using Arrows = std::set<std::pair<std::string, std::string>>;

// The folder of a source file, as named in the picture.
std::string node_of(const std::string &file) {
  const std::size_t slash = file.find('/');
  return slash == std::string::npos ? "main" : file.substr(0, slash);
}

// Which folders of a source tree include which, by a path that begins with `prefix`.
Arrows included_arrows(const fs::path &tree, const std::string &prefix) {
  Arrows arrows;
  for (const auto &entry : fs::recursive_directory_iterator(tree)) {
    if (!entry.is_regular_file()) continue;
    const std::string from = node_of(fs::relative(entry.path(), tree));
    for (const std::string &line : lines_of(cubenet::read_file(entry.path()))) {
      const std::string include = "#include \"" + prefix;
      if (!line.starts_with(include)) continue;
      const std::string to = node_of(line.substr(include.size()));
      if (to != from) arrows.emplace(from, to);
    }
  }
  return arrows;
}

// The arrows between folders; those from and to files are the flow of data.
Arrows drawn_arrows(const fs::path &picture) {
  Arrows arrows;
  for (const std::string &line : lines_of(cubenet::read_file(picture))) {
    std::istringstream words(line);
    std::string from, arrow, to;
    words >> from >> arrow >> to;
    if (arrow == "->" && line.find("class=flow") == std::string::npos) arrows.emplace(from, to);
  }
  return arrows;
}

// Without a cycle there is always a folder that includes none of the rest.
void remove_arrows_without_circle(Arrows &arrows) {
  for (std::size_t before = arrows.size() + 1; arrows.size() < before;) {
    before = arrows.size();
    std::set<std::string> including;
    for (const auto &[from, to] : arrows) including.insert(from);
    std::erase_if(arrows, [&](const auto &arrow) { return including.count(arrow.second) == 0; });
  }
}

TEST(Docs, ThePicturesOfTheFoldersHaveTheIncludesOfTheSourcesAndNoCircle) {
  Arrows program = included_arrows(PROJECT_DIR "/src", ""), companion = included_arrows(PROJECT_DIR "/kit", "kit/");
  // The table of commands includes them all.
  std::erase_if(companion, [](const auto &arrow) { return arrow.first == "main"; });
  EXPECT_EQ(drawn_arrows(PROJECT_DIR "/docs/images/architecture.dot"), program);
  EXPECT_EQ(drawn_arrows(PROJECT_DIR "/docs/images/companion.dot"), companion);
  for (Arrows *arrows : {&program, &companion}) {
    remove_arrows_without_circle(*arrows);
    EXPECT_EQ(*arrows, Arrows{});
  }
}

} // namespace
} // namespace cubekit
