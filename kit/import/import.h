// Imports designs from other formats as truth tables.
#pragma once

#include <functional>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>

#include "kit/import/draft.h"

namespace CLI {
class App;
}

namespace cubekit {

// `cubekit import`.
std::function<int()> setup_import(CLI::App &command);

enum class SourceKind : std::uint8_t { PLA, BLIF, VERILOG, JSON };

struct ImportOptions {
  std::string path{}; // of the source
  SourceKind kind = SourceKind::PLA;
  std::string part{};                       // of the device; empty: the table names none
  std::string top{};                        // the model or module; empty: the source decides
  std::string clock{};                      // BLIF: of latches that name none
  std::size_t flatten = 0;                  // most terms of an equation that others are folded into; 0: none
  std::size_t inputs = 10, terms = 20;      // Verilog: most of an equation
  std::size_t limit = std::size_t{1} << 30; // bytes of the table
  bool case_sensitive = false;              // the table is for a translation with -C
};

// --from, --top and --clock: how a command reads its source.
void declare_source(CLI::App &command, std::string &from, ImportOptions &options);
// What a source is, by its extension or by what --from says; none: unknown, and reported.
std::optional<SourceKind> find_source_kind(const std::string &path, const std::string &from);

// The readers. False with the reason in `fault` when the text is not such a source, or doesn't fit a table.
// The caller has set files[0] of the draft.
[[nodiscard]] bool read_pla(std::string_view text, Draft &draft, Remark &fault);
[[nodiscard]] bool read_blif(std::string_view text, const ImportOptions &options, Draft &draft, Remark &fault);

// Yosys' JSON form of one module with sums of products, registers and tristate buffers.
[[nodiscard]] bool read_yosys_json(std::string_view text, Draft &draft, Remark &fault);

// Has Yosys read Verilog or its own JSON form and turn it into one module of gates, tristate buffers and
// single-bit storage cells; runs the further commands, and returns the result in Yosys' JSON form. False with
// the reason in `fault`. `loop` becomes a place where logic may form a loop.
[[nodiscard]] bool run_yosys(const ImportOptions &options, const std::string &commands, Draft &draft, std::string &json,
                             Remark &fault, Place &loop);
// The same for a BLIF netlist, which is such a module already: nothing is simplified.
[[nodiscard]] bool run_yosys_on_gates(const ImportOptions &options, const std::string &commands, Draft &draft,
                                      std::string &json, Remark &fault);

// Runs a reader's draft through the steps below.
[[nodiscard]] bool finish_draft(const ImportOptions &options, Draft &draft, Remark &fault);

// Reads the source's text, and finishes the draft.
[[nodiscard]] bool make_draft(std::string_view text, const ImportOptions &options, Draft &draft, Remark &fault);

// Finds what the outputs need, and refuses loops of logic. An equation that is just one signal's value
// replaces that signal when nothing else reads it; other signals that only one equation reads are folded into
// it while it has at most `flatten` terms.
[[nodiscard]] bool fold_equations(Draft &draft, std::size_t flatten, Remark &fault);

// Turns the .D of registers that toggle into .T, where the part has flip-flops for that.
void find_toggles(Draft &draft);

// Gives each signal a name that is legal in a table, unique, and can't clash with names that the netlist
// generates. Adds a remark for each name that isn't the source's.
void choose_names(Draft &draft, bool case_sensitive);

// The extension by which terms read the signal.
cubenet::ExtensionCode read_form(const Draft &draft, const DraftSignal &signal);

// The draft as a table: what goes into which column and row.
struct TableLayout {
  std::vector<std::uint32_t> columns;   // signals
  std::vector<std::uint32_t> equations; // in the order of the outputs
  std::vector<std::uint32_t> rows;      // terms
  std::uint64_t size = 0;               // bytes of the rows
};
TableLayout lay_out_table(const Draft &draft);
void write_table(std::ostream &stream, const Draft &draft, const TableLayout &layout);

// Two columns: the names in the source, and those in the table.
void write_names(std::ostream &stream, const Draft &draft);

} // namespace cubekit
