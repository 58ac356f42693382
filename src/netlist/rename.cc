// A user signal may be called like something that the mapping makes: A_REG beside a signal A, GND, or _PLA7. The base
// of such a name is renamed out of the way, and reserved names get a prefix. Which names the mapping makes is known for
// the suffixes in the list below; any other one is looked for in the netlist that the present names lead to.
#include "netlist/rename.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "model/names.h"
#include "model/run_settings.h"
#include "netlist/build_netlist.h"
#include "netlist/map_design.h"
#include "report/messages.h"
#include "util/text_hash.h"

namespace cubenet {

namespace {

// clang-format off
constexpr std::array<std::string_view, 56> kReservedSuffixes{
    "_X1", "_X2", "_DX1", "_DX2", "_GX1", "_GX2", "_TX1", "_TX2", "_D", "_REG", "_T", "_S", "_R", "_J", "_K", "_C",
    "_LH", "_Q", "_Z", "_SP", "_SR", "_AR", "_AP", "_PR", "_PIN", "_B", "_X1B", "_X2B", "_DX1B", "_DX2B", "_GX1B",
    "_GX2B", "_TX1B", "_TX2B", "_REGB", "_LHB", "_LEB", "_FBB", "_PINB", "_CEB", "_OEB", "_SPB", "_SRB", "_ARB",
    "_REB", "_APB", "_PRB", "_1", "_2", "_3", "_4", "_5", "_6", "_7", "_8", "_9"};
// clang-format on

bool begins_with(std::string_view name, std::string_view prefix, bool case_sensitive) {
  return name.size() >= prefix.size() && equal_names(name.substr(0, prefix.size()), prefix, case_sensitive);
}

// Names of these forms meet the constant nets or the names that the mapping and this renaming make.
bool is_reserved_form(std::string_view name) {
  return equal_ignoring_case(name, "GND") || equal_ignoring_case(name, "VCC") ||
         (name.size() > 4 && begins_with(name, "_PLA", false));
}

std::string guarded_name(const std::string &name, bool case_sensitive) {
  if (equal_names(name, "GND", case_sensitive) || equal_names(name, "VCC", case_sensitive)) return "_RES_" + name;
  if (name.size() > 4 && begins_with(name, "_PLA", case_sensitive)) return "_RES" + name;
  if (name.size() >= 6 && begins_with(name, "_RES_", case_sensitive)) return "_RES" + name;
  return name;
}

struct Renaming {
  const Design &design;
  bool needed = false;
  std::vector<bool> marked{};                                       // per signal
  TextMap<std::string_view, SignalIndex> signals{};                 // made for the first question; pins win over nodes
  std::vector<std::pair<std::string_view, SignalIndex>> doubtful{}; // user name, and the base that may make it
};

// Two names in one: the text up to the last '_', and the rest with it.
std::size_t suffix_start(std::string_view name) { return name.rfind('_'); }

void index_names(Renaming &renaming) {
  const SignalIndex count = signal_count(renaming.design);
  renaming.signals.reserve(static_cast<std::size_t>(count));
  for (SignalIndex signal = 0; signal < count; signal++) {
    const std::string &name = signal_name(renaming.design, signal);
    if (!name.empty()) renaming.signals.try_emplace(name, signal);
  }
}

SignalIndex find_signal(Renaming &renaming, std::string_view name) {
  if (renaming.signals.empty()) index_names(renaming);
  const auto found = renaming.signals.find(name);
  return found == renaming.signals.end() ? kNoSignal : found->second;
}

void mark(Renaming &renaming, SignalIndex signal) {
  renaming.marked[static_cast<std::size_t>(signal)] = true;
  renaming.needed = true;
}

void judge_name(Renaming &renaming, std::string_view name) {
  const bool is_reserved = is_reserved_form(name);
  if (is_reserved) renaming.needed = true;
  const std::size_t at = suffix_start(name);
  if (at == std::string_view::npos) return;
  const SignalIndex base = find_signal(renaming, name.substr(0, at));
  if (base == kNoSignal) return;
  const std::string_view suffix = name.substr(at);
  const bool is_listed =
      std::find(kReservedSuffixes.begin(), kReservedSuffixes.end(), suffix) != kReservedSuffixes.end();
  // A reserved name gets out of the way by itself, but together with its base: it may still meet what that makes.
  if (is_listed && !is_reserved)
    mark(renaming, base);
  else
    renaming.doubtful.emplace_back(name, base);
}

// Names that only macros bring in are not listed among the signals, but are users' names all the same.
void judge_macro_names(Renaming &renaming, const Design &design) {
  const auto doubt = [&](std::string_view name) {
    const std::size_t at = suffix_start(name);
    const SignalIndex base = at == std::string_view::npos ? kNoSignal : find_signal(renaming, name.substr(0, at));
    if (base != kNoSignal) renaming.doubtful.emplace_back(name, base);
  };
  for (const Instance &instance : design.instances) {
    doubt(instance.name);
    if (const SignalIndex same = find_signal(renaming, instance.name); same != kNoSignal)
      renaming.doubtful.emplace_back(instance.name, same);
    for (const auto *list : {&instance.inputs, &instance.outputs})
      for (const Connection &connection : *list)
        if (connection.signal == kNoSignal) doubt(connection.name);
  }
}

// A doubtful name marks its base only when the base really makes a net or a symbol of that name.
void settle_doubts(Renaming &renaming, const Design &design, const CubeTable &cubes) {
  if (renaming.doubtful.empty()) return;
  const Connections connections = map_build_connections(cubes, design);
  const Netlist netlist = build_netlist(design, cubes, connections, run_settings.expand, XorPlace::WITH_SIGNAL);
  TextSet<std::string_view> doubted;
  for (const auto &[name, base] : renaming.doubtful) doubted.insert(name);
  TextSet<std::string> made;
  const auto collect = [&](const Name &name) {
    if (name.suffix.empty()) return;
    std::string text = name_text(name);
    if (doubted.contains(text)) made.insert(std::move(text));
  };
  TextSet<std::string_view> owned; // instances named as their signal
  const auto collect_instance = [&](const Name &name) {
    collect(name);
    if (name.suffix.empty()) owned.insert(name.base);
  };
  for (NetIndex net = 0; net < netlist.nets.size(); net++)
    if (is_connected(netlist, net)) collect(netlist.nets[net].name);
  for (const OutputGate &gate : netlist.outputs) collect_instance(gate.instance);
  for (const Symbol &symbol : netlist.symbols)
    if (symbol.primitive != Primitive::MACRO) collect_instance(symbol.instance);
  for (const auto &[name, base] : renaming.doubtful) {
    const bool same_name = name == signal_name(design, base);
    if (same_name ? owned.contains(name) : made.contains(std::string(name))) mark(renaming, base);
  }
}

Renaming judge_names(const Design &design, const CubeTable &cubes) {
  Renaming renaming{design};
  const SignalIndex count = signal_count(design);
  renaming.marked.assign(static_cast<std::size_t>(count), false);
  for (SignalIndex signal = 0; signal < count; signal++)
    if (!signal_name(design, signal).empty()) judge_name(renaming, signal_name(design, signal));
  judge_macro_names(renaming, design);
  settle_doubts(renaming, design, cubes);
  return renaming;
}

// Old names of the renamed signals; empty for the rest.
std::vector<std::string> rename_signals(Design &design, const std::vector<bool> &marked) {
  std::vector<std::string> old_names(marked.size());
  int number = 0;
  for (SignalIndex signal = 0; signal < signal_count(design); signal++) {
    const auto at = static_cast<std::size_t>(signal);
    std::string &name =
        signal < pin_count(design) ? design.pin_names[at] : design.node_names[at - design.pin_names.size()];
    if (name.empty()) continue;
    std::string renamed = guarded_name(name, run_settings.case_sensitive);
    if (marked[at]) renamed = "_PLA" + std::to_string(number++) + "_" + renamed;
    if (renamed == name) continue;
    old_names[at] = std::move(name);
    name = std::move(renamed);
  }
  return old_names;
}

} // namespace

void map_rename_signals(Design &design, const CubeTable &cubes) {
  const Renaming renaming = judge_names(design, cubes);
  if (!renaming.needed) return;
  const std::vector<std::string> old_names = rename_signals(design, renaming.marked);
  for (std::size_t k = 0; k < design.ILB.size(); k++) design.ILB[k] = signal_name(design, design.ilb_signals[k]);
  for (std::size_t j = 0; j < design.OLB.size(); j++) design.OLB[j] = signal_name(design, design.olb_signals[j]);
  for (SignalIndex signal = 0; signal < signal_count(design); signal++) {
    const std::string &old_name = old_names[static_cast<std::size_t>(signal)];
    if (old_name.empty()) continue;
    const std::string &name = signal_name(design, signal);
    if (is_pin(design, signal))
      report_warning(31620, "Pin '%s' is renamed to '%s'", old_name.c_str(), name.c_str());
    else
      report_warning(31621, "Node '%s' is renamed to '%s'", old_name.c_str(), name.c_str());
  }
}

} // namespace cubenet
