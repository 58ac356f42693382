// Chooses the names of a table. A legal one has certain characters, no leading digit, at most 50 characters
// with its extension, and is unique; a name that looks like one the translation generates would make it
// rename signals.
#include <algorithm>
#include <array>
#include <ostream>

#include "kit/import/import.h"
#include "kit/util/finding.h"
#include "util/text_hash.h"

namespace cubekit {

using cubenet::TextSet;
using cubenet::upper_case;
using enum cubenet::ExtensionCode;

namespace {

constexpr std::size_t kLongest = 50;

constexpr bool is_legal(char c) {
  return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') ||
         std::string_view("@`!#$%&'*/<>?[\\]_|~").find(c) != std::string_view::npos;
}

// The suffixes of names that the translation derives from a signal's.
// clang-format off
constexpr auto kGeneratedSuffixes = std::to_array<std::string_view>({
    "_X1", "_X2", "_DX1", "_DX2", "_GX1", "_GX2", "_TX1", "_TX2", "_D", "_REG", "_T", "_S", "_R", "_J", "_K", "_C",
    "_LH", "_Q", "_Z", "_SP", "_SR", "_AR", "_AP", "_PR", "_PIN", "_B", "_X1B", "_X2B", "_DX1B", "_DX2B", "_GX1B",
    "_GX2B", "_TX1B", "_TX2B", "_REGB", "_LHB", "_LEB", "_FBB", "_PINB", "_CEB", "_OEB", "_SPB", "_SRB", "_ARB",
    "_REB", "_APB", "_PRB", "_1", "_2", "_3", "_4", "_5", "_6", "_7", "_8", "_9", "_OE", "_CE", "_LE", "_RE", "_FB",
    "_H", "_CB", "_DB", "_TB", "_JB", "_KB", "_RB", "_SB", "_QB", "_BD",
});
// clang-format on

// The text before such a suffix: a signal of that name might be renamed. Empty for none.
std::string_view generated_base(std::string_view name) {
  const std::size_t cut = std::min(name.rfind('_'), name.size());
  return std::ranges::find(kGeneratedSuffixes, name.substr(cut)) == kGeneratedSuffixes.end() ? "" : name.substr(0, cut);
}

std::string folded(std::string_view text) { return upper_case(text); }

// Both ends of a long name carry meaning.
std::string shorten(const std::string &name, std::size_t longest) {
  if (name.size() <= longest) return name;
  const std::size_t tail = longest / 2;
  return name.substr(0, longest - tail - 1) + '~' + name.substr(name.size() - tail);
}

class Namer {
public:
  Namer(Draft &draft, bool case_sensitive) : draft_(draft), case_sensitive_(case_sensitive) {}

  void name(DraftSignal &signal) {
    const std::size_t longest = kLongest - longest_extension(signal);
    const std::string legal = legal_name(signal.source);
    std::string name = shorten(legal, longest);
    for (std::size_t n = 2; is_taken(name); n++) {
      const std::string number = '~' + std::to_string(n);
      name = shorten(legal, longest - number.size()) + number;
    }
    take(signal, name);
  }

  // A signal without a name in the source.
  void number(DraftSignal &signal) {
    std::string name;
    do name = "n" + std::to_string(++numbered_);
    while (is_taken(name));
    take(signal, name);
  }

private:
  std::size_t longest_extension(const DraftSignal &signal) const {
    std::size_t longest = 4; // .PIN
    for (const std::uint32_t equation : signal.equations)
      if (draft_.equations[equation].extension == EXT_NONE && signal.equations.size() == 1) longest = 0;
    return signal.equations.empty() ? 0 : longest;
  }

  static std::string legal_name(const std::string &source) {
    std::string name = source;
    for (char &c : name)
      if (!is_legal(c)) c = c == '.' ? '/' : '_'; // a '.' separates an instance from its signal
    const bool is_digit = !name.empty() && name[0] >= '0' && name[0] <= '9';
    const std::string head = folded(name.substr(0, 5));
    if (name.empty() || is_digit || head.starts_with("_PLA") || head == "_RES_") name.insert(0, "n");
    if (folded(name) == "GND" || folded(name) == "VCC") name += '_';
    return name;
  }

  std::string key(std::string_view name) const { return case_sensitive_ ? std::string(name) : folded(name); }

  bool is_taken(const std::string &name) const {
    const std::string_view base = generated_base(name);
    return taken_.contains(key(name)) || bases_.contains(name) || (!base.empty() && exact_.contains(base));
  }

  void take(DraftSignal &signal, const std::string &name) {
    taken_.insert(key(name));
    exact_.insert(name);
    if (const std::string_view base = generated_base(name); !base.empty()) bases_.emplace(base);
    signal.name = name;
    if (!signal.source.empty() && name != signal.source)
      draft_.remarks.push_back({signal.place, quoted(signal.source) + " is called '" + name + "' in the table"});
  }

  Draft &draft_;
  bool case_sensitive_;
  std::size_t numbered_ = 0;
  TextSet<std::string> taken_{}, exact_{}, bases_{}; // bases: of names that look like generated ones
};

} // namespace

void choose_names(Draft &draft, bool case_sensitive) {
  Namer namer(draft, case_sensitive);
  for (DraftSignal &signal : draft.signals)
    if (signal.is_used && signal.port != PortKind::NONE) namer.name(signal);
  for (DraftSignal &signal : draft.signals)
    if (signal.is_used && signal.port == PortKind::NONE && !signal.source.empty()) namer.name(signal);
  for (DraftSignal &signal : draft.signals)
    if (signal.is_used && signal.source.empty()) namer.number(signal);
  std::string &module = draft.module;
  for (char &c : module)
    if (!is_legal(c)) c = '_';
  if (module.empty() || (module[0] >= '0' && module[0] <= '9')) module.insert(0, "n");
  module = module.substr(0, 254);
}

void write_names(std::ostream &stream, const Draft &draft) {
  for (const DraftSignal &signal : draft.signals)
    if (signal.is_used && !signal.source.empty()) stream << signal.source << '\t' << signal.name << '\n';
}

} // namespace cubekit
