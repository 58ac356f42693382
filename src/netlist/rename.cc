// A user signal may be called like something that the mapping makes: A_REG beside a signal A, GND, or _PLA7. The base
// of such a name is renamed out of the way, and reserved names get a prefix. For the suffixes in the list below that is
// so in any case. Whatever else meets, through names in macro statements and those that the renaming itself makes, is
// looked for in the netlist that the present names lead to, until nothing does.
#include "netlist/rename.h"

#include <algorithm>
#include <array>
#include <deque>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "model/names.h"
#include "model/run_settings.h"
#include "model/text_index.h"
#include "netlist/macros.h"
#include "netlist/map_design.h"
#include "netlist/signals.h"
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

bool is_listed(std::string_view suffix) {
  return std::find(kReservedSuffixes.begin(), kReservedSuffixes.end(), suffix) != kReservedSuffixes.end();
}

// A name is its base, and the rest from the last '_' on.
std::string_view suffix_of(std::string_view name) { return name.substr(std::min(name.rfind('_'), name.size())); }

// What has a name that users wrote; a bit each. A net that macros read and none drives is tied to 0 by a symbol that is
// called like it.
enum Bearer : unsigned { SIGNAL = 1, INSTANCE = 2, READ_NET = 4, DRIVEN_NET = 8 };

bool is_net(unsigned bearers) { return (bearers & (READ_NET | DRIVEN_NET)) != 0; }
bool is_symbol(unsigned bearers) {
  return (bearers & INSTANCE) != 0 || (bearers & (READ_NET | DRIVEN_NET)) == READ_NET;
}

// Calls visit(name, bearer) for every instance, and for every net that only macros connect.
template <typename Visit> void for_each_macro_name(const Design &design, Visit visit) {
  for (const Instance &instance : design.instances) {
    visit(instance.name, INSTANCE);
    for (const Bearer bearer : {READ_NET, DRIVEN_NET})
      for (const Connection &each : bearer == READ_NET ? instance.inputs : instance.outputs)
        if (each.signal == kNoSignal) visit(spelled_name(each.name, each, bearer == DRIVEN_NET), bearer);
  }
}

// The users' names as they are at present.
struct UserNames {
  const Design &design;
  TextIndex signals{};                            // made for the first question
  std::deque<std::string> spelled{};              // in macro statements
  TextMap<std::string_view, unsigned> doubtful{}; // names that a signal might make, and what has them
};

SignalIndex find_signal(UserNames &names, std::string_view name) {
  if (names.signals.slots.empty()) names.signals = index_signals(names.design, true);
  return find_text(names.signals, name);
}

// The signal whose name it is but for a suffix that names are made with.
SignalIndex find_base(UserNames &names, std::string_view name) {
  const std::string_view suffix = suffix_of(name);
  if (!is_listed(suffix) && !is_made_suffix(suffix)) return kNoSignal;
  return find_signal(names, name.substr(0, name.size() - suffix.size()));
}

void read_names(UserNames &names) {
  names.signals = {};
  names.doubtful.clear();
  names.spelled.clear();
  const auto note = [&](std::string_view name, Bearer bearer, SignalIndex maker) {
    if (maker != kNoSignal) names.doubtful[name] |= bearer;
  };
  for (SignalIndex signal = 0; signal < signal_count(names.design); signal++)
    note(signal_name(names.design, signal), SIGNAL, find_base(names, signal_name(names.design, signal)));
  for_each_macro_name(names.design, [&](std::string name, Bearer bearer) {
    names.spelled.push_back(std::move(name));
    note(names.spelled.back(), bearer, find_base(names, names.spelled.back()));
    note(names.spelled.back(), bearer, find_signal(names, names.spelled.back()));
  });
}

// The signals that make a net or symbol whose name something else has. A signal's name is kept free of both.
std::vector<SignalIndex> find_meeting(UserNames &names, const CubeTable &cubes) {
  std::vector<SignalIndex> meeting;
  if (names.doubtful.empty()) return meeting;
  const Connections connections = map_build_connections(cubes, names.design);
  const Netlist netlist = build_netlist(names.design, cubes, connections, run_settings.expand, XorPlace::WITH_SIGNAL);
  std::string text;
  const auto judge = [&](const Name &name, bool (&is_of_kind)(unsigned)) {
    text.assign(name.base).append(name.suffix);
    const auto found = names.doubtful.find(text);
    if (found == names.doubtful.end()) return;
    const bool is_signal = (found->second & SIGNAL) != 0 && !name.suffix.empty();
    if (!is_signal && !is_of_kind(found->second)) return;
    const SignalIndex maker = find_signal(names, name.base);
    // What a macro brings in may be called like a signal.
    if (maker != kNoSignal && name.base.data() == signal_name(names.design, maker).data()) meeting.push_back(maker);
  };
  for (NetIndex net = 0; net < netlist.nets.size(); net++)
    if (is_connected(netlist, net)) judge(netlist.nets[net].name, is_net);
  for_each_instance(netlist, [&](const Name &name) { judge(name, is_symbol); });
  return meeting;
}

