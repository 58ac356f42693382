// Chooses the names of a table. A legal one has certain characters, no digit in front, at most 50 characters with its
// extension, and is no other signal's; one that looks like a name that the translation makes would have it rename
// signals.
#include <algorithm>
#include <ostream>

#include "kit/import/import.h"
#include "kit/prove/rename.h"
#include "kit/util/finding.h"
#include "util/text_hash.h"

namespace cubekit {

using namespace cubenet;

namespace {

constexpr std::size_t kLongest = 50;

constexpr bool is_legal(char c) {
  return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') ||
         std::string_view("@`!#$%&'*/<>?[\\]_|~").find(c) != std::string_view::npos;
}

std::string folded(std::string_view text) { return upper_case(text); }

// Both ends of a long name tell something.
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

  // One that the source has no name for.
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
      if (!is_legal(c)) c = c == '.' ? '/' : '_'; // a '.' stands between an instance and its signal
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
