// `cubekit explain`: looks up a message, or writes all of them as a page. Repeated output-list entries have a
// number per extension and share one explanation.
#include "kit/explain/explain.h"

#include <CLI/CLI.hpp>
#include <array>
#include <iostream>
#include <memory>

#include "kit/command/command.h"
#include "kit/command/output.h"

namespace cubekit {

namespace {

struct Repeat {
  int number;
  const char *extension; // empty: the plain name
};

// clang-format off
constexpr auto kRepeats = std::to_array<Repeat>({
    {131270, ".C"},      {231270, ".LH"},       {331270, ".LE"},     {431270, ".D"},    {531270, ".D.X1"},
    {631270, ".D.X2"},   {731270, ".T"},        {831270, ".T.X1"},   {931270, ".T.X2"}, {1031270, ".J"},
    {1131270, ".K"},     {1231270, ".R"},       {1331270, ".S"},     {1431270, ".REG"}, {1531270, ".REG.X1"},
    {1631270, ".REG.X2"}, {9931270, ""},        {10031270, ".OE"},   {10131270, ".X2"}, {20031270, ".CE"},
    {30031270, ".SP"},   {40031270, ".SR"},     {50031270, ".AR"},   {60031270, ".RE"}, {70031270, ".AP"},
    {80031270, ".PR"},   {90031270, ".X1"},
});
// clang-format on

constexpr const char *kRepeatMeaning = "An equation is listed twice on the .ob line";
constexpr const char *kRepeatCause = "Each equation may have one output column.";
constexpr const char *kRepeatRemedy = "Merge the columns.";

std::string format(long number, const std::string &meaning, const std::string &cause, const std::string &remedy) {
  return std::to_string(number) + ": " + meaning + "\n  Why: " + cause + "\n  What to do: " + remedy + '\n';
}

// Escapes the characters that Markdown interprets.
std::string escape(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    if (c == '<' || c == '*' || c == '|') escaped += '\\';
    escaped += c;
  }
  return escaped;
}

constexpr const char *kPageHead = R"(# Messages

<!-- Written by `cubekit explain --all`. -->

Each finding of `cubenet` has a number, printed before `ERROR`, `WARNING` or `SYSTEM ERROR` on the console and
in `cubenet.log`. Errors end the run with status 2, warnings never do. `cubekit explain NUMBER` shows one
entry of this page.
)";

struct Chapter {
  const char *title;
  std::span<const Explanation> (*rows)();
};
constexpr auto kChapters = std::to_array<Chapter>({
    {"Files, header lines, terms and lists", reader_explanations},
    {"Attributes, part and device", attribute_explanations},
    {"Design rules and mapping", checker_explanations},
});

void append_chapter(std::string &page, const Chapter &chapter) {
  page.append("\n## ").append(chapter.title).append("\n");
  for (const Explanation &row : chapter.rows()) {
    page.append("\n### ").append(std::to_string(row.number)).append("\n\n").append(escape(row.meaning));
    page.append("\n- Why: ").append(escape(row.cause));
    page.append("\n- What to do: ").append(escape(row.remedy)).append("\n");
  }
}

void append_repeats(std::string &page) {
  page.append("\n## Repeated equations\n\n").append(kRepeatMeaning);
  page.append(".\n- Why: ").append(kRepeatCause);
  page.append("\n- What to do: ").append(kRepeatRemedy);
  page.append("\n\n| Number | Equation |\n|---|---|\n");
  for (const Repeat &row : kRepeats) {
    const std::string extension = row.extension[0] == '\0' ? "the plain name" : "`" + std::string(row.extension) + "`";
    page.append("| ").append(std::to_string(row.number)).append(" | ").append(extension).append(" |\n");
  }
}

} // namespace

std::string explain(long number) {
  for (const Chapter &chapter : kChapters)
    for (const Explanation &row : chapter.rows())
      if (row.number == number) return format(number, row.meaning, row.cause, row.remedy);
  for (const Repeat &row : kRepeats) {
    if (row.number != number) continue;
    const std::string what =
        row.extension[0] == '\0' ? "the plain name of a signal" : std::string(row.extension) + " of a signal";
    return format(number, kRepeatMeaning + (": " + what) + ".", kRepeatCause, kRepeatRemedy);
  }
  return {};
}

std::string messages_page() {
  std::string page = kPageHead;
  for (const Chapter &chapter : kChapters) append_chapter(page, chapter);
  append_repeats(page);
  return page;
}

std::function<int()> setup_explain(CLI::App &command) {
  auto number = std::make_shared<long>();
  auto all = std::make_shared<bool>();
  command.add_option("NUMBER", *number, "the number printed before ERROR or WARNING");
  command.add_flag("--all", *all, "write all messages as a Markdown page");
  command.require_option(1);
  return [number, all] {
    const std::string text = *all ? messages_page() : explain(*number);
    if (text.empty()) {
      std::cerr << "cubekit: no message has the number " << *number << '\n';
      return kNo;
    }
    return write_output("", [&](std::ostream &stream) { stream << text; });
  };
}

} // namespace cubekit
