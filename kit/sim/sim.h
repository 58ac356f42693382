// Steps a netlist over rows of input values. Values are 0, 1, unknown, and open where nothing drives; gates
// treat open as unknown, and their outputs are known as far as their known inputs allow.
//
// In one row all device inputs change at once, then everything settles. Rules of time:
//   - Gates settle before any register or latch looks at them, so no glitch is ever stored.
//   - A register samples its data and enable as they were before the change that made its clock rise: data
//     that changes in the row of the clock edge is too late. The first row sets levels and makes no edges.
//   - Clear and set are level-sensitive; clear wins. A latch is transparent while its gate is 1.
//   - A pin that the device and the row both drive is unknown, unless they agree.
//   - An unknown clock, gate, enable, clear or set leaves a value known only where both possibilities agree.
// Loops of gates settle like latches. A row that never settles is reported.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "kit/netlist/netlist.h"

namespace CLI {
class App;
}

namespace cubekit {

// `cubekit sim`.
std::function<int()> setup_sim(CLI::App &command);

enum class Value : std::uint8_t { LOW, HIGH, UNKNOWN, OPEN };

constexpr char value_char(Value value) { return "01xz"[static_cast<std::size_t>(value)]; }
// The value as a gate's input gets it.
constexpr Value as_logic(Value value) { return value == Value::OPEN ? Value::UNKNOWN : value; }

// A gate, a pad or a tristate buffer.
struct Cell {
  Function function = Function::AND;
  std::uint32_t first_input = 0, input_count = 0; // into Simulator::inputs; a pad's: A0 and OE
  NetIndex output = kNone;                        // the value; a pad's: the pin's net
  NetIndex other = kNone;                         // the complement; a bidirectional pad's: the pin, read
  std::uint32_t table = kNone;                    // into Simulator::tables
  std::uint32_t pin = kNone;                      // into the external pins: may bring a value from outside
};

// A PLA's rows as masks of its inputs.
struct Table {
  std::size_t words = 0;                    // of 64 inputs, per row
  std::vector<std::uint64_t> ones, zeros;   // literals that must be 1, that must be 0
  std::vector<std::uint64_t> high{}, low{}; // scratch: inputs that are 1, that are 0
};

// A register or latch. Pins that it lacks are kNone.
struct Storage {
  bool latch = false, toggles = false;
  NetIndex data = kNone, clock = kNone, enable = kNone, clear = kNone, set = kNone, output = kNone;
  Value state = Value::LOW;
  bool started = false; // the values below are those of a settled netlist
  Value data_before = Value::UNKNOWN, clock_before = Value::UNKNOWN, enable_before = Value::UNKNOWN;
};

struct Simulator {
  const Netlist &netlist;
  std::vector<Cell> cells{};         // drivers first, as far as there are no loops
  std::vector<std::uint32_t> pads{}; // cells
  std::vector<NetIndex> inputs{};    // of all cells
  std::vector<Table> tables{};       // of the PLA cells
  std::vector<Storage> storages{};   // registers and latches
  struct Place {
    bool storage;
    std::uint32_t index; // kNone: the symbol's behaviour is unknown (a macro, a ZDOT)
  };
  std::vector<Place> places{};  // per symbol
  std::size_t loops = 0;        // nets at which loops of cells are cut
  std::vector<Value> values{};  // per net
  std::vector<Value> outside{}; // per external pin: what drives it from outside
  std::vector<std::uint32_t> cell_queue{}, later_queue{}, storage_queue{}; // to be evaluated, each once
  std::vector<bool> cell_waits{}, storage_waits{};
  std::uint32_t current = 0; // the cell that a sweep has reached
};

// `power_up`: the initial value of every register and latch.
Simulator make_simulator(const Netlist &netlist, Value power_up);

// Applies one row, a value per external pin (those of output pins are ignored), and lets the netlist settle.
// False when it doesn't; `restless` then names some of the nets that keep changing.
[[nodiscard]] bool step(Simulator &simulator, std::span<const Value> row, std::string &restless);

// External pins that the device and the row drive to opposite values; their value is unknown.
std::vector<std::uint32_t> contested_pins(const Simulator &simulator);

inline Value pin_value(const Simulator &simulator, std::size_t external_pin) {
  return simulator.values[simulator.netlist.external_pins[external_pin].net];
}

} // namespace cubekit
