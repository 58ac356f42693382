// Has Yosys read a design and turn it into registers, tristate buffers and sums of products. What a table
// can't hold is detected halfway, while every cell still knows its source line.
#include <algorithm>
#include <nlohmann/json.hpp>

#include "kit/import/import.h"
#include "kit/import/yosys_json.h"
#include "kit/util/file.h"
#include "kit/util/finding.h"
#include "kit/util/run_program.h"

namespace cubekit {

namespace {

using nlohmann::ordered_json;

// One module without hierarchy, whose tristate buffers all drive ports. Every simplification treats a 'z' as
// a don't-care: buffers are made first, and again where only some bits of a choice are 'z', which needs
// choices taken apart. The state is written out in between.
constexpr std::string_view kToBuffers =
    "; proc_clean; proc_rmdead; proc_prune; proc_init; proc_arst; proc_rom; proc_mux; tribuf; "
    "proc_dlatch; proc_dff; proc_memwr; proc_clean; flatten; "
    "pmuxtree; simplemap t:$pos; opt_clean; simplemap t:$mux t:$tribuf; tribuf; write_json ";
constexpr std::string_view kToMemories = "; tribuf -logic; check; opt; memory -nomap; chformal -remove; write_json ";

// Register and latch cells are those that yosys_json.cc knows; Yosys maps all others to them.
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

// Yosys doesn't write empty files.
bool read_json(const std::filesystem::path &path, std::string &text) {
  Finding ignored;
  return read_temporary(path, text, ignored) && !text.empty();
}

// Words for Yosys that name the source and what it is.
std::vector<std::string> source_words(const ImportOptions &options) {
  const std::string extension = std::filesystem::path(options.path).extension();
  const bool is_verilog = options.kind == SourceKind::VERILOG;
  const bool is_known = extension == ".il" || extension == ".rtlil" || extension == ".ilang";
  const std::string frontend = options.kind == SourceKind::BLIF ? "blif -sop"
                               : !is_verilog                    ? "json"
                               : extension == ".sv"             ? "verilog -sv"
                               : is_known                       ? "rtlil"
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

bool is_plain_name(const std::string &name) {
  return !name.empty() && name.find_first_of(" \t\r\n;\"#") == std::string::npos;
}

bool check_first_half(const std::filesystem::path &directory, const std::string &said, Draft &draft, Remark &fault,
                      Place &loop) {
  std::string buffers_text, text;
  if (!read_json(directory / "buffers.json", buffers_text) || !read_json(directory / "middle.json", text))
    return fail(fault, "yosys left no result");
  const ordered_json buffers = ordered_json::parse(buffers_text, nullptr, false);
  const ordered_json design = ordered_json::parse(text, nullptr, false);
  const ordered_json *buffered = find_top(buffers), *module = find_top(design);
  if (buffered == nullptr || module == nullptr) return fail(fault, "yosys gave no module");
  try {
    return check_buffers(*buffered, said, draft, fault) && check_drivers(*module, said, draft, fault, loop) &&
           check_memories(*module, draft, fault);
  } catch (const ordered_json::exception &) {
    return fail(fault, "yosys gave a design that can't be read");
  }
}

// Runs Yosys; its output goes to `said`.
bool run_script(const std::string &script, const std::vector<std::string> &source, Draft &draft, std::string &said,
                Remark &fault) {
  std::vector<std::string> words{"yosys", "-q", "-p", script};
  words.insert(words.end(), source.begin(), source.end());
  const ProgramRun run = run_program(words);
  said = run.output + run.errors;
  if (!run.is_started)
    return fail(fault, "this needs Yosys, which can't be started; Debian has it in the package yosys");
  if (run.status == 0) return true;
  tell_error(said, draft, fault);
  return false;
}

// The script, and a last command that writes the result.
bool make_json(std::string script, const std::vector<std::string> &source, const std::filesystem::path &directory,
               Draft &draft, std::string &json, Remark &fault) {
  std::string said;
  script += "; write_json " + quoted_path(directory / "end.json");
  if (!run_script(script, source, draft, said, fault)) return false;
  return read_json(directory / "end.json", json) || fail(fault, "yosys left no result");
}

bool find_top_words(const ImportOptions &options, std::string &words, Remark &fault) {
  words = "hierarchy -check " + (options.top.empty() ? "-auto-top" : "-top " + options.top);
  return options.top.empty() || is_plain_name(options.top) ||
         fail(fault, "there is no module " + cubekit::quoted(options.top));
}

} // namespace

bool run_yosys(const ImportOptions &options, const std::string &commands, Draft &draft, std::string &json,
               Remark &fault, Place &loop) {
  std::string script, said;
  if (!find_top_words(options, script, fault)) return false;
  const TempDirectory directory;
  if (directory.path.empty()) return fail(fault, "no temporary directory could be made");
  const std::string middle = quoted_path(directory.path / "middle.il");
  script += std::string(kToBuffers) + quoted_path(directory.path / "buffers.json") + std::string(kToMemories) +
            quoted_path(directory.path / "middle.json") + "; write_rtlil " + middle;
  if (!run_script(script, source_words(options), draft, said, fault)) return false;
  if (!check_first_half(directory.path, said, draft, fault, loop)) return false;
  script = "read_rtlil " + middle + "; " + std::string(kSecondHalf) + commands;
  return make_json(script, {}, directory.path, draft, json, fault);
}

bool run_yosys_on_gates(const ImportOptions &options, const std::string &commands, Draft &draft, std::string &json,
                        Remark &fault) {
  std::string script;
  if (!find_top_words(options, script, fault)) return false;
  const TempDirectory directory;
  if (directory.path.empty()) return fail(fault, "no temporary directory could be made");
  return make_json(script + "; flatten; simplemap; simplemap; " + commands, source_words(options), directory.path,
                   draft, json, fault);
}

} // namespace cubekit
