// The program's three files for the generated shapes, byte for byte: what the plain text leaves out is the ddf file,
// the header and the external pins, one net per input with its inverter, the statements' empty lines, gates named by
// their width, and the ranks of gates behind a wide AND or OR.
#include "probe.h"

#include <algorithm>

namespace probe {

namespace {

constexpr std::uint32_t kWidth = 12; // of AND and OR gates

std::uint32_t size_of(const Lists &lists, std::size_t list) { return lists.starts[list + 1] - lists.starts[list]; }

struct Shape {
  const Table &table;
  Lists terms;
  Lists literals;            // gates only
  Lists used;                // PLA blocks only: inputs by output
  Lists readers;             // PLA blocks only: (output, place) by input, as two numbers
  std::vector<bool> is_read; // inputs
};

void find_used_inputs(Shape &shape) {
  shape.used.starts.push_back(0);
  std::vector<std::uint32_t> next(shape.table.inputs + 1, 0);
  for (std::uint32_t j = 0; j < shape.table.outputs; j++) {
    const auto used =
        used_inputs(shape.table, shape.terms.items.data() + shape.terms.starts[j], size_of(shape.terms, j));
    for (const std::uint32_t k : used) next[k + 1] += 2;
    shape.used.items.insert(shape.used.items.end(), used.begin(), used.end());
    shape.used.starts.push_back(static_cast<std::uint32_t>(shape.used.items.size()));
  }
  for (std::size_t k = 0; k < shape.table.inputs; k++) next[k + 1] += next[k];
  shape.readers.starts = next;
  shape.readers.items.resize(next.back());
  for (std::uint32_t j = 0; j < shape.table.outputs; j++) {
    for (std::uint32_t m = 0; m < size_of(shape.used, j); m++) {
      std::uint32_t &at = next[shape.used.items[shape.used.starts[j] + m]];
      shape.readers.items[at++] = j;
      shape.readers.items[at++] = m;
    }
  }
}

Shape study(const Table &table, bool gates) {
  Shape shape{table, terms_by_output(table), {}, {}, {}, std::vector<bool>(table.inputs)};
  for (std::uint32_t j = 0; j < table.outputs; j++)
    if (size_of(shape.terms, j) < 2) die("an output of fewer than two terms");
  if (gates)
    shape.literals = literals_by_input(table);
  else
    find_used_inputs(shape);
  for (std::size_t k = 0; k < table.inputs; k++)
    shape.is_read[k] = gates ? shape.literals.starts[2 * k] != shape.literals.starts[2 * k + 2]
                             : shape.readers.starts[k] != shape.readers.starts[k + 1];
  return shape;
}

// " gate.pin" or ", gate.pin" of every block that reads the input.
void print_block_readers(Sink &sink, const Shape &shape, std::uint32_t input, std::string_view lead) {
  for (std::uint32_t x = shape.readers.starts[input]; x < shape.readers.starts[input + 1]; x += 2)
    print(sink, lead, shape.table.output_names[shape.readers.items[x]], ".A", shape.readers.items[x + 1]);
}

void print_ddf(const Shape &shape, const std::string &path, bool gates) {
  const Table &table = shape.table;
  Sink sink = open_sink(path);
  print(sink, "CELL: ", table.design, ";\n\n");
  for (std::uint32_t j = 0; j < table.outputs; j++) print(sink, j == 0 ? "OUTPUTS: " : ", ", table.output_names[j]);
  print(sink, ";\n");
  bool any = false;
  for (std::uint32_t k = 0; k < table.inputs; k++) {
    if (!shape.is_read[k]) continue;
    print(sink, any ? ", " : "INPUTS: ", table.input_names[k]);
    any = true;
  }
  print(sink, ";\n\nSYMBOLS:\n");
  if (!gates)
    for (const std::string &name : table.output_names) print(sink, "PLA: ", name, ";\n");
  print(sink, "ENDSYMBOLS;\n\nNETS:\n");
  for (std::uint32_t k = 0; k < table.inputs; k++) {
    if (!shape.is_read[k]) continue;
    print(sink, table.input_names[k], ": .", table.input_names[k]);
    if (!gates) print_block_readers(sink, shape, k, ", ");
    print(sink, ";\n");
  }
  for (const std::string &name : table.output_names) print(sink, name, "_PIN: .", name, ", ", name, ".Z0;\n");
  print(sink, "ENDNETS;\n\nENDCELL: ", table.design, ";\n");
  close_sink(sink);
}

// A gate, or the ranks of gates in its place. Ranks below the last one are named "<lead>_<rank>_<number>".
struct Gate {
  std::string_view kind;   // "AND", "OR"
  const std::string &lead; // "_PLN_7", "_PLO_3"
  const std::string &name, &net;
};

std::uint32_t rank_size(std::uint32_t inputs) { return (inputs + kWidth - 1) / kWidth; }

void print_rank_nets(Sink &sink, const Gate &gate, std::uint32_t inputs) {
  for (std::uint32_t rank = 0; inputs > kWidth; rank++) {
    inputs = rank_size(inputs);
    for (std::uint32_t g = 0; g < inputs; g++) {
      print(sink, "NET ", gate.lead, "_", rank, "_", g, " SRC ", gate.lead, "_", rank, "_", g, ".Z0 DST ");
      if (inputs > kWidth)
        print(sink, gate.lead, "_", rank + 1, "_", g / kWidth, ".A", g % kWidth, ";\n\n");
      else
        print(sink, gate.name, ".A", g, ";\n\n");
    }
  }
}

void print_kind(Sink &sink, const Gate &gate, std::uint32_t inputs) {
  if (inputs == 1)
    print(sink, "SYM BUF ");
  else
    print(sink, "SYM ", gate.kind, inputs, " ");
}

// print_input(i) prints the net of input i of the whole gate.
template <typename PrintInput>
void print_rank(Sink &sink, const Gate &gate, std::uint32_t rank, std::uint32_t inputs, PrintInput print_input) {
  for (std::uint32_t g = 0; g * kWidth < inputs; g++) {
    const std::uint32_t width = std::min(kWidth, inputs - g * kWidth);
    print_kind(sink, gate, width);
    print(sink, gate.lead, "_", rank, "_", g, ";\n");
    for (std::uint32_t i = 0; i < width; i++) {
      print(sink, "\tPIN A", i, " IN ");
      print_input(g * kWidth + i);
    }
    print(sink, "\tPIN Z0 OUT ", gate.lead, "_", rank, "_", g, ";\nEND;\n\n");
  }
}

template <typename PrintInput>
void print_last_gate(Sink &sink, const Gate &gate, std::uint32_t inputs, PrintInput print_input) {
  print_kind(sink, gate, inputs);
  print(sink, gate.name, ";\n");
  for (std::uint32_t i = 0; i < inputs; i++) {
    print(sink, "\tPIN A", i, " IN ");
    print_input(i);
  }
  print(sink, "\tPIN Z0 OUT ", gate.net, ";\nEND;\n\n");
}

template <typename PrintInput>
void print_gate(Sink &sink, const Gate &gate, std::uint32_t inputs, PrintInput print_input) {
  if (inputs <= kWidth) return print_last_gate(sink, gate, inputs, print_input);
  print_rank(sink, gate, 0, inputs, print_input);
  std::uint32_t rank = 0;
  const auto print_lower = [&](std::uint32_t i) { print(sink, gate.lead, "_", rank, "_", i, ";\n"); };
  for (inputs = rank_size(inputs); inputs > kWidth; inputs = rank_size(inputs), rank++)
    print_rank(sink, gate, rank + 1, inputs, print_lower);
  print_last_gate(sink, gate, inputs, print_lower);
}

struct GateText {
  std::string lead, name, net;
};
Gate and_gate(std::string &text, std::uint32_t term) {
  text.assign("_PLN_").append(std::to_string(term));
  return {"AND", text, text, text};
}
Gate or_gate(GateText &text, const Table &table, std::uint32_t output) {
  text = {"_PLO_" + std::to_string(output), table.output_names[output], table.output_names[output] + "_PIN"};
  return {"OR", text.lead, text.name, text.net};
}

void print_literal_pins(Sink &sink, const Lists &literals, std::size_t list, const std::vector<std::uint8_t> &counts) {
  for (std::uint32_t x = literals.starts[list]; x < literals.starts[list + 1]; x++) {
    const std::uint32_t term = literals.items[x] >> 8, place = literals.items[x] & 255;
    if (counts[term] <= kWidth)
      print(sink, " _PLN_", term, ".A", place);
    else
      print(sink, " _PLN_", term, "_0_", place / kWidth, ".A", place % kWidth);
  }
}

void print_or_pin(Sink &sink, const Shape &shape, std::uint32_t output, std::uint32_t place) {
  if (size_of(shape.terms, output) <= kWidth)
    print(sink, " ", shape.table.output_names[output], ".A", place);
  else
    print(sink, " _PLO_", output, "_0_", place / kWidth, ".A", place % kWidth);
}

std::vector<std::uint8_t> count_literals(const Table &table) {
  std::vector<std::uint8_t> counts(table.count, 0);
  for (std::size_t i = 0; i < table.count; i++) {
    for_each_literal(table, row_of(table, i), [&](std::uint32_t, bool) { counts[i]++; });
    if (counts[i] < 2) die("a term of fewer than two literals");
  }
  return counts;
}

void print_and_nets(Sink &sink, const Shape &shape, const std::vector<std::uint8_t> &counts) {
  std::vector<std::uint32_t> seen(shape.table.outputs, 0);
  std::string text;
  for (std::uint32_t i = 0; i < shape.table.count; i++) {
    const Gate gate = and_gate(text, i);
    print_rank_nets(sink, gate, counts[i]);
    print(sink, "NET ", gate.net, " SRC ", gate.name, ".Z0 DST");
    for_each_output(shape.table, row_of(shape.table, i),
                    [&](std::uint32_t j) { print_or_pin(sink, shape, j, seen[j]++); });
    print(sink, ";\n\n");
  }
}

void print_plane_nets(Sink &sink, const Shape &shape, const std::vector<std::uint8_t> &counts) {
  print_and_nets(sink, shape, counts);
  GateText text;
  for (std::uint32_t j = 0; j < shape.table.outputs; j++)
    print_rank_nets(sink, or_gate(text, shape.table, j), size_of(shape.terms, j));
  for (std::uint32_t k = 0; k < shape.table.inputs; k++) {
    if (size_of(shape.literals, 2 * k + 1) == 0) continue;
    print(sink, "NET _PLI_", k, " SRC _PLI_", k, ".ZN0 DST");
    print_literal_pins(sink, shape.literals, 2 * k + 1, counts);
    print(sink, ";\n\n");
  }
}

void print_and_symbols(Sink &sink, const Shape &shape, const std::vector<std::uint8_t> &counts) {
  std::string text;
  std::vector<std::uint32_t> inputs(256);
  for (std::uint32_t i = 0; i < shape.table.count; i++) {
    std::size_t n = 0;
    for_each_literal(shape.table, row_of(shape.table, i),
                     [&](std::uint32_t k, bool negated) { inputs[n++] = 2 * k + negated; });
    print_gate(sink, and_gate(text, i), counts[i], [&](std::uint32_t place) {
      if ((inputs[place] & 1U) != 0)
        print(sink, "_PLI_", inputs[place] / 2, ";\n");
      else
        print(sink, shape.table.input_names[inputs[place] / 2], ";\n");
    });
  }
}

void print_plane_symbols(Sink &sink, const Shape &shape, const std::vector<std::uint8_t> &counts) {
  print_and_symbols(sink, shape, counts);
  GateText text;
  for (std::uint32_t j = 0; j < shape.table.outputs; j++) {
    const std::uint32_t *const terms = shape.terms.items.data() + shape.terms.starts[j];
    print_gate(sink, or_gate(text, shape.table, j), size_of(shape.terms, j),
               [&](std::uint32_t place) { print(sink, "_PLN_", terms[place], ";\n"); });
  }
  for (std::uint32_t k = 0; k < shape.table.inputs; k++)
    if (size_of(shape.literals, 2 * k + 1) != 0)
      print(sink, "SYM INV _PLI_", k, ";\n\tPIN A0 IN ", shape.table.input_names[k], ";\n\tPIN ZN0 OUT _PLI_", k,
            ";\nEND;\n\n");
}

void print_external_pins(Sink &sink, const Shape &shape) {
  print(sink, "NXF 11.0.5 L;\n\nSECTION HEADER;\n\tDESIGN ", shape.table.design, " 1.0.0;\n\tDESCRIPTION  ;\nEND;\n\n");
  print(sink, "SECTION DEVICE;\n\tTECHNOLOGY Tarvex;\n\tPART Tarvex7710K-100XQ64;\nEND;\n\nSECTION LOGICAL;\n");
  for (std::uint32_t k = 0; k < shape.table.inputs; k++)
    if (shape.is_read[k]) print(sink, "XPIN ", shape.table.input_names[k], " IN ", shape.table.input_names[k], ";\n");
  for (const std::string &name : shape.table.output_names) print(sink, "XPIN ", name, " OUT ", name, "_PIN;\n");
  print(sink, "\n");
}

void print_external_nets(Sink &sink, const Shape &shape, bool gates, const std::vector<std::uint8_t> &counts) {
  for (std::uint32_t k = 0; k < shape.table.inputs; k++) {
    if (!shape.is_read[k]) continue;
    print(sink, "NET ", shape.table.input_names[k], " EXT DST");
    if (gates) {
      print_literal_pins(sink, shape.literals, 2 * k, counts);
      if (size_of(shape.literals, 2 * k + 1) != 0) print(sink, " _PLI_", k, ".A0");
    } else {
      print_block_readers(sink, shape, k, " ");
    }
    print(sink, ";\n");
  }
  for (const std::string &name : shape.table.output_names) print(sink, "NET ", name, "_PIN EXT SRC ", name, ".Z0;\n\n");
}

void print_blocks(Sink &sink, const Shape &shape) {
  const Table &table = shape.table;
  for (std::uint32_t j = 0; j < table.outputs; j++) {
    const auto first = shape.used.items.begin();
    const std::vector<std::uint32_t> used(first + shape.used.starts[j], first + shape.used.starts[j + 1]);
    print(sink, "SYM PLA ", table.output_names[j], ";\n");
    for (std::uint32_t m = 0; m < used.size(); m++)
      print(sink, "\tPIN A", m, " IN ", table.input_names[used[m]], ";\n");
    print(sink, "\tPIN Z0 OUT ", table.output_names[j], "_PIN;\n\tBEGIN_PLA\n");
    print_rows(sink, table, shape.terms.items.data() + shape.terms.starts[j], size_of(shape.terms, j), used);
    print(sink, "\tEND_PLA\nEND;\n\n");
  }
}

} // namespace

void print_same_files(const Table &table, const std::string &stem, bool gates) {
  const Shape shape = study(table, gates);
  print_ddf(shape, stem + ".ddf", gates);
  Sink constraints = open_sink(stem + ".tvx");
  close_sink(constraints); // these shapes have none

  const std::vector<std::uint8_t> counts = gates ? count_literals(table) : std::vector<std::uint8_t>();
  Sink sink = open_sink(stem + ".nxf");
  print_external_pins(sink, shape);
  print_external_nets(sink, shape, gates, counts);
  if (gates) {
    print_plane_nets(sink, shape, counts);
    print_plane_symbols(sink, shape, counts);
  } else {
    print_blocks(sink, shape);
  }
  print(sink, "END;\n\nEND;\n\n");
  close_sink(sink);
}

} // namespace probe
