// Checks the files of a translation: the form of the netlists, one netlist against the other and, where the
// truth table is available, all files against a new translation of it.
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

// Checks DESIGN.nxf, .ddf, .tvx and .par, against the truth table if there is one (DESIGN.tt2 unless another
// is named). Returns the exit status: what is wrong goes to `out`, why something can't be judged to `errors`.
[[nodiscard]] int check_files(const std::string &design, const std::string &truth_table, std::ostream &out,
                              std::ostream &errors);

// A ddf netlist, after its comparison with an .nxf netlist.
struct DdfReading {
  DdfNetlist netlist;
  SymbolIndex first_listed = kNone; // of the .nxf; the gates of expanded terms come before it
};

// Where the text of a ddf netlist breaks its form or disagrees with the .nxf netlist; what a ddf always
// leaves out is allowed for. Lines are those of the ddf. The reading holds views into the text.
std::vector<Finding> compare_netlists(const Netlist &netlist, std::string_view ddf_text, DdfReading &reading);

// What is wrong with a constraints file, what only a truth table could confirm, and the parameter file it
// implies.
struct Judgement {
  std::vector<Finding> wrong, open;
  std::optional<std::string> parameters;
};

// Checks the form of constraints. `signals` are the names in the netlists, `response` is the response file
// that the parameter file names.
Judgement check_constraints(std::string_view text, const NameIndex &signals, const std::string &response);

// The files of a translation, as read. The netlist owns its text.
struct TranslationFiles {
  const std::string &design; // path without extension
  const Netlist &netlist;
  const DdfReading &ddf;
  std::string_view ddf_text, constraints;
  std::optional<std::string_view> parameters; // none: there is no such file
  std::string response;                       // the one that the parameter file names
};

// Compares all of them with a new translation of the table, which must exist. Returns the exit status: first
// differences go to `out`, why something can't be judged to `errors`.
[[nodiscard]] int compare_with_table(const TranslationFiles &files, const std::string &truth_table, std::ostream &out,
                                     std::ostream &errors);

// Adds the first difference between the text of a file and the wanted one, if any. None: there is no file.
bool find_difference(std::optional<std::string_view> text, std::optional<std::string_view> wanted,
                     std::vector<Finding> &findings);

} // namespace cubekit
