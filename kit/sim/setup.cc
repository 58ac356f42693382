// Makes a simulator from a netlist: cells in flow order, storage separate.
#include "kit/netlist/flow.h"
#include "kit/sim/sim.h"

namespace cubekit {

namespace {

void set_bit(std::vector<std::uint64_t> &words, std::size_t word, std::size_t bit) {
  words[word + bit / 64] |= std::uint64_t{1} << (bit % 64);
}

Table make_table(const Symbol &symbol) {
  Table table{(symbol.width + std::size_t{63}) / 64, {}, {}};
  const std::size_t rows = symbol.row_count;
  table.ones.resize(rows * table.words);
  table.zeros.resize(rows * table.words);
  table.high.resize(table.words);
  table.low.resize(table.words);
  for (std::size_t row = 0; row < rows; row++) {
    const std::string_view text = row_at(symbol, row);
    for (std::size_t i = 0; i < text.size(); i++)
      if (text[i] != '-') set_bit(text[i] == '1' ? table.ones : table.zeros, row * table.words, i);
  }
  return table;
}

void add_storage(Simulator &simulator, SymbolIndex index, Value power_up) {
  const auto net = [&](std::string_view pin) { return net_at(simulator.netlist, index, pin); };
  Storage storage;
  storage.latch = primitive_of(simulator.netlist.symbols[index]).function == Function::LATCH;
  storage.toggles = net("T0") != kNone;
  storage.data = storage.toggles ? net("T0") : net("D0");
  storage.clock = storage.latch ? net("G") : net("CLK");
  storage.enable = net("EN");
  storage.clear = net("CD");
  storage.set = net("SD");
  storage.output = net("Q0");
  storage.state = power_up;
  simulator.values[storage.output] = power_up;
  simulator.places[index] = {true, static_cast<std::uint32_t>(simulator.storages.size())};
  simulator.storages.push_back(storage);
}

void add_cell(Simulator &simulator, SymbolIndex index, std::span<const std::uint32_t> pins_of_nets) {
  const Symbol &symbol = simulator.netlist.symbols[index];
  Cell cell;
  cell.function = primitive_of(symbol).function;
  cell.first_input = static_cast<std::uint32_t>(simulator.inputs.size());
  for (const Pin pin : pins_of(simulator.netlist, symbol)) {
    if (pin.direction == Direction::IN)
      simulator.inputs.push_back(pin.net);
    else if (pin.name == (is_pad(symbol) ? "Z0" : "ZN0"))
      cell.other = pin.net;
    else
      cell.output = pin.net;
  }
  cell.input_count = static_cast<std::uint32_t>(simulator.inputs.size()) - cell.first_input;
  if (has_rows(symbol)) {
    cell.table = static_cast<std::uint32_t>(simulator.tables.size());
    simulator.tables.push_back(make_table(symbol));
  }
  const auto place = static_cast<std::uint32_t>(simulator.cells.size());
  if (is_pad(symbol)) {
    cell.pin = pins_of_nets[cell.output];
    simulator.pads.push_back(place);
  }
  simulator.places[index] = {false, place};
  simulator.cells.push_back(cell);
}

} // namespace

Simulator make_simulator(const Netlist &netlist, Value power_up) {
  Simulator simulator{netlist};
  simulator.values.assign(netlist.nets.size(), Value::UNKNOWN);
  simulator.outside.assign(netlist.external_pins.size(), Value::OPEN);
  simulator.places.assign(netlist.symbols.size(), {false, kNone});
  for (NetIndex i = 0; i < netlist.nets.size(); i++)
    if (is_constant(netlist.nets[i])) simulator.values[i] = netlist.nets[i].name == "VCC" ? Value::HIGH : Value::LOW;
  std::vector<std::uint32_t> pins_of_nets(netlist.nets.size(), kNone);
  for (std::uint32_t i = 0; i < netlist.external_pins.size(); i++) pins_of_nets[netlist.external_pins[i].net] = i;

  const Flow flow = order_symbols(netlist, passes_gates);
  for (const bool cut : flow.cut) simulator.loops += cut ? 1 : 0;
  for (const SymbolIndex index : flow.order) {
    const Symbol &symbol = netlist.symbols[index];
    if (is_storage(primitive_of(symbol).function))
      add_storage(simulator, index, power_up);
    else if (!is_macro(symbol) && (!is_table(symbol) || has_rows(symbol)))
      add_cell(simulator, index, pins_of_nets);
  }

  // Everything is evaluated in the first row.
  for (std::uint32_t i = 0; i < simulator.cells.size(); i++) simulator.later_queue.push_back(i);
  for (std::uint32_t i = 0; i < simulator.storages.size(); i++) simulator.storage_queue.push_back(i);
  simulator.cell_waits.assign(simulator.cells.size(), true);
  simulator.storage_waits.assign(simulator.storages.size(), true);
  return simulator;
}

} // namespace cubekit
