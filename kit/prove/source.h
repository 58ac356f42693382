// A design as its source defines it: functions over the source's inputs and registers, to compare a netlist
// with.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "kit/import/import.h"
#include "kit/netlist/netlist.h"
#include "kit/prove/claims.h"
#include "kit/prove/meaning.h"
#include "kit/prove/prove.h"

namespace cubekit {

struct SourcePort {
  std::string name;
  PortKind kind = PortKind::NONE;
  Literal value = kUnset;   // what the design drives; kUnset: nothing
  Literal enable = kTrue;   // while it drives
  Literal care = kTrue;     // where the value counts
  Literal outside = kUnset; // a variable for the level at the pin: of an input, and after an enable
};

// The suffix of an output that is an input too.
constexpr const char *kAsOutput = " (as an output)";

struct SourceRegister {
  std::vector<std::string> names; // all names of its value; none: anonymous
  bool is_latch = false;
  Literal value = kUnset; // a variable
  NextValue next;
};

struct Source {
  std::vector<SourcePort> ports;
  std::vector<SourceRegister> registers;
};

// Readers that no import depends on: `read_source` reads a PLA's points without completing them, and has
// Yosys read BLIF and Verilog. False with the reason in `fault`.
[[nodiscard]] bool read_source(std::string_view text, const ImportOptions &options, Formulas &formulas, Source &source,
                               Draft &draft, Remark &fault);
// One module in Yosys' JSON form, of $_AND_, $_NOT_, $_TBUF_, $_DFFSR_PPP_ and $_DLATCHSR_PPP_.
[[nodiscard]] bool read_source_json(std::string_view text, Formulas &formulas, Source &source, std::string &error);

// Names in the source, with those that the netlist has for them.
using NewNames = std::unordered_map<std::string, std::string>;
// A name that comes twice belongs to an output that is an input too.
inline void add_new_name(NewNames &names, const std::string &name, const std::string &other) {
  if (!names.emplace(name, other).second) names.emplace(name + kAsOutput, other);
}
// Whether some pin or storage element of the netlist, or port of the source, has a name that the other side
// lacks.
bool has_unknown_name(const Source &source, const Netlist &netlist);

// The names that an import gives. None when the import fails: the source's names are then used as they are.
NewNames import_names(std::string_view text, const ImportOptions &options);

// Gives the netlist's pins and storage elements the source's values, matched by name or, for storage without
// a name, by behaviour, and lists what must hold: each output and its enable, and each storage element's
// controls and next value. `lacking` becomes the registers of the source that the netlist lacks.
void collect_source_claims(const Source &source, const NewNames &names, Circuit &circuit, Claims &claims,
                           std::vector<std::string> &lacking);

// Proves the netlist against the source. Returns kYes or kNo with the report, or kMisuse with `fault` when
// one of them can't be read or a program is missing. `names` may be empty: names that the netlist lacks are
// then changed as an import of the source would.
[[nodiscard]] int prove_source(std::string_view text, const ImportOptions &options, NewNames names,
                               const Netlist &netlist, ProofOptions proof, ProofReport &report, std::string &fault);

} // namespace cubekit
