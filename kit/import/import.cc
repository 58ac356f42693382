// From the text of a source to a draft that can be written.
#include "kit/import/import.h"

#include <filesystem>

#include "kit/util/finding.h"
#include "kit/util/progress.h"
#include "model/run_settings.h"

namespace cubekit {

namespace {

// Of a table that names none.
constexpr const char *kDefaultPart = "Tarvex7710K-100XQ64";

// Verilog is read by Yosys, from the file.
bool read_source(std::string_view text, const ImportOptions &options, Draft &draft, Remark &fault, Place &loop) {
  if (options.kind == SourceKind::PLA) return during("reading", [&] { return read_pla(text, draft, fault); });
  if (options.kind == SourceKind::BLIF)
    return during("reading", [&] { return read_blif(text, options, draft, fault); });
  std::string json;
  const std::string commands =
      "abc -sop -I " + std::to_string(options.inputs) + " -P " + std::to_string(options.terms) + "; opt_clean";
  const auto run = [&] { return run_yosys(options, commands, draft, json, fault, loop); };
  return during("running yosys", run) && during("reading", [&] { return read_yosys_json(json, draft, fault); });
}

// Devices of series 0 and 1 have no register with both.
bool check_controls(const Draft &draft, Remark &fault) {
  if (cubenet::part_series(draft.part.empty() ? kDefaultPart : draft.part) >= 2) return true;
  for (const DraftSignal &signal : draft.signals) {
    if (!signal.is_used || find_equation(draft, signal, cubenet::EXT_AR) == kNone) continue;
    const std::uint32_t preset = find_equation(draft, signal, cubenet::EXT_AP);
    if (preset == kNone) continue;
    fault = {draft.equations[preset].place,
             "register " + cubekit::quoted(signal.source) +
                 " has both reset and preset: only parts of series 5 and 8 have that, see --part"};
    return false;
  }
  return true;
}

} // namespace

bool finish_draft(const ImportOptions &options, Draft &draft, Remark &fault) {
  draft.part = options.part;
  if (!during("folding equations", [&] { return fold_equations(draft, options.flatten, fault); })) return false;
  if (!check_controls(draft, fault)) return false;
  find_toggles(draft);
  if (draft.module.empty()) draft.module = std::filesystem::path(options.path).stem();
  choose_names(draft, options.case_sensitive);
  return true;
}

bool make_draft(std::string_view text, const ImportOptions &options, Draft &draft, Remark &fault) {
  draft.files = {options.path};
  Place loop;
  if (!read_source(text, options, draft, fault, loop)) return false;
  if (finish_draft(options, draft, fault)) return true;
  if (fault.place.line == 0) fault.place = loop;
  return false;
}

} // namespace cubekit
