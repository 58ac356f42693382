// Imports texts in this process, and evaluates the tables.
#pragma once

#include <map>
#include <memory>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "kit/import/import.h"
#include "kit/support/translate.h"

namespace cubekit {

// The values of all signals at one time: by name, with the extension after a '.'.
using Levels = std::map<std::string, bool>;

struct Imported {
  bool is_done = false;
  std::string table, told; // what goes to standard error
};

inline Imported import_text(const std::string &text, SourceKind kind, ImportOptions options = {}) {
  options.kind = kind;
  if (options.path.empty()) options.path = "source";
  Draft draft;
  Remark fault;
  Imported result;
  result.is_done = make_draft(text, options, draft, fault);
  if (!result.is_done) {
    result.told = remark_text(draft, fault);
    return result;
  }
  for (const Remark &remark : draft.remarks) result.told += remark_text(draft, remark);
  std::ostringstream stream;
  write_table(stream, draft, lay_out_table(draft));
  result.table = stream.str();
  return result;
}

// A table as the translator reads it.
struct ReadTable {
  cubenet::CubeTable cubes;
  std::unique_ptr<cubenet::Design> design;

  explicit ReadTable(const std::string &text) {
    cubenet::write_file("table.tt2", text);
    std::string messages;
    design = read_design("table.tt2", false, cubes, messages);
    EXPECT_NE(design, nullptr) << messages << text;
  }
  std::string column(std::size_t i) const { return cubenet::display_name(design->ILB[i], design->IB_EXT[i]); }
  std::string output(std::size_t o) const { return cubenet::display_name(design->OLB[o], design->OB_EXT[o]); }
};

// Adds the values of all equations to the levels of inputs and registers ("q.Q"); logic comes before its
// readers.
inline void evaluate_table(const ReadTable &table, Levels &levels) {
  const std::size_t outputs = table.design->OLB.size();
  for (bool is_open = true; is_open;) {
    std::vector<bool> values(outputs);
    for (std::size_t c = 0; c < table.cubes.NUM_CUBES; c++) {
      const std::uint32_t *row = cubenet::cube(table.cubes, c);
      bool is_met = true;
      cubenet::for_each_literal(table.cubes, row,
                                [&](std::size_t i, bool level) { is_met &= levels[table.column(i)] == level; });
      if (is_met) cubenet::for_each_output(table.cubes, row, [&](std::size_t o) { values[o] = true; });
    }
    is_open = false;
    for (std::size_t o = 0; o < outputs; o++) {
      const bool value = values[o] != cubenet::test_bit(table.design->output_inversion, o);
      const auto [found, is_new] = levels.try_emplace(table.output(o), value);
      is_open |= is_new || found->second != value;
      found->second = value;
    }
  }
}

struct Random {
  std::uint64_t state;
  std::size_t operator()(std::size_t limit) {
    state = state * 6364136223846793005U + 1442695040888963407U;
    return static_cast<std::size_t>(state >> 33) % limit;
  }
};

// Translates the table and proves the netlist; an empty text when all is well.
inline std::string translate_and_prove(const std::string &table, const std::string &options = "") {
  Translation translation;
  translate(table, options, translation);
  if (translation.status != 0) return translation.console;
  // Nothing was renamed.
  if (translation.console.find(" is renamed to ") != std::string::npos) return translation.console;
  return prove_translation(translation);
}

} // namespace cubekit
