// The renaming rules, applied to the names of a design twice over, as the two netlists are written one after the other.
// A name that ends like a generated one makes its base give way. For most endings that is so in any case; for a few
// only when the base really gets a net of that name, which the netlist itself tells.
#include "kit/prove/rename.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace cubekit {

namespace {

// clang-format off
constexpr auto kReservedSuffixes = std::to_array<std::string_view>({
    "_X1", "_X2", "_DX1", "_DX2", "_GX1", "_GX2", "_TX1", "_TX2", "_D", "_REG", "_T", "_S", "_R", "_J", "_K", "_C",
    "_LH", "_Q", "_Z", "_SP", "_SR", "_AR", "_AP", "_PR", "_PIN", "_B", "_X1B", "_X2B", "_DX1B", "_DX2B", "_GX1B",
    "_GX2B", "_TX1B", "_TX2B", "_REGB", "_LHB", "_LEB", "_FBB", "_PINB", "_CEB", "_OEB", "_SPB", "_SRB", "_ARB",
    "_REB", "_APB", "_PRB", "_1", "_2", "_3", "_4", "_5", "_6", "_7", "_8", "_9",
});
constexpr auto kUncertainSuffixes = std::to_array<std::string_view>({
    "_OE", "_CE", "_LE", "_RE", "_FB", "_H", "_CB", "_DB", "_TB", "_JB", "_KB", "_RB", "_SB", "_QB", "_BD",
});
// clang-format on

template <std::size_t N> bool contains(const std::array<std::string_view, N> &list, std::string_view text) {
  for (const std::string_view item : list)
    if (item == text) return true;
  return false;
}

struct Pass {
  std::vector<std::string> &names;
  bool case_sensitive;
  unsigned choice; // bit i: the i-th uncertain base gives way
  NameIndex signals{};
  bool needed = false;
  enum Mark : std::uint8_t { NO, MAYBE, YES };
  std::vector<Mark> marks{};
  std::size_t uncertain = 0;
};
// Where there are more uncertain bases than this, the rest is taken to stay.
constexpr std::size_t kChoices = 6;

bool begins(std::string_view name, std::string_view prefix, bool case_sensitive) {
  const std::string_view head = name.substr(0, prefix.size());
  return head.size() == prefix.size() && cubenet::equal_names(head, prefix, case_sensitive);
}

// The name with its guard when it looks like a generated one.
std::string guarded(const std::string &name, bool case_sensitive) {
  if (cubenet::equal_names(name, "GND", case_sensitive) || cubenet::equal_names(name, "VCC", case_sensitive))
    return "_RES_" + name;
  const bool reserved = (name.size() > 4 && begins(name, "_PLA", case_sensitive)) ||
                        (name.size() >= 6 && begins(name, "_RES_", case_sensitive));
  return reserved ? "_RES" + name : name;
}

// `certain`: whether the ending counts in any case; behind a name that is reserved itself it may not.
void mark_base(Pass &pass, std::string_view name, bool certain) {
  const std::size_t cut = name.rfind('_');
  if (cut == std::string_view::npos) return;
  const std::string_view suffix = name.substr(cut);
  const bool reserved = contains(kReservedSuffixes, suffix);
  if (!reserved && !contains(kUncertainSuffixes, suffix)) return;
  const std::uint32_t base = find_name(pass.signals, name.substr(0, cut));
  if (base == kNone) return;
  if (reserved && certain)
    pass.needed = true, pass.marks[base] = Pass::YES;
  else if (pass.marks[base] == Pass::NO)
    pass.marks[base] = Pass::MAYBE;
}

bool stands_in_netlist(const Netlist &netlist, const std::string &name) {
  return find_net(netlist, name) != kNone || find_symbol(netlist, name) != kNone ||
         find_name(netlist.external_by_pin, name) != kNone;
}

// The netlist holds the name, or one that is made of it and not another signal's own.
bool is_used(const Netlist &netlist, const NameIndex &signals, const std::string &name) {
  if (stands_in_netlist(netlist, name)) return true;
  const auto with = [&](std::string_view suffix) {
    const std::string made = name + std::string(suffix);
    return find_name(signals, made) == kNone && stands_in_netlist(netlist, made);
  };
  return std::ranges::any_of(kReservedSuffixes, with) || std::ranges::any_of(kUncertainSuffixes, with);
}

void run_pass(Pass &pass) {
  pass.marks.assign(pass.names.size(), Pass::NO);
  for (std::uint32_t i = 0; i < pass.names.size(); i++)
    if (!pass.names[i].empty()) add_name(pass.signals, pass.names[i], i);
  for (const std::string &name : pass.names) {
    const bool reserved = name.size() > 4 && begins(name, "_PLA", false);
    if (cubenet::equal_ignoring_case(name, "GND") || cubenet::equal_ignoring_case(name, "VCC") || reserved)
      pass.needed = true;
    mark_base(pass, name, !reserved);
  }
  std::size_t count = 0;
  std::vector<std::string> renamed(pass.names.size());
  for (std::size_t i = 0; i < pass.names.size(); i++) {
    const std::string guard = guarded(pass.names[i], pass.case_sensitive);
    const std::string numbered = "_PLA" + std::to_string(count) + "_" + guard;
    bool rename = pass.marks[i] == Pass::YES;
    if (pass.marks[i] == Pass::MAYBE) {
      rename = pass.uncertain < kChoices && (pass.choice >> pass.uncertain & 1U) != 0;
      pass.uncertain++;
    }
    if (rename) count++, pass.needed = true;
    renamed[i] = rename ? numbered : guard;
  }
  if (pass.needed) pass.names = std::move(renamed);
}

} // namespace

std::string_view generated_base(std::string_view name) {
  const std::size_t cut = name.rfind('_');
  if (cut == std::string_view::npos) return {};
  const std::string_view suffix = name.substr(cut);
  return contains(kReservedSuffixes, suffix) || contains(kUncertainSuffixes, suffix) ? name.substr(0, cut) : "";
}

std::vector<std::string> netlist_names(const Meaning &meaning, const Netlist &netlist, bool case_sensitive) {
  std::vector<std::string> declared(meaning.signals.size()), best;
  for (std::size_t i = 0; i < declared.size(); i++)
    if (meaning.signals[i].used) declared[i] = signal_name(*meaning.design, static_cast<SignalIndex>(i));
  std::size_t best_found = 0;
  for (unsigned choice = 0, choices = 1; choice < choices; choice++) {
    std::vector<std::string> names = declared;
    Pass first{names, case_sensitive, choice};
    run_pass(first);
    Pass second{names, case_sensitive, 0};
    run_pass(second);
    choices = 1U << std::min(first.uncertain, kChoices);
    std::size_t found = 0;
    NameIndex signals;
    for (std::uint32_t i = 0; choices > 1 && i < names.size(); i++)
      if (!names[i].empty()) add_name(signals, names[i], i);
    for (std::size_t i = 0; choices > 1 && i < names.size(); i++)
      if (first.marks[i] != Pass::NO && is_used(netlist, signals, names[i])) found++;
    if (choice > 0 && found <= best_found) continue;
    best_found = found;
    best = std::move(names);
  }
  return best;
}

} // namespace cubekit
