// The simulator's step. Cells are swept in their order, so that without loops each is evaluated once; what a
// loop feeds back waits for the next sweep. When no cell waits, the registers and latches whose inputs have
// changed are evaluated, and their changes start the next sweep.
#include "kit/sim/sim.h"

#include <algorithm>
#include <functional>

namespace cubekit {

namespace {

// A change may run through every loop, and every register, this often before it counts as endless.
constexpr std::size_t kPatience = 4;

constexpr Value invert(Value value) {
  if (value == Value::LOW) return Value::HIGH;
  return value == Value::HIGH ? Value::LOW : Value::UNKNOWN;
}

constexpr Value exclusive_or(Value a, Value b) {
  if (a > Value::HIGH || b > Value::HIGH) return Value::UNKNOWN;
  return a == b ? Value::LOW : Value::HIGH;
}

// Yes, no, or unknown.
constexpr Value choose(Value condition, Value yes, Value no) {
  if (condition == Value::HIGH) return yes;
  if (condition == Value::LOW) return no;
  return yes == no ? yes : Value::UNKNOWN;
}

// The cells' queue of the running sweep is a heap, lowest first.
void wait_for_cell(Simulator &simulator, std::uint32_t cell) {
  if (simulator.cell_waits[cell]) return;
  simulator.cell_waits[cell] = true;
  if (cell <= simulator.current) {
    simulator.later_queue.push_back(cell);
    return;
  }
  simulator.cell_queue.push_back(cell);
  std::push_heap(simulator.cell_queue.begin(), simulator.cell_queue.end(), std::greater<>());
}

void wait_for_storage(Simulator &simulator, std::uint32_t storage) {
  if (simulator.storage_waits[storage]) return;
  simulator.storage_waits[storage] = true;
  simulator.storage_queue.push_back(storage);
}

void wait_for_symbol(Simulator &simulator, SymbolIndex symbol) {
  const Simulator::Place place = simulator.places[symbol];
  if (place.index == kNone) return;
  if (place.storage)
    wait_for_storage(simulator, place.index);
  else
    wait_for_cell(simulator, place.index);
}

void assign(Simulator &simulator, NetIndex net_index, Value value) {
  if (net_index == kNone || simulator.values[net_index] == value) return;
  simulator.values[net_index] = value;
  const Net &net = simulator.netlist.nets[net_index];
  for (std::uint32_t d = 0; d < net.destination_count; d++)
    wait_for_symbol(simulator, simulator.netlist.destinations[net.first_destination + d].symbol);
}

// AND; OR is the same with 0 and 1 swapped.
Value meet(const Simulator &simulator, const Cell &cell, Value deciding) {
  Value result = invert(deciding);
  for (std::uint32_t i = 0; i < cell.input_count; i++) {
    const Value input = simulator.values[simulator.inputs[cell.first_input + i]];
    if (input == deciding) return deciding;
    if (input > Value::HIGH) result = Value::UNKNOWN;
  }
  return result;
}

Value look_up(Simulator &simulator, const Cell &cell) {
  Table &table = simulator.tables[cell.table];
  std::fill(table.high.begin(), table.high.end(), 0);
  std::fill(table.low.begin(), table.low.end(), 0);
  for (std::uint32_t i = 0; i < cell.input_count; i++) {
    const Value input = simulator.values[simulator.inputs[cell.first_input + i]];
    if (input == Value::HIGH) table.high[i / 64] |= std::uint64_t{1} << (i % 64);
    if (input == Value::LOW) table.low[i / 64] |= std::uint64_t{1} << (i % 64);
  }
  Value result = Value::LOW;
  for (std::size_t at = 0; at < table.ones.size(); at += table.words) {
    bool contradicted = false, open = false;
    for (std::size_t w = 0; w < table.words; w++) {
      const std::uint64_t ones = table.ones[at + w], zeros = table.zeros[at + w];
      contradicted = contradicted || ((ones & table.low[w]) | (zeros & table.high[w])) != 0;
      open = open || ((ones & ~table.high[w]) | (zeros & ~table.low[w])) != 0;
    }
    if (contradicted) continue;
    if (!open) return Value::HIGH;
    result = Value::UNKNOWN;
  }
  return result;
}

Value input_value(const Simulator &simulator, const Cell &cell, std::uint32_t input) {
  return as_logic(simulator.values[simulator.inputs[cell.first_input + input]]);
}

Value enable_value(const Simulator &simulator, const Cell &cell) {
  return cell.input_count > 1 ? input_value(simulator, cell, 1) : Value::HIGH;
}

Value outside_value(const Simulator &simulator, const Cell &cell) {
  return cell.pin == kNone ? Value::OPEN : simulator.outside[cell.pin];
}

// The level after a buffer with an enable: its data, the value from outside, what both agree on, or unknown.
Value drive(const Simulator &simulator, const Cell &cell) {
  const Value enable = enable_value(simulator, cell), outside = outside_value(simulator, cell);
  if (enable == Value::LOW) return outside;
  const Value inside = enable == Value::HIGH ? input_value(simulator, cell, 0) : Value::UNKNOWN;
  return outside == Value::OPEN || outside == inside ? inside : Value::UNKNOWN;
}

Value compute(Simulator &simulator, const Cell &cell) {
  switch (cell.function) {
  case Function::AND: return meet(simulator, cell, Value::LOW);
  case Function::OR: return meet(simulator, cell, Value::HIGH);
  case Function::XOR: return exclusive_or(input_value(simulator, cell, 0), input_value(simulator, cell, 1));
  case Function::TABLE: return look_up(simulator, cell);
  case Function::PAD:
  case Function::TRISTATE: return drive(simulator, cell);
  default: return input_value(simulator, cell, 0);
  }
}

void evaluate(Simulator &simulator, const Cell &cell) {
  const Value value = compute(simulator, cell);
  assign(simulator, cell.output, value);
  assign(simulator, cell.other, cell.function == Function::PAD ? as_logic(value) : invert(value));
}

bool settle_cells(Simulator &simulator) {
  for (std::size_t sweeps = 0; !simulator.later_queue.empty(); sweeps++) {
    if (sweeps > kPatience * (simulator.loops + 1)) return false;
    simulator.cell_queue.swap(simulator.later_queue);
    std::make_heap(simulator.cell_queue.begin(), simulator.cell_queue.end(), std::greater<>());
    while (!simulator.cell_queue.empty()) {
      std::pop_heap(simulator.cell_queue.begin(), simulator.cell_queue.end(), std::greater<>());
      simulator.current = simulator.cell_queue.back();
      simulator.cell_queue.pop_back();
      simulator.cell_waits[simulator.current] = false;
      evaluate(simulator, simulator.cells[simulator.current]);
    }
    // Between sweeps no cell is current.
    simulator.current = kNone;
  }
  return true;
}

Value value_at(const Simulator &simulator, NetIndex net, Value without) {
  return net == kNone ? without : as_logic(simulator.values[net]);
}

// What a clock edge would store, or an open latch lets through.
Value stored_value(const Storage &storage, Value data, Value enable) {
  const Value next = storage.toggles ? exclusive_or(storage.state, data) : data;
  return choose(enable, next, storage.state);
}

void look_at(Simulator &simulator, Storage &storage) {
  const Value data = value_at(simulator, storage.data, Value::UNKNOWN);
  const Value clock = value_at(simulator, storage.clock, Value::UNKNOWN);
  const Value enable = value_at(simulator, storage.enable, Value::HIGH);
  Value state = storage.state;
  if (storage.latch) {
    state = choose(clock, data, state);
  } else if (storage.started && storage.clock_before != clock && storage.clock_before != Value::HIGH &&
             clock != Value::LOW) {
    const bool rises = storage.clock_before == Value::LOW && clock == Value::HIGH;
    const Value next = stored_value(storage, storage.data_before, storage.enable_before);
    state = choose(rises ? Value::HIGH : Value::UNKNOWN, next, state);
  }
  state = choose(value_at(simulator, storage.set, Value::LOW), Value::HIGH, state);
  state = choose(value_at(simulator, storage.clear, Value::LOW), Value::LOW, state);
  storage.started = true;
  storage.data_before = data;
  storage.clock_before = clock;
  storage.enable_before = enable;
  storage.state = state;
}

// All see the same settled values; their outputs change together.
void update_storages(Simulator &simulator) {
  std::vector<std::uint32_t> queue;
  queue.swap(simulator.storage_queue);
  for (const std::uint32_t index : queue) {
    simulator.storage_waits[index] = false;
    look_at(simulator, simulator.storages[index]);
  }
  for (const std::uint32_t index : queue)
    assign(simulator, simulator.storages[index].output, simulator.storages[index].state);
}

void apply(Simulator &simulator, std::span<const Value> row) {
  const std::vector<ExternalPin> &pins = simulator.netlist.external_pins;
  for (std::size_t i = 0; i < pins.size(); i++) {
    if (pins[i].direction == Direction::IN) assign(simulator, pins[i].net, row[i]);
    if (pins[i].direction != Direction::BIDI || simulator.outside[i] == row[i]) continue;
    simulator.outside[i] = row[i];
    const Net &net = simulator.netlist.nets[pins[i].net];
    for (std::uint32_t d = 0; d < net.destination_count; d++)
      wait_for_symbol(simulator, simulator.netlist.destinations[net.first_destination + d].symbol);
  }
}

std::string name_restless(const Simulator &simulator) {
  constexpr std::size_t kShown = 4;
  std::string names;
  const auto add = [&](NetIndex net) {
    if (net != kNone) names += (names.empty() ? "" : ", ") + std::string(simulator.netlist.nets[net].name);
  };
  for (std::size_t i = 0; i < std::min(kShown, simulator.later_queue.size()); i++) {
    const Cell &cell = simulator.cells[simulator.later_queue[i]];
    add(cell.output != kNone ? cell.output : cell.other);
  }
  for (std::size_t i = 0; names.empty() && i < simulator.storage_queue.size(); i++)
    add(simulator.storages[simulator.storage_queue[i]].output);
  return names;
}

} // namespace

std::vector<std::uint32_t> contested_pins(const Simulator &simulator) {
  std::vector<std::uint32_t> pins;
  for (const std::uint32_t pad : simulator.pads) {
    const Cell &cell = simulator.cells[pad];
    if (enable_value(simulator, cell) != Value::HIGH) continue;
    const Value inside = input_value(simulator, cell, 0), outside = outside_value(simulator, cell);
    if (inside <= Value::HIGH && outside == invert(inside)) pins.push_back(cell.pin);
  }
  return pins;
}

bool step(Simulator &simulator, std::span<const Value> row, std::string &restless) {
  simulator.current = kNone;
  apply(simulator, row);
  for (std::size_t rounds = 0; rounds <= kPatience * (simulator.storages.size() + 1); rounds++) {
    if (!settle_cells(simulator)) break;
    if (simulator.storage_queue.empty()) return true;
    update_storages(simulator);
  }
  restless = name_restless(simulator);
  return false;
}

} // namespace cubekit
