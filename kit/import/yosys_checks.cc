// Looks for what a table can't hold, in the design as Yosys has it halfway and in what Yosys prints.
#include <algorithm>
#include <charconv>
#include <nlohmann/json.hpp>

#include "kit/import/yosys_json.h"
#include "kit/util/finding.h"

namespace cubekit {

using nlohmann::ordered_json;

namespace {

constexpr std::size_t kMostMemoryBits = 1024, kMostRomBits = std::size_t{64} << 10;

// The subject of a Yosys warning: the name after "MODULE.".
std::string_view name_in(std::string_view line) {
  const std::size_t at = line.find('.');
  std::string_view name = line.substr(at == std::string_view::npos ? line.size() : at + 1);
  name = name.substr(0, name.find_first_of(": "));
  return name.starts_with('\\') ? name.substr(1) : name;
}

// Reads the findings of the pass `check`: what is driven twice or never. A loop that it finds may be none,
// for it treats vectors as a whole; its place may be of use later.
class Findings {
public:
  Findings(const ordered_json &module, Draft &draft) : module_(module), draft_(draft) {}

  bool take(const std::string &said, Remark &fault, Place &loop) {
    constexpr std::string_view kTwice = "Warning: multiple conflicting drivers for ",
                               kLoop = "Warning: found logic loop";
    for (std::size_t at = said.find("Warning: "); at != std::string::npos; at = said.find("Warning: ", at + 1)) {
      const std::string_view text = std::string_view(said).substr(at, said.find("Warning: ", at + 1) - at);
      const std::string_view first = text.substr(0, text.find('\n'));
      if (first.starts_with(kTwice)) return tell_twice(text, first.substr(kTwice.size()), fault);
      if (first.starts_with("Warning: Wire ") && first.ends_with("has no driver.")) {
        const std::string name(name_in(first.substr(14)));
        fault = {wire_place(name), cubekit::quoted(name) + " is driven by nothing"};
        return false;
      }
      if (first.starts_with(kLoop)) loop = places_in(text).empty() ? loop : places_in(text)[0];
    }
    return true;
  }

private:
  static std::string word_behind(std::string_view line, std::string_view mark) {
    const std::size_t at = line.find(mark);
    if (at == std::string_view::npos) return {};
    std::string_view word = line.substr(at + mark.size());
    word = word.substr(0, word.find(' '));
    return std::string(word.starts_with('\\') ? word.substr(1) : word);
  }

  Place place_of(const char *kind, const std::string &name) {
    const auto &list = module_.at(kind);
    const auto found = list.find(name);
    return found == list.end() ? Place{} : source_place(draft_, *found);
  }
  Place wire_place(const std::string &name) { return place_of("netnames", name.substr(0, name.find('['))); }

  std::vector<Place> places_in(std::string_view text) {
    std::vector<Place> places;
    while (!text.empty()) {
      const std::string_view line = text.substr(0, text.find('\n'));
      text.remove_prefix(std::min(line.size() + 1, text.size()));
      for (const auto &[kind, mark] :
           {std::pair{"cells", "cell "}, std::pair{"netnames", "wire "}, std::pair{"netnames", "module input "}})
        if (const std::string name = word_behind(line, mark); !name.empty() && line.starts_with(' '))
          if (const Place place = place_of(kind, name.substr(0, name.find('['))); place.line != 0)
            places.push_back(place);
    }
    return places;
  }

  bool tell_twice(std::string_view text, std::string_view wire, Remark &fault) {
    const std::string name(name_in(std::string(wire)));
    std::vector<Place> places = places_in(text);
    std::ranges::sort(places, {}, [](const Place &place) { return std::pair(place.file, place.line); });
    fault = {places.empty() ? wire_place(name) : places[0], "a signal is driven more than once"};
    if (!name.empty() && name[0] != '$') fault.text = cubekit::quoted(name) + " is driven more than once";
    std::size_t shown = fault.place.line;
    for (const Place &place : places) {
      if (place.file != fault.place.file || place.line == shown) continue;
      fault.text += (shown == fault.place.line ? ", see line " : ", ") + std::to_string(place.line);
      shown = place.line;
    }
    return false;
  }

