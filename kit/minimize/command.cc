// `cubekit minimize`: reads, minimizes, proves what it is about to write, writes.
#include <CLI/CLI.hpp>
#include <bit>
#include <csignal>
#include <iostream>
#include <memory>
#include <utility>

#include "kit/command/arguments.h"
#include "kit/command/command.h"
#include "kit/command/output.h"
#include "kit/minimize/minimize.h"
#include "kit/minimize/table_text.h"
#include "kit/table/read_design.h"
#include "kit/util/file.h"

namespace cubekit {

namespace {

struct Arguments : DesignArguments {
  bool each = false;
};

// The first interrupt ends the minimization, a second one the process.
std::atomic<bool> interrupted = false;
extern "C" void interrupt(int) {
  interrupted.store(true);
  std::signal(SIGINT, SIG_DFL);
}

Cover read_cover(const cubenet::CubeTable &table) {
  Cover cover(table.inputs, table.outputs);
  for (std::size_t r = 0; r < table.NUM_CUBES; r++) {
    CubeWord *cube = add_cube(cover);
    const std::uint32_t *row = cubenet::cube(table, r);
    for (std::size_t k = 0; k < table.inputs; k++) set_literal(cube, k, cubenet::literal_at(row, k));
    cubenet::for_each_output(table, row, [&](std::size_t j) { set_output(cover, cube, j); });
  }
  return cover;
}

// Terms, or their sum over all outputs; then literals and driven outputs.
std::pair<std::size_t, std::size_t> cost_of(const Cover &cover, bool each) {
  std::size_t literals = 0, driven = 0;
  for (std::size_t c = 0; c < cover.size(); c++)
    for (std::size_t w = 0; w < cover.words; w++)
      (w < cover.input_words ? literals : driven) +=
          static_cast<std::size_t>(std::popcount(w < cover.input_words ? literals_of(cover[c][w]) : cover[c][w]));
  return {each ? driven : cover.size(), literals + driven};
}

struct Table {
  std::string name;
  Cover on{0, 0}, free{0, 0};
};

// Reads a text again and compares it with the table: it must have all on points, and otherwise only free
// ones.
bool is_equal(const std::string &text, const Arguments &arguments, const Table &table) {
  cubenet::CubeTable cubes;
  std::string messages;
  if (read_design_text(text, table.name, arguments.case_sensitive, cubes, messages) == nullptr) return false;
  const Cover found = read_cover(cubes);
  Cover allowed = table.on;
  add_cubes(allowed, table.free);
  for (std::size_t c = 0; c < table.on.size(); c++)
    if (!covers(found, table.on[c])) return false;
  for (std::size_t c = 0; c < found.size(); c++)
    if (!covers(allowed, found[c])) return false;
  return true;
}

Cover minimize_until_interrupted(const Table &table, bool each) {
  const auto run = [&] { return (each ? minimize_each : minimize)(table.on, table.free, &interrupted); };
  const auto before = std::signal(SIGINT, interrupt);
  Cover cover = during("minimizing", run);
  std::signal(SIGINT, before);
  return cover;
}

int run_minimize(const Arguments &arguments) {
  Table table{table_source(arguments).path};
  std::string file;
  Finding error;
  if (!during("reading the truth table", [&] { return read_file(table.name, file, error); })) {
    print_finding(std::cerr, table.name, error);
    return kMisuse;
  }
  cubenet::CubeTable cubes;
  std::string messages;
  if (read_design_text(file, table.name, arguments.case_sensitive, cubes, messages) == nullptr) {
    std::cerr << messages;
    return kMisuse;
  }
  const TableText text = find_terms(file);
  table.on = read_cover(cubes);
  table.free = read_free_points(text, cubes.inputs, cubes.outputs);
  const Cover cover = minimize_until_interrupted(table, arguments.each);
  if (interrupted) std::cerr << "interrupted: this is the best so far\n";
  const bool is_better = cost_of(cover, arguments.each) < cost_of(table.on, arguments.each);
  const std::string result = is_better ? replace_terms(text, cover) : file;
  if (!during("proving the result", [&] { return is_equal(result, arguments, table); })) {
    std::cerr << table.name << ": the result is not equal; this is a fault of cubekit\n";
    return kMisuse;
  }
  const int status = write_output(arguments.output, [&](std::ostream &stream) { stream << result; });
  if (status == kYes && !arguments.output.empty())
    std::cout << table.on.size() << " terms, now " << (is_better ? cover : table.on).size() << '\n';
  return status;
}

} // namespace

std::function<int()> setup_minimize(CLI::App &command) {
  auto arguments = std::make_shared<Arguments>();
  declare_design(command, *arguments);
  declare_table(command, *arguments);
  command.add_flag("--each", arguments->each, "each output by itself, whatever terms others have");
  declare_output(command, *arguments);
  return [arguments] { return run_minimize(*arguments); };
}

} // namespace cubekit
