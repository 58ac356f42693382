// probe MODE IN [OUT]
//   parse       reads the table only
//   pla, gates  prints text like a netlist into OUT
//   same-pla, same-gates  prints the program's files OUT.ddf, OUT.tvx and OUT.nxf
#include "probe.h"

#include <cstdio>
#include <cstdlib>

#include <fcntl.h>

namespace probe {

void die(const char *what) {
  std::fprintf(stderr, "probe: %s\n", what);
  std::exit(1);
}

namespace {

void run(const std::string &mode, const Table &table, const std::string &out) {
  if (mode == "pla") return print_pla_blocks(table, out);
  if (mode == "gates") return print_gates(table, out);
  if (mode == "same-pla" || mode == "same-gates") return print_same_files(table, out, mode == "same-gates");
  if (mode != "parse") die("no such mode");
  std::printf("%zu terms\n", table.count);
}

} // namespace
} // namespace probe

int main(int argc, char **argv) {
  if (argc < 3) probe::die("usage: probe MODE IN [OUT]");
  const int descriptor = open(argv[2], O_RDONLY);
  if (descriptor < 0) probe::die("can't open the input");
  probe::Table table;
  probe::read_table(descriptor, table);
  probe::run(argv[1], table, argc > 3 ? argv[3] : "");
  return 0;
}
