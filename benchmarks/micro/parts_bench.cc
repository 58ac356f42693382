// The parts that a run spends its time in, each on its own. The shapes are a narrow table with many terms, one of
// middle width, a wide input part and a sparse output part; "bytes" are those of the table's text, or of the text
// printed.
#include <benchmark/benchmark.h>

#include <cstdlib>

#include "drc/passes.h"
#include "model/text_index.h"
#include "netlist/connections.h"
#include "netlist/pla_rows.h"
#include "reader/cube_parser.h"
#include "report/messages.h"
#include "tables.h"
#include "util/hash_table.h"
#include "util/output_file.h"

namespace cubenet::bench {

namespace {

constexpr TableShape kShapes[] = {
    // inputs, outputs, terms, used of 256, ones
    {16, 16, 20'000, 192, 4},
    {100, 50, 4'000, 77, 5},
    {1000, 100, 500, 26, 5},
    {32, 500, 2'000, 128, 2},
};

const RandomTable &table_of(const benchmark::State &state) {
  static std::unique_ptr<RandomTable> tables[std::size(kShapes)];
  const auto at = static_cast<std::size_t>(state.range(0));
  if (tables[at] == nullptr) tables[at] = make_random_table(kShapes[at]);
  return *tables[at];
}

void count_bytes(benchmark::State &state, std::size_t bytes) {
  state.SetBytesProcessed(static_cast<std::int64_t>(bytes) * static_cast<std::int64_t>(state.iterations()));
}
void count_items(benchmark::State &state, std::size_t items) {
  state.SetItemsProcessed(static_cast<std::int64_t>(items) * static_cast<std::int64_t>(state.iterations()));
}

// parse(line, inputs, outputs, row) reads one term.
template <typename Parse> void parse_all(benchmark::State &state, Parse parse) {
  const RandomTable &table = table_of(state);
  CubeTable cubes;
  set_cube_layout(cubes, table.cubes.inputs, table.cubes.outputs);
  for (auto _ : state) {
    cubes.NUM_CUBES = 0;
    for (std::string_view left = table.text; !left.empty();) {
      const std::string_view line = left.substr(0, left.find('\n'));
      if (!parse(line, cubes.inputs, cubes.outputs, next_cube(cubes))) state.SkipWithError("a term was refused");
      cubes.NUM_CUBES++;
      left.remove_prefix(std::min(line.size() + 1, left.size()));
    }
  }
  count_bytes(state, table.text.size());
}

void parse_packed(benchmark::State &state) {
  parse_all(state, [](std::string_view line, std::size_t inputs, std::size_t outputs, std::uint32_t *row) {
    bool drives = false;
    return parse_packed_term(line, inputs, outputs, row, drives);
  });
}

void parse_any_spelling(benchmark::State &state) {
  parse_all(state, [](std::string_view line, std::size_t inputs, std::size_t outputs, std::uint32_t *row) {
    return parse_term(line, inputs, outputs, row).status == TERM_DRIVES;
  });
}

void fan_out(benchmark::State &state) {
  const RandomTable &table = table_of(state);
  Design design = table.design;
  for (auto _ : state) {
    analyze_fan_out(design, table.cubes);
    benchmark::DoNotOptimize(design.fan_out.cubes.data());
  }
  count_items(state, table.cubes.NUM_CUBES);
}

void term_lists(benchmark::State &state) {
  const RandomTable &table = table_of(state);
  Design design = table.design;
  for (auto _ : state) {
    design.terms = {};
    list_terms(table.cubes, design);
    benchmark::DoNotOptimize(design.terms.terms.data());
  }
  count_items(state, table.cubes.NUM_CUBES);
}

// The block of an output that all terms drive: with every input, or with every other one.
void print_rows(benchmark::State &state, std::uint32_t step) {
  const RandomTable &table = table_of(state);
  std::vector<std::uint32_t> terms(table.cubes.NUM_CUBES), columns;
  for (std::uint32_t i = 0; i < terms.size(); i++) terms[i] = i;
  for (std::uint32_t k = 0; k < table.cubes.inputs; k += step) columns.push_back(k);
  OutputFile file;
  if (!open_output(file, "/dev/null")) return state.SkipWithError("no /dev/null");
  for (auto _ : state) put_pla_rows(file, table.cubes, terms.data(), terms.size(), columns);
  count_bytes(state, terms.size() * (columns.size() + 4));
}
void print_whole_rows(benchmark::State &state) { print_rows(state, 1); }
void print_picked_rows(benchmark::State &state) { print_rows(state, 2); }

std::vector<std::string> many_names(benchmark::State &state) {
  std::vector<std::string> names;
  for (std::int64_t i = 0; i < state.range(0); i++) names.push_back("name_" + std::to_string(i));
  return names;
}

// Every name is indexed, and then found.
void name_index(benchmark::State &state) {
  const std::vector<std::string> names = many_names(state);
  for (auto _ : state) {
    const TextIndex index = index_texts({names.begin(), names.end()}, false);
    for (const std::string &name : names) benchmark::DoNotOptimize(find_text(index, name));
  }
  count_items(state, names.size());
}

void hash_table(benchmark::State &state) {
  const std::vector<std::string> names = many_names(state);
  for (auto _ : state) {
    HashTable *const table = hash_create(string_compare, string_hash);
    for (const std::string &name : names) hash_insert(table, {name.c_str()}, {.number = 0});
    for (const std::string &name : names) benchmark::DoNotOptimize(hash_lookup(table, {name.c_str()}, nullptr));
    hash_free(table);
  }
  count_items(state, names.size());
}

void wrap_messages(benchmark::State &state) {
  const std::string text = "Attribute 'LOCK some_signal_name 117' is not valid on a signal that no pin of this name "
                           "declares; attribute specification 'LOCK some_signal_name 117' is ignored";
  for (auto _ : state) benchmark::DoNotOptimize(wrap_message(text, "WARNING: 31540: ").data());
  count_bytes(state, text.size());
}

BENCHMARK(parse_packed)->DenseRange(0, std::size(kShapes) - 1);
BENCHMARK(parse_any_spelling)->DenseRange(0, std::size(kShapes) - 1);
BENCHMARK(fan_out)->DenseRange(0, std::size(kShapes) - 1);
BENCHMARK(term_lists)->DenseRange(0, std::size(kShapes) - 1);
BENCHMARK(print_whole_rows)->DenseRange(0, std::size(kShapes) - 1);
BENCHMARK(print_picked_rows)->DenseRange(0, std::size(kShapes) - 1);
BENCHMARK(name_index)->Arg(100)->Arg(10'000)->Arg(100'000);
BENCHMARK(hash_table)->Arg(100)->Arg(10'000)->Arg(100'000);
BENCHMARK(wrap_messages);

} // namespace

} // namespace cubenet::bench
