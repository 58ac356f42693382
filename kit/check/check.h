// Judges the files of a translation: the netlists by their form and against each other and, where the truth table is at
// hand, all files against what the translator makes of it.
#pragma once

#include <functional>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "kit/check/ddf_parser.h"
#include "kit/netlist/netlist.h"

namespace CLI {
class App;
}

namespace cubekit {

// `cubekit check`.
std::function<int()> setup_check(CLI::App &command);

// The same: DESIGN.nxf, .ddf, .tvx and .par, against the truth table (DESIGN.tt2, where it is there, unless one is
// named). Returns the exit status: what is wrong goes to `out`, why something can't be judged to `errors`.
[[nodiscard]] int check_files(const std::string &design, const std::string &truth_table, std::ostream &out,
                              std::ostream &errors);

// A ddf netlist, as it was held against an .nxf netlist.
struct DdfReading {
  DdfNetlist netlist;
  SymbolIndex first_listed = kNone; // of the .nxf; the gates of expanded terms stand before it
};

// Where the text of a ddf netlist breaks its form, or tells another story than the .nxf netlist; what a ddf leaves out
// on principle is allowed for. Lines are those of the ddf. The reading holds views into the text.
std::vector<Finding> compare_netlists(const Netlist &netlist, std::string_view ddf_text, DdfReading &reading);

// What is wrong with a constraints file, what only a truth table can tell, and the parameter file that belongs to it.
struct Judgement {
  std::vector<Finding> wrong, open;
  std::optional<std::string> parameters;
};

// Judges constraints by their form. `signals` are the names that the netlists have, `response` is the response file
// that the parameter file names.
Judgement check_constraints(std::string_view text, const NameIndex &signals, const std::string &response);

// The files of a translation, as they are. The text of the netlist is its own.
struct TranslationFiles {
  const std::string &design; // path without extension
  const Netlist &netlist;
  const DdfReading &ddf;
  std::string_view ddf_text, constraints;
  std::optional<std::string_view> parameters; // none: there is no such file
  std::string response;                       // that the parameter file names
};

// Holds all of them against a new translation of the table, which must be there. Returns the exit status: first
// differences go to `out`, why something can't be judged to `errors`.
[[nodiscard]] int compare_with_table(const TranslationFiles &files, const std::string &truth_table, std::ostream &out,
                                     std::ostream &errors);

// Adds where the text of a file first differs from the wanted one, if it does. None: there is no file.
bool find_difference(std::optional<std::string_view> text, std::optional<std::string_view> wanted,
                     std::vector<Finding> &findings);

} // namespace cubekit
