// Random terms as text and as a table, with just as much of a design around them as the measured parts look at.
#include "tables.h"

#include <random>

#include "drc/passes.h"
#include "reader/cube_parser.h"

namespace cubenet::bench {

namespace {

std::string random_term(const TableShape &shape, std::mt19937 &random) {
  std::string line(shape.inputs, '-');
  for (char &c : line)
    if (const auto byte = random() % 256; byte < shape.used_of_256) c = (byte & 1U) != 0 ? '1' : '0';
  line += ' ';
  line.append(shape.outputs, '0');
  for (std::uint32_t i = 0; i < shape.ones; i++) line[shape.inputs + 1 + random() % shape.outputs] = '1';
  return line;
}

void name_lists(Design &design, const TableShape &shape) {
  for (std::size_t k = 0; k < shape.inputs; k++) design.ILB.push_back("in" + std::to_string(k));
  for (std::size_t j = 0; j < shape.outputs; j++) design.OLB.push_back("out" + std::to_string(j));
  design.pin_names = design.ILB;
  design.pin_names.insert(design.pin_names.end(), design.OLB.begin(), design.OLB.end());
  design.IB_EXT.resize(shape.inputs);
  design.OB_EXT.resize(shape.outputs);
  design.olb_attributes.resize(shape.outputs);
  for (SignalIndex signal = 0; signal < pin_count(design); signal++)
    (static_cast<std::size_t>(signal) < shape.inputs ? design.ilb_signals : design.olb_signals).push_back(signal);
  design.pin_flags.resize(design.pin_names.size());
}

} // namespace

std::unique_ptr<RandomTable> make_random_table(const TableShape &shape) {
  auto table = std::make_unique<RandomTable>();
  std::mt19937 random(1);
  set_cube_layout(table->cubes, shape.inputs, shape.outputs);
  for (std::size_t i = 0; i < shape.terms; i++) {
    const std::string line = random_term(shape, random);
    parse_term(line, shape.inputs, shape.outputs, next_cube(table->cubes));
    table->cubes.NUM_CUBES++;
    table->text.append(i == 0 ? "" : "\n").append(line);
  }
  name_lists(table->design, shape);
  analyze_fan_out(table->design, table->cubes);
  return table;
}

} // namespace cubenet::bench
