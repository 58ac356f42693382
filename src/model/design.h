// The design database: everything known of the one design that a run translates. The reader creates and fills it, the
// design rule checker adds the groups marked "checker", and from then on it is read only, but for the renaming of
// colliding names by the netlist mapping. Field names in upper case (and those of the attribute records) are the labels
// of the debug listing.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "model/bit_set.h"
#include "model/rare.h"
#include "model/signal_flags.h"

namespace cubenet {

constexpr std::size_t kNameLimit = 50;  // characters of a pin, node or signal name (with its dot extension)
constexpr std::size_t kTextLimit = 255; // characters of a design name, title or path name

struct DesignHeader {
  std::string design; // module name, at most kTextLimit; empty: none was given
  std::string desc;   // title, at most kTextLimit; empty: none was given
  std::string family;
  std::string part;
  std::array<std::string, 15> option; // device-wide switches, "KEYWORD value"; empty: not set
};

// Placement and electrical attributes of one pin. There is one for every pin and few are set, so it is kept small.
struct XPin {
  Rare<std::string> xpin_num; // location (package pin); empty: not locked
  Rare<std::string> grp;
  // Attribute codes; 0 is none.
  std::uint8_t crit = 0, pullup = 0, outdelay = 0, voltage = 0, slowslew = 0, opendrain = 0;
};

using Mark = std::uint8_t; // 0 or 1

// The attributes of a list entry that hold names.
struct SignalNames {
  std::string SCP, SAP, SNP, SLP, STP; // the paths that start at this signal, by kind, space-separated
  std::string ECP, EAP, ENP, ELP, ETP; // the paths that end at this signal, by kind
  std::string GRP;
};

// Attributes of one input-list or output-list entry; as small as the pins' for the same reason.
struct SignalAttributes {
  Mark LXOR2 = 0, PRESERVE = 0, PROTECT = 0, ZDOT = 0;
  Mark SLOWCLK = 0, FASTCLK = 0, CLK0 = 0, CLK1 = 0, CLK2 = 0, ICLK0 = 0, ICLK1 = 0;
  Mark A0 = 0, A1 = 0; // carried through, set by no statement
  Rare<SignalNames> names;
};

// One attribute statement of one signal. Code 0: rejected by the reader, or ignored or consumed by the checker.
struct Property {
  int attr_name = 0;
  std::string pin_node_name; // without dot extension
  std::string pi_node_ext;   // upper case; empty: written without one
  std::string attribute_value;
  int ilb_idx = -1;        // checker: input-list entry, -1 none
  int ob_idx = -1;         // checker: output-list entry, -1 none
  int end_reader_idx = -1; // checker: input-list entry of a path's end that has an equation, -1 none
};

struct PathPoint {
  std::string signal; // as declared, with the extension as written; empty: the point is not specified
  int kind = 0;       // attribute code 40..49; 0: not specified
};

struct Path {
  std::string name; // at most kTextLimit characters; empty: ignored by the checker
  PathPoint start, end;
};

// A macro and its ports (EXTERNAL statement).
struct Macro {
  std::string name;
  std::vector<std::string> inputs, outputs; // port names, in declaration order
};

// A declared signal as one number: pins count from 0, nodes follow them.
using SignalIndex = std::int32_t;
constexpr SignalIndex kNoSignal = -1;

// A net that is connected to a macro port.
struct Connection {
  std::string name;
  std::string pin_part;           // text behind the '.'; empty: none
  SignalIndex signal = kNoSignal; // checker: the declared signal of that name; kNoSignal: a plain net
};

// A placed macro (INSTANCE statement); connections in the order of the macro's ports.
struct Instance {
  std::string name;
  std::size_t macro = 0; // index into Design::macros
  std::vector<Connection> inputs, outputs;
};

// Fan-out of the product terms (checker).
enum OutputStatus : std::int8_t {
  OUTPUT_LOGIC = -1,    // driven by terms that all have literals
  OUTPUT_CONSTANT = -4, // some driving term has no literal: always 1 before the output's inversion
  OUTPUT_EMPTY = -5,    // no term drives it: always 0 before the output's inversion
};

struct FanOut {
  std::vector<OutputStatus> status;   // per output-list entry
  std::vector<std::uint32_t> cubes;   // per output-list entry: number of terms that drive it
  std::vector<std::uint8_t> oe_feed;  // per output-list entry: 1 when it carries the output-enable feed mark
  std::vector<std::uint8_t> fans_out; // per input-list entry: 1 when a used term has a literal of it
};

// The terms of each output that is neither constant nor empty, and the places of their literals.
struct TermLists {
  std::vector<std::uint32_t> starts; // per output-list entry, and one more: its part of `terms`; empty: not listed yet
  std::vector<std::uint32_t> terms;  // cube indices, ascending per output

