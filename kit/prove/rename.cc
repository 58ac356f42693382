// Finds the name of each signal in the netlist. Before each of the two netlists of a run is written, names
// that look like generated ones may get the prefix "_RES"; then those that clash with another name get the
// prefix "_PLA<n>_". The renaming is not recomputed here: of the names that a signal may have got, the one
// that the netlist shows counts, at the device pin or by the nets of all equations.
#include "kit/prove/rename.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <unordered_set>

namespace cubekit {

using cubenet::equal_names;
using cubenet::kNoSignal;
using cubenet::netlist_name;
using cubenet::upper_case;
using enum cubenet::ExtensionCode;

namespace {

// Which numbers precede a guarded name: those given for the first netlist, for the second, for both or none.
enum Numbers : std::uint8_t { NEITHER, FIRST, SECOND, BOTH };

struct Numbered {
  std::vector<std::string_view> names;
  std::array<NameIndex, 4> places; // by Numbers: of a name, by the text after the numbers
};

struct Reader {
  const Meaning &meaning;
  const Netlist &netlist;
  bool case_sensitive;
  Numbered pins{}, nets{};
  NameIndex signals{};              // by declared name
  std::vector<std::string> names{}; // per signal, as far as they are read
};

bool begins(std::string_view name, std::string_view prefix, bool case_sensitive) {
  const std::string_view head = name.substr(0, prefix.size());
  return head.size() == prefix.size() && equal_names(head, prefix, case_sensitive);
}

// The name with its guard when it looks like a generated one.
std::string guarded(const std::string &name, bool case_sensitive) {
  if (equal_names(name, "GND", case_sensitive) || equal_names(name, "VCC", case_sensitive)) return "_RES_" + name;
  const bool reserved = (name.size() > 4 && begins(name, "_PLA", case_sensitive)) ||
                        (name.size() >= 6 && begins(name, "_RES_", case_sensitive));
  return reserved ? "_RES" + name : name;
}

// The text after "_PLA<n>_"; empty when the name doesn't begin so.
std::string_view behind_number(std::string_view name) {
  if (!name.starts_with("_PLA")) return {};
  const std::size_t end = name.find_first_not_of("0123456789", 4);
  return end == 4 || end == std::string_view::npos || name[end] != '_' ? std::string_view{} : name.substr(end + 1);
}

void add_numbered(Numbered &numbered, std::string_view name) {
  const auto add = [&](Numbers numbers, std::string_view rest) {
    if (!rest.empty()) add_name(numbered.places[numbers], rest, static_cast<std::uint32_t>(numbered.names.size()));
  };
  const std::string_view behind = behind_number(name);
  add(SECOND, behind);
  if (name.starts_with("_RES")) add(FIRST, behind_number(name.substr(4)));
  if (behind.starts_with("_RES")) add(BOTH, behind_number(behind.substr(4)));
  numbered.names.push_back(name);
}

// The numbered name of that kind that ends with the text; empty when there is none.
std::string_view find_numbered(const Numbered &numbered, Numbers numbers, std::string_view text) {
  const std::uint32_t found = find_name(numbered.places[numbers], text);
  return found == kNone ? std::string_view{} : numbered.names[found];
}

// Names of nets as macro statements give them.
std::unordered_set<std::string> macro_nets(const Meaning &meaning) {
  std::unordered_set<std::string> names;
  for (const MacroPort &port : meaning.ports) {
    if (port.signal != kNoSignal) continue;
    names.insert(port.connection->name);
    names.insert(netlist_name(port.connection->name, upper_case(port.connection->pin_part)));
  }
  return names;
}

// False when no name in the netlist can differ from the design's.
bool read_numbered(Reader &reader) {
  bool any = false;
  const auto look_at = [&](Numbered &numbered, std::string_view name) {
    if (!name.starts_with("_PLA") && !name.starts_with("_RES")) return;
    any = true;
    add_numbered(numbered, name);
  };
  const std::unordered_set<std::string> given = macro_nets(reader.meaning);
  for (const ExternalPin &external : reader.netlist.external_pins) look_at(reader.pins, external.pin);
  for (const Net &net : reader.netlist.nets)
    if (!given.contains(std::string(net.name))) look_at(reader.nets, net.name);
  return any;
}

// The suffixes of a node's name in the names of the nets that it drives.
std::vector<std::string> driven_suffixes(const Meaning &meaning, const SignalRoles &roles) {
  std::vector<std::string> suffixes;
  for (const std::uint32_t equation : roles.equations)
    if (equation != kNone && !meaning.design->OB_EXT[equation].empty())
      suffixes.push_back(netlist_name("", meaning.design->OB_EXT[equation]));
  if (!is_registered(roles) && !has(roles, EXT_X1)) suffixes.emplace_back(has(roles, EXT_OE) ? "_D" : "");
  return suffixes;
}

// The signal's name in the netlist, if it is there with such numbers before the text; empty otherwise.
std::string find_as(const Reader &reader, std::size_t signal, Numbers numbers, const std::string &text) {
  const Netlist &netlist = reader.netlist;
  if (reader.meaning.signals[signal].pin) {
    const bool stands = numbers == NEITHER && find_name(netlist.external_by_pin, text) != kNone;
    return stands ? text : std::string(find_numbered(reader.pins, numbers, text));
  }
  const std::vector<std::string> suffixes = driven_suffixes(reader.meaning, reader.meaning.signals[signal]);
  for (const std::string &suffix : suffixes) {
    std::string name = text;
    if (numbers != NEITHER) name = find_numbered(reader.nets, numbers, text + suffix);
    if (name.empty()) continue;
    if (numbers != NEITHER) name.resize(name.size() - suffix.size());
    const auto stands = [&](const std::string &each) { return find_net(netlist, name + each) != kNone; };
    if (std::ranges::all_of(suffixes, stands)) return name;
  }
  return {};
}

// A numbered name that a signal with a shorter name and a suffix gives.
bool is_made(const Reader &reader, const std::string &declared, const std::string &name) {
  const std::size_t suffix = std::min(declared.rfind('_'), declared.size());
  const std::uint32_t base = find_name(reader.signals, std::string_view(declared).substr(0, suffix));
  return base != kNone && suffix < declared.size() && reader.names[base] + declared.substr(suffix) == name;
}

// Before which of the two netlists names were guarded.
struct Guards {
  bool first, second;
};

// True when the netlist shows the signal.
bool read_name(Reader &reader, std::size_t signal, const std::string &declared, Guards guards) {
  const std::string once = guards.first ? guarded(declared, reader.case_sensitive) : declared;
  const std::string twice = guards.second ? guarded(once, reader.case_sensitive) : once;
  std::string &name = reader.names[signal];
  for (const Numbers numbers : {BOTH, FIRST, SECOND, NEITHER}) {
    name = find_as(reader, signal, numbers, numbers == BOTH || numbers == FIRST ? once : twice);
    if (!name.empty() && (numbers == NEITHER || !is_made(reader, declared, name))) return true;
  }
  name = twice;
  return false;
}

} // namespace

std::vector<std::string> netlist_names(const Meaning &meaning, const Netlist &netlist, bool case_sensitive) {
  std::vector<std::string> declared(meaning.signals.size()), best;
  std::vector<std::uint32_t> used;
  Reader reader{meaning, netlist, case_sensitive};
  for (std::uint32_t i = 0; i < declared.size(); i++) {
    if (!meaning.signals[i].used) continue;
    declared[i] = signal_name(*meaning.design, static_cast<SignalIndex>(i));
    add_name(reader.signals, declared[i], i);
    used.push_back(i);
  }
  if (!read_numbered(reader)) return declared;
  std::ranges::stable_sort(used, {}, [&](std::uint32_t i) { return declared[i].size(); });
  std::size_t most = 0;
  for (const Guards guards : {Guards{true, true}, Guards{true, false}, Guards{false, true}, Guards{false, false}}) {
    reader.names.assign(declared.size(), {});
    const auto count = static_cast<std::size_t>(
        std::ranges::count_if(used, [&](std::uint32_t i) { return read_name(reader, i, declared[i], guards); }));
    if (!best.empty() && count <= most) continue;
    most = count;
    best = std::move(reader.names);
  }
  return best;
}

} // namespace cubekit
