// Explanations of the translator's numbered messages.
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
  const char *cause;   // why it is reported
  const char *remedy;  // what to do
};

// The entries of one stage, numbers ascending.
std::span<const Explanation> reader_explanations();    // files, the reader, attribute statements
std::span<const Explanation> attribute_explanations(); // attributes and device selection
std::span<const Explanation> checker_explanations();   // the design rules, and the mapping

// The entry as a few lines of text; empty if the translator never reports that number.
std::string explain(long number);

// All entries as a Markdown page, one heading per number.
std::string messages_page();

} // namespace cubekit
