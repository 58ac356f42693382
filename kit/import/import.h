// Designs from elsewhere as truth tables.
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
  std::size_t flatten = 0;                  // most terms of an equation that takes others in; 0: none does
  std::size_t inputs = 10, terms = 20;      // Verilog: most of an equation
  std::size_t limit = std::size_t{1} << 30; // bytes of the table
  bool case_sensitive = false;              // the table is for a translation with -C
};

// --from, --top and --clock: how a command takes its source.
void declare_source(CLI::App &command, std::string &from, ImportOptions &options);
// What a source is, by its extension or by what --from says; none: unknown, which is told.
std::optional<SourceKind> find_source_kind(const std::string &path, const std::string &from);

// The readers. False with the reason in `fault` when the text is not such a source, or not one that a table can hold.
// The draft they make has files[0] set by the caller.
[[nodiscard]] bool read_pla(std::string_view text, Draft &draft, Remark &fault);
[[nodiscard]] bool read_blif(std::string_view text, const ImportOptions &options, Draft &draft, Remark &fault);

// The form that Yosys writes, of one module with sums of products, registers and tristate buffers.
[[nodiscard]] bool read_yosys_json(std::string_view text, Draft &draft, Remark &fault);

// Has Yosys read Verilog or its own JSON form, and make of it one module of gates, tristate buffers and storage cells
// of a bit each; runs the further commands, and takes the result in Yosys' JSON form. False with the reason in `fault`.
// `loop` becomes a place where logic may run in a loop.
[[nodiscard]] bool run_yosys(const ImportOptions &options, const std::string &commands, Draft &draft, std::string &json,
                             Remark &fault, Place &loop);
// The same of a BLIF netlist, which is such a module already: nothing is simplified.
[[nodiscard]] bool run_yosys_on_gates(const ImportOptions &options, const std::string &commands, Draft &draft,
                                      std::string &json, Remark &fault);

// Takes the draft of a reader through the steps below.
[[nodiscard]] bool finish_draft(const ImportOptions &options, Draft &draft, Remark &fault);

// Reads the source's text, and finishes the draft.
[[nodiscard]] bool make_draft(std::string_view text, const ImportOptions &options, Draft &draft, Remark &fault);

// Finds what the outputs need, and refuses loops of logic. An equation that is one signal's value takes that signal's
// place when nothing else reads it; further signals that one equation reads go into it while it has at most
// `flatten` terms.
[[nodiscard]] bool fold_equations(Draft &draft, std::size_t flatten, Remark &fault);

// Makes .T of the .D of registers that toggle, where the part has flip-flops for that.
void find_toggles(Draft &draft);

// Gives each signal a name that is legal in a table, unlike all others, and leaves those of the netlist alone. A remark
// for each that isn't the source's.
void choose_names(Draft &draft, bool case_sensitive);

// The form in which terms read the signal.
cubenet::ExtensionCode read_form(const Draft &draft, const DraftSignal &signal);

// The draft as a table: what stands in which column and row.
struct TableLayout {
  std::vector<std::uint32_t> columns;   // signals
  std::vector<std::uint32_t> equations; // in the order of the outputs
  std::vector<std::uint32_t> rows;      // terms
  std::uint64_t size = 0;               // bytes of the rows
};
TableLayout lay_out_table(const Draft &draft);
void write_table(std::ostream &stream, const Draft &draft, const TableLayout &layout);

// Two columns: the names of the source, and those of the table.
void write_names(std::ostream &stream, const Draft &draft);

} // namespace cubekit