  const ordered_json &module_;
  Draft &draft_;
};

struct LineRange {
  std::string file;
  std::size_t first, last;
};

// FILE:LINE.COLUMN-LINE.COLUMN, several separated by '|'
void add_line_ranges(Draft &draft, const ordered_json &item, std::vector<LineRange> &ranges) {
  const std::string source = item.at("attributes").value("src", "");
  for (std::size_t at = 0; at < source.size();) {
    const std::size_t end = std::min(source.find('|', at), source.size());
    const std::string_view one = std::string_view(source).substr(at, end - at);
    const Place place = parse_place(draft, one);
    LineRange range{draft.files[place.file], place.line, place.line};
    if (const std::size_t dash = one.rfind('-'); dash != std::string_view::npos)
      std::from_chars(one.data() + dash + 1, one.data() + one.size(), range.last);
    ranges.push_back(range);
    at = end + 1;
  }
}

// The bits of ports and of nets that the source names.
std::vector<bool> find_named_bits(const ordered_json &module) {
  std::vector<bool> is_named;
  for (const char *list : {"ports", "netnames"})
    for (const ordered_json &net : module.at(list))
      for (const ordered_json &bit : net.at("bits")) {
        if (!bit.is_number() || net.value("hide_name", 0) != 0) continue;
        const auto number = bit.get<std::size_t>();
        if (number >= is_named.size()) is_named.resize(number + 1);
        is_named[number] = true;
      }
  return is_named;
}

} // namespace

bool check_buffers(const ordered_json &module, const std::string &said, Draft &draft, Remark &fault) {
  const std::vector<bool> is_named = find_named_bits(module);
  std::vector<LineRange> found;
  for (const ordered_json &cell : module.at("cells")) {
    if (cell.value("type", "") != "$_TBUF_") continue;
    const ordered_json &bit = cell.at("connections").at("Y").at(0);
    if (bit.is_number() && bit.get<std::size_t>() < is_named.size() && is_named[bit.get<std::size_t>()])
      add_line_ranges(draft, cell, found);
  }
  constexpr std::string_view kMark = "limited support for tri-state logic at the moment. (";
  for (std::size_t at = said.find(kMark); at != std::string::npos; at = said.find(kMark, at + 1)) {
    const Place place = parse_place(draft, std::string_view(said).substr(at + kMark.size(), said.find(')', at) - at));
    const auto covers = [&](const LineRange &range) {
      return range.file == draft.files[place.file] && range.first <= place.line && place.line <= range.last;
    };
    if (std::ranges::any_of(found, covers)) continue;
    fault = {place, "'z' is taken in one form only: assign PORT = ENABLE ? VALUE : 'bz"};
    return false;
  }
  return true;
}

bool check_drivers(const ordered_json &module, const std::string &said, Draft &draft, Remark &fault, Place &loop) {
  return Findings(module, draft).take(said, fault, loop);
}

bool check_memories(const ordered_json &module, Draft &draft, Remark &fault) {
  for (const auto &cell : module.at("cells")) {
    if (cell.value("type", "") != "$mem_v2") continue;
    const ordered_json &parameters = cell.at("parameters");
    const std::uint64_t words = number_of(parameters, "SIZE"), width = number_of(parameters, "WIDTH");
    const std::size_t most = number_of(parameters, "WR_PORTS") == 0 ? kMostRomBits : kMostMemoryBits;
    if (words <= most && width <= most && words * width <= most) continue;
    fault = {source_place(draft, cell), "a memory of " + std::to_string(words) + " words of " + std::to_string(width) +
                                            " bits is too large for a table, which makes registers of it: at most " +
                                            std::to_string(most) + " bits"};
    return false;
  }
  return true;
}

} // namespace cubekit
