// What the numbered messages of the translator mean, in plain words.
#pragma once

#include <functional>
#include <span>
#include <string>

namespace CLI {
class App;
}

namespace cubekit {

// `cubekit explain`.
std::function<int()> setup_explain(CLI::App &command);

struct Explanation {
  int number;
  const char *meaning; // what it says
  const char *cause;   // why it comes
  const char *remedy;  // what to do
};

// The entries of one stage, numbers ascending.
std::span<const Explanation> reader_explanations();    // files, the reader, attribute statements
std::span<const Explanation> attribute_explanations(); // attributes and device selection
std::span<const Explanation> checker_explanations();   // the design rules, and the mapping

// The entry as text of a few lines; empty when the number is none that the translator reports.
std::string explain(long number);

// All entries as a Markdown page, a heading for each number.
std::string messages_page();

} // namespace cubekit