  // PLA form only: the inputs that the terms of an output use.
  std::vector<std::uint32_t> needed;       // per output-list entry: so many of its first terms use all its inputs
  std::vector<std::uint32_t> word_readers; // per input word: how many outputs use any of its inputs

  // The input words of a row that hold literals; not listed where it takes no longer to look through the row.
  std::vector<std::size_t> word_starts; // per term, and one more: its part of `words`
  std::vector<std::uint32_t> words;     // ascending per term
};

struct Design {
  // Lists (reader). A rejected or removed name leaves an empty string; counts keep their value.
  std::vector<std::string> pin_names;  // NUM_PIN entries, declaration order
  std::vector<std::string> node_names; // NUM_NODE entries
  std::vector<std::string> ILB;        // input columns: name without dot extension
  std::vector<std::string> IB_EXT;     // parallel to ILB: extension in upper case, empty for none
  std::vector<std::string> OLB;        // output columns
  std::vector<std::string> OB_EXT;     // parallel to OLB
  BitSet pin_inversion;                // per pin: written with '-' on the pin list
  BitSet output_inversion;             // per output-list entry: '-' on the output list, flipped by a 0 of .phase
  std::vector<int> pin_locations;      // numeric location per pin; -1 none (no statement sets it)

  DesignHeader header;
  int device_series = 0; // 0, 1, 5 or 8: "-p", else from header.part

  // Attribute block (reader, then judged by the checker).
  std::vector<XPin> xpins;                                      // per pin
  std::vector<std::string> node_groups;                         // per node: GRP
  std::vector<SignalAttributes> ilb_attributes;                 // per ILB entry
  std::vector<SignalAttributes> olb_attributes;                 // per OLB entry
  BitSet pin_glb, pin_ioc;                                      // per pin: REGTYPE
  BitSet node_glb, node_ioc;                                    // per node: REGTYPE
  std::vector<Property> properties;                             // num_property entries
  std::array<std::string, 24> par;                              // parameters, "KEYWORD value"; empty: not set
  std::vector<Path> paths;                                      // NUM_PATH entries
  std::vector<std::pair<std::string, std::string>> name_values; // statements of technology "Mirn"

  std::vector<Macro> macros;       // newest first
  std::vector<Instance> instances; // newest first

  // Checker.
  std::vector<SignalFlags> pin_flags;   // per pin
  std::vector<SignalFlags> node_flags;  // per node
  std::vector<SignalIndex> ilb_signals; // per ILB entry
  std::vector<SignalIndex> olb_signals; // per OLB entry
  FanOut fan_out;
  bool reserve_pins = false; // a RESERVE_PIN or BI_Z statement stands: the .par file names the reserve-pin file

  // Netlist writers: the first one lists the terms, the second one finds them listed.
  TermLists terms;
};

inline SignalIndex pin_count(const Design &design) { return static_cast<SignalIndex>(design.pin_names.size()); }
inline SignalIndex signal_count(const Design &design) {
  return static_cast<SignalIndex>(design.pin_names.size() + design.node_names.size());
}
inline bool is_pin(const Design &design, SignalIndex signal) { return signal < pin_count(design); }
inline const std::string &signal_name(const Design &design, SignalIndex signal) {
  const auto at = static_cast<std::size_t>(signal);
  return is_pin(design, signal) ? design.pin_names[at] : design.node_names[at - design.pin_names.size()];
}
template <typename AnyDesign> auto &signal_flags(AnyDesign &design, SignalIndex signal) {
  const auto at = static_cast<std::size_t>(signal);
  return is_pin(design, signal) ? design.pin_flags[at] : design.node_flags[at - design.pin_names.size()];
}

} // namespace cubenet
