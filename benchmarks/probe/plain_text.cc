// Writing in blocks of 256 KiB, the rows of a block, and text that is like a netlist but takes no care of names, of the
// order of statements or of wide gates: the speed at which formatting can go.
#include "probe.h"

#include <algorithm>
#include <array>
#include <cstdlib>

#include <fcntl.h>
#include <unistd.h>

namespace probe {

namespace {

constexpr std::size_t kBlock = std::size_t{256} << 10;
constexpr char kLiteralText[] = "?01-";
constexpr std::uint32_t kGateWidth = 12;

constexpr std::array<std::array<char, 4>, 256> kQuads = [] {
  std::array<std::array<char, 4>, 256> quads{};
  for (std::size_t bits = 0; bits < quads.size(); bits++)
    for (std::size_t k = 0; k < 4; k++) quads[bits][k] = kLiteralText[bits >> (2 * k) & 3];
  return quads;
}();

void flush(Sink &sink) {
  for (std::size_t done = 0; done < sink.used;) {
    const ssize_t wrote = write(sink.descriptor, sink.block + done, sink.used - done);
    if (wrote < 0) die("can't write");
    done += static_cast<std::size_t>(wrote);
  }
  sink.used = 0;
}

void print_gate_nets(Sink &sink, const Table &table, const Lists &literals) {
  for (std::uint32_t k = 0; k < table.inputs; k++) {
    for (std::uint32_t negated = 0; negated < 2; negated++) {
      print(sink, "NET ", table.input_names[k], negated != 0 ? "_N SRC DST" : " EXT DST");
      for (std::uint32_t x = literals.starts[2 * k + negated]; x < literals.starts[2 * k + negated + 1]; x++)
        print(sink, " _PLN_", literals.items[x] >> 8, ".A", literals.items[x] & 255);
      print(sink, ";\n");
    }
  }
  std::vector<std::uint32_t> seen(table.outputs, 0);
  for (std::uint32_t i = 0; i < table.count; i++) {
    print(sink, "NET _PLN_", i, " SRC _PLN_", i, ".Z0 DST");
    for_each_output(table, row_of(table, i), [&](std::uint32_t j) {
      const std::uint32_t place = seen[j]++;
      print(sink, " _PLO_", j, "_0_", place / kGateWidth, ".A", place % kGateWidth);
    });
    print(sink, ";\n\n");
  }
}

void print_gate_symbols(Sink &sink, const Table &table, const Lists &terms) {
  for (std::uint32_t i = 0; i < table.count; i++) {
    print(sink, "SYM AND _PLN_", i, ";\n");
    std::uint32_t place = 0;
    for_each_literal(table, row_of(table, i), [&](std::uint32_t k, bool negated) {
      print(sink, "\tPIN A", place++, " IN ", table.input_names[k], negated ? "_N;\n" : ";\n");
    });
    print(sink, "\tPIN Z0 OUT _PLN_", i, ";\nEND;\n\n");
  }
  for (std::uint32_t j = 0; j < table.outputs; j++) {
    const std::uint32_t *const list = terms.items.data() + terms.starts[j];
    const std::uint32_t count = terms.starts[j + 1] - terms.starts[j];
    for (std::uint32_t place = 0; place < count; place++) {
      if (place % kGateWidth == 0) print(sink, "SYM OR12 _PLO_", j, "_0_", place / kGateWidth, ";\n");
      print(sink, "\tPIN A", place % kGateWidth, " IN _PLN_", list[place], ";\n");
      if (place % kGateWidth == kGateWidth - 1 || place + 1 == count) print(sink, "END;\n\n");
    }
  }
}

} // namespace

Sink open_sink(const std::string &path) {
  Sink sink{open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666)};
  if (sink.descriptor < 0) die("can't open the output");
  return sink;
}

void close_sink(Sink &sink) {
  flush(sink);
  close(sink.descriptor);
  std::free(sink.block);
}

char *grow(Sink &sink, std::size_t bytes) {
  flush(sink);
  if (bytes <= sink.capacity) return sink.block;
  std::free(sink.block);
  sink.capacity = std::max(kBlock, bytes);
  sink.block = static_cast<char *>(std::malloc(sink.capacity));
  if (sink.block == nullptr) die("no memory");
  return sink.block;
}

void print_rows(Sink &sink, const Table &table, const std::uint32_t *terms, std::size_t count,
                const std::vector<std::uint32_t> &used) {
  const bool all = used.size() == table.inputs;
  for (std::size_t i = 0; i < count; i++) {
    const std::uint32_t *row = row_of(table, terms[i]);
    char *at = room(sink, table.output_word * 16 + 8);
    *at++ = '\t';
    if (all) {
      char *const end = at + table.inputs;
      for (std::size_t w = 0; w < table.output_word; w++)
        for (unsigned byte = 0; byte < 4; byte++, at += 4)
          std::memcpy(at, kQuads[row[w] >> (8 * byte) & 255U].data(), 4);
      at = end;
    } else {
      for (const std::uint32_t k : used) *at++ = kLiteralText[row[k / 16] >> (2 * (k % 16)) & 3];
    }
    commit(sink, put(at, " 1\n"));
  }
}

void print_pla_blocks(const Table &table, const std::string &path) {
  Sink sink = open_sink(path);
  const Lists terms = terms_by_output(table);
  for (std::uint32_t j = 0; j < table.outputs; j++) {
    const std::uint32_t *const list = terms.items.data() + terms.starts[j];
    const std::size_t count = terms.starts[j + 1] - terms.starts[j];
    const std::vector<std::uint32_t> used = used_inputs(table, list, count);
    print(sink, "SYM PLA ", table.output_names[j], ";\n");
    for (std::uint32_t m = 0; m < used.size(); m++)
      print(sink, "\tPIN A", m, " IN ", table.input_names[used[m]], ";\n");
    print(sink, "\tPIN Z0 OUT ", table.output_names[j], ";\n\tBEGIN_PLA\n");
    print_rows(sink, table, list, count, used);
    print(sink, "\tEND_PLA\nEND;\n\n");
  }
  close_sink(sink);
}

void print_gates(const Table &table, const std::string &path) {
  Sink sink = open_sink(path);
  print_gate_nets(sink, table, literals_by_input(table));
  print_gate_symbols(sink, table, terms_by_output(table));
  close_sink(sink);
}

} // namespace probe
