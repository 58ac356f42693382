// Writes value change dumps: one variable per net, which the pins on it share.
#include "kit/sim/vcd.h"

#include <ostream>

#include "kit/netlist/names.h"

namespace cubekit {

namespace {

constexpr unsigned kTimePerRow = 10;

// The shortest texts of printable characters, in turn.
std::string wave_code(NetIndex net) {
  constexpr char kFirst = '!';
  constexpr NetIndex kCharacters = '~' - kFirst + 1;
  std::string code;
  do {
    code += static_cast<char>(kFirst + static_cast<char>(net % kCharacters));
    net /= kCharacters;
  } while (net > 0);
  return code;
}

void write_variable(std::ostream &stream, NetIndex net, std::string_view name) {
  stream << "$var wire 1 " << wave_code(net) << ' ' << map_name(name, NameSet::WORD) << " $end\n";
}

} // namespace

void write_wave_header(WaveWriter &writer) {
  const Netlist &netlist = writer.simulator.netlist;
  std::ostream &stream = writer.stream;
  stream << "$version cubekit $end\n$timescale 1 ns $end\n$scope module " << module_name(netlist, NameSet::WORD)
         << " $end\n";
  for (const ExternalPin &pin : netlist.external_pins) write_variable(stream, pin.net, pin.pin);
  stream << "$scope module nets $end\n";
  for (NetIndex i = 0; i < netlist.nets.size(); i++) write_variable(stream, i, netlist.nets[i].name);
  stream << "$upscope $end\n$upscope $end\n$enddefinitions $end\n";
}

void write_wave_row(WaveWriter &writer) {
  const std::vector<Value> &values = writer.simulator.values;
  const bool first = writer.rows == 0;
  writer.stream << '#' << kTimePerRow * writer.rows << '\n' << (first ? "$dumpvars\n" : "");
  for (NetIndex i = 0; i < values.size(); i++)
    if (first || values[i] != writer.written[i]) writer.stream << value_char(values[i]) << wave_code(i) << '\n';
  if (first) writer.stream << "$end\n";
  writer.written = values;
  writer.rows++;
}

} // namespace cubekit
