// `cubekit sim`: steps a netlist over a file of vectors and prints what its pins show.
#include <CLI/CLI.hpp>
#include <fstream>
#include <iostream>
#include <memory>

#include "kit/command/arguments.h"
#include "kit/command/command.h"
#include "kit/command/output.h"
#include "kit/netlist/check_netlist.h"
#include "kit/netlist/flow.h"
#include "kit/netlist/nxf_parser.h"
#include "kit/sim/sim.h"
#include "kit/sim/vcd.h"
#include "kit/sim/vectors.h"
#include "util/output_file.h"

namespace cubekit {

namespace {

struct Arguments : DesignArguments {
  std::string vectors, waves, power_up = "0";
};

Value power_up_value(const std::string &text) {
  if (text == "x") return Value::UNKNOWN;
  return text == "1" ? Value::HIGH : Value::LOW;
}

// The columns of the vectors, a '|', and the pins that the device can drive; each as wide as the pin's name.
template <typename InputText, typename OutputText>
void print_columns(const VectorReader &reader, InputText input_text, OutputText output_text) {
  const std::vector<ExternalPin> &pins = reader.netlist.external_pins;
  std::string line;
  const auto add = [&](std::uint32_t pin, const std::string &text) {
    line += text + std::string(pins[pin].pin.size() - text.size() + 1, ' ');
  };
  for (const std::uint32_t pin : reader.columns) add(pin, input_text(pin));
  line += "| ";
  for (std::uint32_t pin = 0; pin < pins.size(); pin++)
    if (pins[pin].direction != Direction::IN) add(pin, output_text(pin));
  line.erase(line.find_last_not_of(' ') + 1);
  std::cout << line << '\n';
}

void print_names(const VectorReader &reader) {
  const auto name = [&](std::uint32_t pin) { return std::string(reader.netlist.external_pins[pin].pin); };
  print_columns(reader, name, name);
}

void print_values(const VectorReader &reader, const Simulator &simulator) {
  const auto driven = [&](std::uint32_t pin) {
    return std::string(1, reader.row[pin] == Value::OPEN ? '-' : value_char(reader.row[pin]));
  };
  const auto shown = [&](std::uint32_t pin) { return std::string(1, value_char(pin_value(simulator, pin))); };
  print_columns(reader, driven, shown);
}

// Reports for each pin the first row that drives it against the device.
void tell_contests(const std::string &path, const VectorReader &reader, const Simulator &simulator,
                   std::vector<bool> &told) {
  for (const std::uint32_t pin : contested_pins(simulator)) {
    if (!told[pin])
      print_finding(std::cerr, path,
                    {reader.line, "pin " + quoted(reader.netlist.external_pins[pin].pin) +
                                      " is driven by the device too, to the other value"});
    told[pin] = true;
  }
}

// Returns kNo at a row that does not settle, with the reason in the reader's error; kMisuse at a row that
// can't be read.
int step_rows(const std::string &path, VectorReader &reader, Simulator &simulator, WaveWriter *waves) {
  Stage stage("rows simulated", 0, Printing::YES);
  std::vector<bool> told(reader.netlist.external_pins.size());
  std::size_t rows = 0;
  while (read_row(reader)) {
    std::string restless;
    if (!step(simulator, reader.row, restless)) {
      reader.error = {reader.line, "this row never settles: " + restless};
      return kNo;
    }
    print_values(reader, simulator);
    tell_contests(path, reader, simulator, told);
    if (waves != nullptr) write_wave_row(*waves);
    stage.set_done(++rows);
  }
  return reader.error.text.empty() ? kYes : kMisuse;
}

int run_rows(const Arguments &arguments, VectorReader &reader, Simulator &simulator, WaveWriter *waves) {
  print_names(reader);
  if (waves != nullptr) write_wave_header(*waves);
  const int status = step_rows(arguments.vectors, reader, simulator, waves);
  if (status != kYes) print_finding(std::cerr, arguments.vectors, reader.error);
  return status;
}

int run_sim(const Arguments &arguments) {
  Netlist netlist;
  if (!load_design(arguments.design, netlist, std::cerr)) return kMisuse;
  std::ifstream vectors(arguments.vectors, std::ios::binary);
  cubenet::protect_from_output(arguments.vectors);
  VectorReader reader{netlist, vectors};
  if (!vectors) reader.error.text = "can't be read";
  if (!vectors || !read_columns(reader)) {
    print_finding(std::cerr, arguments.vectors, reader.error);
    return kMisuse;
  }
  Simulator simulator = make_simulator(netlist, power_up_value(arguments.power_up));
  if (arguments.waves.empty()) return run_rows(arguments, reader, simulator, nullptr);
  int status = kYes;
  const int written = write_output(arguments.waves, [&](std::ostream &stream) {
    WaveWriter waves{stream, simulator};
    status = run_rows(arguments, reader, simulator, &waves);
  });
  return written == kYes ? status : written;
}

} // namespace

std::function<int()> setup_sim(CLI::App &command) {
  auto arguments = std::make_shared<Arguments>();
  declare_design(command, *arguments);
  command.add_option("--vectors", arguments->vectors, "the file of input vectors")->required();
  command.add_option("--vcd", arguments->waves, "write the waveforms of all nets to this file");
  command.add_option("--power-up", arguments->power_up, "what registers and latches hold at the start: 0, 1 or x")
      ->check(CLI::IsMember({"0", "1", "x"}))
      ->capture_default_str();
  return [arguments] { return run_sim(*arguments); };
}

} // namespace cubekit
