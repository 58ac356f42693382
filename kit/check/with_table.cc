// Translates a truth table again and compares every file with the result. The options are those that the
// netlist shows; where it doesn't, all that fit are tried.
#include <algorithm>
#include <array>
#include <filesystem>
#include <ostream>
#include <sstream>
#include <utility>

#include "kit/check/check.h"
#include "kit/command/command.h"
#include "kit/table/read_design.h"
#include "kit/util/file.h"
#include "kit/util/run_program.h"
#include "model/run_settings.h"

namespace cubekit {

namespace {

// The line around the place, as much as can be shown.
std::string line_at(std::string_view text, std::size_t at) {
  constexpr std::size_t kBefore = 40;
  if (at >= text.size()) return "nothing";
  const std::size_t start = at == 0 ? 0 : text.rfind('\n', at - 1) + 1;
  const std::size_t first = std::max(start, at - std::min(at, kBefore));
  return (first == start ? "" : "...") + quoted(text.substr(first, text.find('\n', at) - first));
}

// The widest gate of expanded terms. If one had to be split, that is the limit; otherwise any wider limit has
// the same effect.
int widest_gate(const TranslationFiles &files, Function function) {
  std::uint32_t width = 2;
  const std::size_t end = std::min<std::size_t>(files.ddf.first_listed, files.netlist.symbols.size());
  for (std::size_t i = 0; i < end; i++)
    if (primitive_of(files.netlist.symbols[i]).function == function)
      width = std::max(width, files.netlist.symbols[i].width);
  return static_cast<int>(width);
}

bool has_blocks(const Netlist &netlist) {
  return std::ranges::any_of(netlist.symbols,
                             [](const Symbol &symbol) { return primitive_of(symbol).function == Function::TABLE; });
}

struct Difference {
  std::string path;
  std::vector<Finding> findings;
};

// False when the new files can't be read, with the reason on `errors`.
bool compare_files(const TranslationFiles &files, const std::string &stem, std::vector<Difference> &differences,
                   std::ostream &errors) {
  const std::array<std::pair<const char *, std::optional<std::string_view>>, 4> rows{{
      {".nxf", std::string_view(files.netlist.text)},
      {".ddf", files.ddf_text},
      {".tvx", files.constraints},
      {".par", files.parameters},
  }};
  differences.clear();
  for (const auto &[extension, text] : rows) {
    std::string wanted;
    Finding error;
    const bool is_wanted = std::filesystem::exists(stem + extension);
    if (is_wanted && !read_temporary(stem + extension, wanted, error)) {
      print_finding(errors, stem + extension, error);
      return false;
    }
    Difference difference{files.design + extension, {}};
    const auto wanted_text = is_wanted ? std::optional<std::string_view>(wanted) : std::nullopt;
    if (find_difference(text, wanted_text, difference.findings)) differences.push_back(std::move(difference));
  }
  return true;
}

// Translates for the netlist's part, and compares. Returns kYes when that was done.
int try_options(const TranslationFiles &files, const std::string &truth_table, bool case_sensitive, bool expand,
                std::vector<Difference> &differences, std::ostream &errors) {
  cubenet::reset_run_settings();
  cubenet::run_settings.expand = expand;
  cubenet::run_settings.and_width = widest_gate(files, Function::AND);
  cubenet::run_settings.or_width = widest_gate(files, Function::OR);
  TruthTable table;
  const TableSource source{truth_table, "", std::string(files.netlist.part), case_sensitive};
  int status = load_table(source, table, errors);
  const TempDirectory directory;
  if (status == kYes && directory.path.empty()) {
    errors << "no temporary directory could be made\n";
    status = kMisuse;
  }
  const std::string stem = directory.path / "d";
  if (status == kYes && !during("translating", [&] { return write_translation(table, stem, files.response); })) {
    errors << table.messages;
    status = kMisuse;
  }
  if (status == kYes && !compare_files(files, stem, differences, errors)) status = kMisuse;
  cubenet::reset_run_settings();
  return status;
}

} // namespace

bool find_difference(std::optional<std::string_view> text, std::optional<std::string_view> wanted,
                     std::vector<Finding> &findings) {
  if (text == wanted) return false;
  if (!text || !wanted) {
    findings.push_back({0, text ? "is of another run: nothing asks for it" : "is missing"});
    return true;
  }
  const auto place = std::ranges::mismatch(*text, *wanted).in1 - text->begin();
  const auto line = std::count(text->begin(), text->begin() + place, '\n') + 1;
  const auto at = static_cast<std::size_t>(place);
  findings.push_back(
      {static_cast<std::size_t>(line), "found " + line_at(*text, at) + ", expected " + line_at(*wanted, at)});
  return true;
}

int compare_with_table(const TranslationFiles &files, const std::string &truth_table, std::ostream &out,
                       std::ostream &errors) {
  std::optional<std::vector<Difference>> first; // of the options tried first
  std::string messages;
  int status = kYes;
  const bool expand = !has_blocks(files.netlist);
  for (const bool case_sensitive : {false, true})
    for (const bool gates : {true, false}) {
      if (gates && !expand) continue;
      std::vector<Difference> differences;
      std::ostringstream said;
      const int tried = try_options(files, truth_table, case_sensitive, gates, differences, said);
      if (tried == kYes && differences.empty()) return kYes;
      if (tried == kYes && !first) first = std::move(differences);
      if (tried != kYes && status == kYes) {
        status = tried;
        messages = said.str();
      }
    }
  if (!first) {
    errors << messages;
    return status;
  }
  for (const Difference &difference : *first)
    for (const Finding &finding : difference.findings) print_finding(out, difference.path, finding);
  return kNo;
}

} // namespace cubekit
