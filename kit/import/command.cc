// `cubekit import`: from the source's text to the table.
#include <CLI/CLI.hpp>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>

#include "kit/command/command.h"
#include "kit/command/output.h"
#include "kit/import/import.h"
#include "kit/table/read_design.h"
#include "kit/util/file.h"

namespace cubekit {

namespace {

struct Arguments {
  std::string from, output, names;
  ImportOptions options;
};

struct Kind {
  std::string_view name;
  SourceKind kind;
  std::string_view extensions; // each after a '.'
};
// clang-format off
constexpr auto kKinds = std::to_array<Kind>({
    {"pla",     SourceKind::PLA,     ".pla.PLA"},
    {"blif",    SourceKind::BLIF,    ".blif.BLIF"},
    {"verilog", SourceKind::VERILOG, ".v.V.sv.SV"},
    {"json",    SourceKind::JSON,    ".json.JSON"},
});
// clang-format on

std::string size_text(std::uint64_t bytes) {
  constexpr std::uint64_t kMebi = std::uint64_t{1} << 20;
  return bytes < 10 * kMebi ? std::to_string(bytes) + " bytes" : std::to_string(bytes / kMebi) + " MiB";
}

bool is_too_large(const Draft &draft, const TableLayout &layout, const ImportOptions &options) {
  if (layout.size < options.limit) return false;
  std::cerr << draft.files[0] << ": the table would take " << size_text(layout.size) << ", "
            << layout.columns.size() + layout.equations.size() << " columns of " << layout.rows.size()
            << " terms; a larger --flatten makes it smaller, a larger --limit allows it\n";
  return true;
}

int write_results(const Arguments &arguments, const Draft &draft, const TableLayout &layout) {
  const std::string path = arguments.output == "-" ? "" : arguments.output;
  const int status = write_output(path, [&](std::ostream &stream) {
    const Stage stage("writing", 0, path.empty() ? Printing::YES : Printing::NO);
    write_table(stream, draft, layout);
  });
  if (status != kYes || arguments.names.empty()) return status;
  return write_output(arguments.names, [&](std::ostream &stream) { write_names(stream, draft); });
}

int run_import(const Arguments &arguments) {
  ImportOptions options = arguments.options;
  const std::optional<SourceKind> kind = find_source_kind(options.path, arguments.from);
  if (!kind) return kMisuse;
  options.kind = *kind;
  if (!options.part.empty() && !is_part(options.part)) {
    std::cerr << "cubekit: '" << options.part << "' is no part that a table can name\n";
    return kMisuse;
  }
  if (!arguments.names.empty() && arguments.names == arguments.output) {
    std::cerr << "cubekit: the table and the list of names can't be one file\n";
    return kMisuse;
  }
  std::string text;
  Finding error;
  if (!during("reading", [&] { return read_file(options.path, text, error); })) {
    print_finding(std::cerr, options.path, error);
    return kMisuse;
  }
  Draft draft;
  Remark fault;
  if (!make_draft(text, options, draft, fault)) {
    std::cerr << remark_text(draft, fault);
    return kMisuse;
  }
  const TableLayout layout = lay_out_table(draft);
  if (is_too_large(draft, layout, options)) return kMisuse;
  for (const Remark &remark : draft.remarks) std::cerr << remark_text(draft, remark);
  return write_results(arguments, draft, layout);
}

} // namespace

std::optional<SourceKind> find_source_kind(const std::string &path, const std::string &from) {
  const std::string extension = std::filesystem::path(path).extension();
  for (const Kind &each : kKinds) {
    const bool is_it =
        from.empty()
            ? extension.size() > 1 && (std::string(each.extensions) + '.').find(extension + '.') != std::string::npos
            : from == each.name;
    if (is_it) return each.kind;
  }
  std::cerr << path << ": the extension doesn't tell the format; add --from pla, blif, verilog or json\n";
  return std::nullopt;
}

void declare_source(CLI::App &command, std::string &from, ImportOptions &options) {
  command
      .add_option("--from", from, "what the source is, where its extension doesn't tell: pla, blif, verilog or json")
      ->check(CLI::IsMember({"pla", "blif", "verilog", "json"}));
  command.add_option("--top", options.top, "BLIF, Verilog: the model or module to take");
  command.add_option("--clock", options.clock, "BLIF: the clock of latches that name none");
}

std::function<int()> setup_import(CLI::App &command) {
  auto arguments = std::make_shared<Arguments>();
  ImportOptions &options = arguments->options;
  command.add_option("SOURCE", options.path, "the file to import")->required();
  command.add_option("-o,--output", arguments->output, "the table to write, instead of standard output");
  declare_source(command, arguments->from, options);
  command.add_option("-p,--part", options.part, "the part that the table is for");
  command.add_option("--names", arguments->names, "a file for a list of the names: in the source, in the table");
  command.add_option("--inputs", options.inputs, "Verilog: the most inputs of an equation")
      ->check(CLI::Range(2, 32))
      ->capture_default_str();
  command.add_option("--terms", options.terms, "Verilog: the most terms of an equation")
      ->check(CLI::Range(1, 1000))
      ->capture_default_str();
  command.add_option("--flatten", options.flatten,
                     "put signals that one equation reads into it, while it has at most so many terms");
  command.add_option("--limit", options.limit, "refuse a table of so many bytes, or with K, M or G behind it")
      ->transform(CLI::AsSizeValue(false))
      ->default_str("1G");
  command.add_flag("-C,--case", options.case_sensitive, "names may differ by case alone: translate with -C too");
  return [arguments] { return run_import(*arguments); };
}

} // namespace cubekit
