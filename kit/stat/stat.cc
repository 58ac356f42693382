// `cubekit stat`: counts what is in a netlist.
#include "kit/stat/stat.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iomanip>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <sstream>

#include "kit/command/arguments.h"
#include "kit/command/command.h"
#include "kit/command/output.h"
#include "kit/netlist/check_netlist.h"
#include "kit/netlist/flow.h"
#include "kit/netlist/names.h"

namespace cubekit {

namespace {

void count_pins(const Netlist &netlist, Statistics &statistics) {
  for (const ExternalPin &pin : netlist.external_pins) {
    statistics.inputs += pin.direction == Direction::IN ? 1 : 0;
    statistics.outputs += pin.direction == Direction::OUT ? 1 : 0;
    statistics.bidirectionals += pin.direction == Direction::BIDI ? 1 : 0;
  }
}

void count_nets(const Netlist &netlist, Statistics &statistics) {
  statistics.nets = netlist.nets.size();
  for (const Net &net : netlist.nets) {
    statistics.fan_out_total += net.destination_count;
    if (net.destination_count <= statistics.fan_out_max) continue;
    statistics.fan_out_max = net.destination_count;
    statistics.fan_out_net = map_name(net.name, NameSet::VISIBLE);
  }
}

void count_symbols(const Netlist &netlist, Statistics &statistics) {
  cubenet::TextMap<std::string_view, std::size_t> counts;
  for (const Symbol &symbol : netlist.symbols) {
    const PrimitiveRow &primitive = primitive_of(symbol);
    counts[symbol.primitive_text]++;
    statistics.symbol_count++;
    statistics.storages += is_storage(primitive.function) ? 1 : 0;
    if (primitive.width_in_name) statistics.gate_inputs += symbol.width;
    if (!has_rows(symbol)) continue;
    statistics.terms += symbol.row_count;
    for (std::size_t row = 0; row < symbol.row_count; row++) {
      const std::string_view text = row_at(symbol, row);
      statistics.literals += text.size() - static_cast<std::size_t>(std::count(text.begin(), text.end(), '-'));
    }
  }
  for (const auto &[primitive, count] : counts) statistics.symbols[map_name(primitive, NameSet::VISIBLE)] = count;
}

void measure_depth(const Netlist &netlist, Statistics &statistics) {
  const Flow flow = order_symbols(netlist, passes_gates);
  statistics.loops = static_cast<std::size_t>(std::count(flow.cut.begin(), flow.cut.end(), true));
  std::vector<std::size_t> depths(netlist.nets.size());
  for (const SymbolIndex index : flow.order) {
    const Symbol &symbol = netlist.symbols[index];
    if (is_storage(primitive_of(symbol).function) || is_macro(symbol)) continue;
    std::size_t deepest = 0;
    for (const Pin pin : pins_of(netlist, symbol))
      if (pin.direction == Direction::IN && !flow.cut[pin.net]) deepest = std::max(deepest, depths[pin.net]);
    for (const Pin pin : pins_of(netlist, symbol))
      if (pin.direction != Direction::IN) depths[pin.net] = deepest + 1;
    statistics.depth = std::max(statistics.depth, deepest + 1);
  }
}

double mean_fan_out(const Statistics &statistics) {
  return statistics.nets == 0 ? 0.0
                              : static_cast<double>(statistics.fan_out_total) / static_cast<double>(statistics.nets);
}

void print_text(std::ostream &stream, const Statistics &statistics) {
  for (const StatisticsRow &row : describe(statistics))
    stream << std::left << std::setw(14) << row.label << row.value << '\n';
}

void print_json(std::ostream &stream, const Statistics &statistics) {
  nlohmann::ordered_json json;
  json["pins"] = {
      {"input", statistics.inputs}, {"output", statistics.outputs}, {"bidirectional", statistics.bidirectionals}};
  json["symbols"] = {{"total", statistics.symbol_count}, {"by_primitive", statistics.symbols}};
  json["nets"] = statistics.nets;
  json["fan_out"] = {
      {"mean", mean_fan_out(statistics)}, {"max", statistics.fan_out_max}, {"max_net", statistics.fan_out_net}};
  json["terms"] = statistics.terms;
  json["literals"] = statistics.literals;
  json["gate_inputs"] = statistics.gate_inputs;
  json["storage"] = statistics.storages;
  json["gate_loops"] = statistics.loops;
  json["depth"] = statistics.depth;
  stream << json.dump(2) << '\n';
}

} // namespace

Statistics collect_statistics(const Netlist &netlist) {
  Statistics statistics;
  count_pins(netlist, statistics);
  count_nets(netlist, statistics);
  count_symbols(netlist, statistics);
  measure_depth(netlist, statistics);
  return statistics;
}

std::vector<StatisticsRow> describe(const Statistics &statistics) {
  std::ostringstream fan_out;
  fan_out << "mean " << std::fixed << std::setprecision(2) << mean_fan_out(statistics) << ", max "
          << statistics.fan_out_max;
  if (!statistics.fan_out_net.empty()) fan_out << " (" << statistics.fan_out_net << ')';
  const auto number = [](std::size_t value) { return std::to_string(value); };
  std::vector<StatisticsRow> rows{
      {"pins", number(statistics.inputs) + " in, " + number(statistics.outputs) + " out, " +
                   number(statistics.bidirectionals) + " bidirectional"},
      {"symbols", number(statistics.symbol_count)},
  };
  for (const auto &[primitive, count] : statistics.symbols) rows.push_back({"  " + primitive, number(count)});
  rows.insert(rows.end(), {{"nets", number(statistics.nets)},
                           {"fan-out", fan_out.str()},
                           {"terms", number(statistics.terms) + " with " + number(statistics.literals) + " literals"},
                           {"gate inputs", number(statistics.gate_inputs)},
                           {"storage", number(statistics.storages)},
                           {"gate loops", number(statistics.loops)},
                           {"depth", number(statistics.depth)}});
  return rows;
}

std::function<int()> setup_stat(CLI::App &command) {
  struct Arguments : DesignArguments {
    bool json = false;
  };
  auto arguments = std::make_shared<Arguments>();
  declare_design(command, *arguments);
  command.add_flag("--json", arguments->json, "print JSON");
  return [arguments] {
    Netlist netlist;
    if (!load_design(arguments->design, netlist, std::cerr)) return kMisuse;
    const Statistics statistics = during("counting", [&] { return collect_statistics(netlist); });
    return write_output("", [&](std::ostream &stream) {
      if (arguments->json)
        print_json(stream, statistics);
      else
        print_text(stream, statistics);
    });
  };
}

} // namespace cubekit
