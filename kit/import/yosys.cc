// Has Yosys read a design and turn it into registers, tristate buffers and sums of products. What a table can't hold
// is looked for halfway, where every cell still knows its line.
#include <algorithm>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>

#include "kit/import/import.h"
#include "kit/import/yosys_json.h"
#include "kit/util/finding.h"
#include "kit/util/run_program.h"

namespace cubekit {

namespace {

using nlohmann::ordered_json;

constexpr std::size_t kMostMemoryBits = 1024, kMostRomBits = std::size_t{64} << 10;

// One module without hierarchy, whose tristate buffers all drive ports.
constexpr std::string_view kFirstHalf = "; proc; flatten; tribuf -logic; check; opt; memory -nomap; chformal -remove; ";

// Register and latch cells are those that yosys_json.cc knows; Yosys makes all others of them.
constexpr std::string_view kSecondHalf =
    "memory_map; opt -full; techmap; opt; "
    "dfflegalize -cell $_DFF_?_ 01 -cell $_DFFE_??_ 01 -cell $_DFF_???_ 01 -cell $_DFFE_????_ 01 "
    "-cell $_DFFSR_???_ 01 -cell $_DFFSRE_????_ 01 -cell $_SDFF_???_ 01 -cell $_SDFFCE_????_ 01 "
    "-cell $_DLATCH_?_ 01 -cell $_DLATCH_???_ 01 -cell $_DLATCHSR_???_ 01; opt; ";

bool fail(Remark &fault, std::string text) {
  fault = {{}, std::move(text)};
  return false;
}

std::string quoted_path(const std::filesystem::path &path) { return '"' + path.string() + '"'; }

bool read_json(const std::filesystem::path &path, std::string &text) {
  std::ifstream file(path, std::ios::binary);
  text.assign(std::istreambuf_iterator<char>(file), {});
  return !text.empty();
}

// Words for Yosys that name the source and what it is.
std::vector<std::string> source_words(const ImportOptions &options) {
  const std::string extension = std::filesystem::path(options.path).extension();
  const bool is_verilog = options.kind == SourceKind::VERILOG;
  const bool is_known = extension == ".il" || extension == ".rtlil" || extension == ".ilang";
  const std::string frontend = !is_verilog          ? "json"
                               : extension == ".sv" ? "verilog -sv"
                               : is_known           ? "rtlil"
                                                    : "verilog";
  return {"-f", frontend, options.path.starts_with('-') ? "./" + options.path : options.path};
}

// FILE:LINE: ERROR: TEXT, or ERROR: TEXT
void tell_error(const std::string &said, Draft &draft, Remark &fault) {
  constexpr std::string_view kError = "ERROR: ";
  const std::size_t at = said.find(kError);
  if (at == std::string::npos) {
    fault = {{}, "yosys failed" + (said.empty() ? "" : ": " + shortened(said))};
    return;
  }
  const std::size_t start = said.rfind('\n', at) + 1;
  const std::size_t end = std::min(said.find('\n', at), said.size());
  fault = {parse_place(draft, std::string_view(said).substr(start, at - start)),
           "yosys: " + said.substr(at + kError.size(), end - at - kError.size())};
}

// What a warning of Yosys speaks of: the name behind "MODULE.".
std::string_view name_in(std::string_view line) {
  const std::size_t at = line.find('.');
  std::string_view name = line.substr(at == std::string_view::npos ? line.size() : at + 1);
  name = name.substr(0, name.find_first_of(": "));
  return name.starts_with('\\') ? name.substr(1) : name;
}

// Reads the findings of the pass `check`: what is driven twice or never. A loop that it sees may be none, for it takes
// vectors whole; where it is may be of use later.
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
    const std::vector<Place> places = places_in(text);
    fault = {places.empty() ? wire_place(name) : places[0], "a signal is driven more than once"};
    if (!name.empty() && name[0] != '$') fault.text = cubekit::quoted(name) + " is driven more than once";
    std::vector<std::size_t> lines;
    for (const Place &place : places)
      if (place.file == fault.place.file && place.line != fault.place.line) lines.push_back(place.line);
    std::ranges::sort(lines);
    lines.erase(std::unique(lines.begin(), lines.end()), lines.end());
    for (std::size_t i = 0; i < lines.size(); i++)
      fault.text += (i == 0 ? ", see line " : ", ") + std::to_string(lines[i]);
    return false;
  }

  const ordered_json &module_;
  Draft &draft_;
};

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

bool is_plain_name(const std::string &name) {
  return !name.empty() && name.find_first_of(" \t\r\n;\"#") == std::string::npos;
}

bool check_first_half(const std::string &text, const std::string &said, Draft &draft, Remark &fault, Place &loop) {
  const ordered_json design = ordered_json::parse(text, nullptr, false);
  const ordered_json *module = find_top(design);
  if (module == nullptr) return fail(fault, "yosys gave no module");
  try {
    return Findings(*module, draft).take(said, fault, loop) && check_memories(*module, draft, fault);
  } catch (const ordered_json::exception &) {
    return fail(fault, "yosys gave a design that can't be read");
  }
}

} // namespace

bool run_yosys(const ImportOptions &options, Draft &draft, std::string &json, Remark &fault, Place &loop) {
  if (!options.top.empty() && !is_plain_name(options.top))
    return fail(fault, "there is no module " + cubekit::quoted(options.top));
  const TempDirectory directory;
  if (directory.path.empty()) return fail(fault, "no temporary directory could be made");
  const std::string middle = quoted_path(directory.path / "middle.il");
  std::string script = "hierarchy -check " + (options.top.empty() ? "-auto-top" : "-top " + options.top);
  script +=
      std::string(kFirstHalf) + "write_json " + quoted_path(directory.path / "middle.json") + "; write_rtlil " + middle;
  std::vector<std::string> words{"yosys", "-q", "-p", script};
  for (std::string &word : source_words(options)) words.push_back(std::move(word));
  std::string said;
  int status = run_program(words, said);
  if (status == -1 && said.empty())
    return fail(fault, "this needs Yosys, which can't be started; Debian has it in the package yosys");
  if (status != 0 || !read_json(directory.path / "middle.json", json)) {
    tell_error(said, draft, fault);
    return false;
  }
  if (!check_first_half(json, said, draft, fault, loop)) return false;
  script = "read_rtlil " + middle + "; " + std::string(kSecondHalf) + "abc -sop -I " + std::to_string(options.inputs) +
           " -P " + std::to_string(options.terms) + "; opt_clean; write_json " +
           quoted_path(directory.path / "end.json");
  status = run_program({"yosys", "-q", "-p", script}, said);
  if (status == 0 && read_json(directory.path / "end.json", json)) return true;
  tell_error(said, draft, fault);
  return false;
}

} // namespace cubekit
