// `cubekit explain`: looks a message up. The repeats of output-list entries, which have a number per extension, are
// told alike.
#include "kit/explain.h"

#include <CLI/CLI.hpp>
#include <array>
#include <iostream>
#include <memory>

#include "kit/command.h"

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

std::string format(long number, const std::string &meaning, const std::string &cause, const std::string &remedy) {
  return std::to_string(number) + ": " + meaning + "\n  Why: " + cause + "\n  What to do: " + remedy + '\n';
}

} // namespace

std::string explain(long number) {
  for (const auto &rows : {reader_explanations(), attribute_explanations(), checker_explanations()})
    for (const Explanation &row : rows)
      if (row.number == number) return format(number, row.meaning, row.cause, row.remedy);
  for (const Repeat &row : kRepeats) {
    if (row.number != number) continue;
    const std::string what =
        row.extension[0] == '\0' ? "the plain name of a signal" : std::string(row.extension) + " of a signal";
    return format(number, "An equation is listed twice on the .ob line: " + what + ".",
                  "Each equation may have one output column.", "Merge the columns.");
  }
  return {};
}

std::function<int()> setup_explain(CLI::App &command) {
  auto number = std::make_shared<long>();
  command.add_option("NUMBER", *number, "the number that stands before ERROR or WARNING")->required();
  return [number] {
    const std::string text = explain(*number);
    if (text.empty()) {
      std::cerr << "cubekit: no message has the number " << *number << '\n';
      return kNo;
    }
    std::cout << text;
    return kYes;
  };
}

} // namespace cubekit