struct Renaming {
  Design &design;
  bool needed = false;
  bool beyond_macros = false;           // numbers that names in macro statements begin with are left out
  std::vector<bool> marked{};           // per signal: gets a number
  std::vector<std::string> old_names{}; // per signal; empty: not renamed
};

// False when all are marked.
bool mark(Renaming &renaming, const std::vector<SignalIndex> &signals) {
  bool any = false;
  for (const SignalIndex signal : signals) {
    any = any || !renaming.marked[static_cast<std::size_t>(signal)];
    renaming.marked[static_cast<std::size_t>(signal)] = true;
  }
  renaming.needed = renaming.needed || any;
  return any;
}

// A listed suffix marks its base whatever that makes. Reserved names get out of the way by themselves.
void judge_names(Renaming &renaming, UserNames &names) {
  std::vector<SignalIndex> bases;
  for (SignalIndex signal = 0; signal < signal_count(renaming.design); signal++) {
    const std::string &name = signal_name(renaming.design, signal);
    if (is_reserved_form(name))
      renaming.needed = true;
    else if (is_listed(suffix_of(name)))
      bases.push_back(find_base(names, name));
  }
  std::erase(bases, kNoSignal);
  mark(renaming, bases);
}

// The numbers of "_PLA<n>_" in macro statements, as they are written there.
TextSet<std::string> macro_numbers(const Design &design) {
  TextSet<std::string> numbers;
  for_each_macro_name(design, [&](const std::string &name, Bearer) {
    if (name.starts_with("_PLA")) numbers.insert(name.substr(4, name.find('_', 4) - 4));
  });
  return numbers;
}

// Gives every signal its name anew, made of the one it had at first.
void give_names(Renaming &renaming) {
  Design &design = renaming.design;
  const TextSet<std::string> avoided = renaming.beyond_macros ? macro_numbers(design) : TextSet<std::string>{};
  renaming.old_names.resize(renaming.marked.size());
  std::size_t number = 0;
  for (SignalIndex signal = 0; signal < signal_count(design); signal++) {
    const auto at = static_cast<std::size_t>(signal);
    std::string &name =
        signal < pin_count(design) ? design.pin_names[at] : design.node_names[at - design.pin_names.size()];
    if (name.empty()) continue;
    std::string &old_name = renaming.old_names[at];
    std::string renamed = guarded_name(old_name.empty() ? name : old_name, run_settings.case_sensitive);
    if (renaming.marked[at]) {
      while (avoided.contains(std::to_string(number))) number++;
      renamed = "_PLA" + std::to_string(number++) + "_" + renamed;
    }
    if (renamed == name) continue;
    if (old_name.empty()) old_name = std::move(name);
    name = std::move(renamed);
  }
}

} // namespace

void map_rename_signals(Design &design, const CubeTable &cubes) {
  Renaming renaming{design};
  renaming.marked.resize(static_cast<std::size_t>(signal_count(design)));
  UserNames names{design};
  read_names(names);
  judge_names(renaming, names);
  for (;;) {
    if (renaming.needed) {
      give_names(renaming);
      read_names(names);
    }
    const std::vector<SignalIndex> meeting = find_meeting(names, cubes);
    if (!mark(renaming, meeting) && (meeting.empty() || std::exchange(renaming.beyond_macros, true))) break;
  }
  if (!renaming.needed) return;
  for (std::size_t k = 0; k < design.ILB.size(); k++) design.ILB[k] = signal_name(design, design.ilb_signals[k]);
  for (std::size_t j = 0; j < design.OLB.size(); j++) design.OLB[j] = signal_name(design, design.olb_signals[j]);
  for (SignalIndex signal = 0; signal < signal_count(design); signal++) {
    const std::string &old_name = renaming.old_names[static_cast<std::size_t>(signal)];
    if (old_name.empty()) continue;
    const std::string &name = signal_name(design, signal);
    if (is_pin(design, signal))
      report_warning(31620, "Pin '%s' is renamed to '%s'", old_name.c_str(), name.c_str());
    else
      report_warning(31621, "Node '%s' is renamed to '%s'", old_name.c_str(), name.c_str());
  }
}

} // namespace cubenet
