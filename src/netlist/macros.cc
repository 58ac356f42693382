// Placed macros: hard blocks whose ports connect to signals in the form that a connection names, or to nets of their
// own. A net gets one driver; what a macro would drive a second time is kept apart on a net of its own.
#include <optional>
#include <unordered_set>

#include "netlist/netlist_builder.h"

namespace cubenet {

namespace {

NetIndex add_statement_net(NetlistBuilder &builder, std::string name) {
  builder.netlist.own_names.push_back(std::move(name));
  const NetIndex net = add_net(builder.netlist, {builder.netlist.own_names.back(), ""}, NetKind::INTERNAL);
  builder.netlist.statements.push_back(net);
  return net;
}

// A net that nothing declares, by its spelled name.
NetIndex plain_net(NetlistBuilder &builder, const std::string &name) {
  if (name == "GND" || name == "VCC") return rail(builder.netlist, name == "VCC");
  const auto [at, is_new] = builder.plain_nets.try_emplace(name, kNone);
  if (is_new) at->second = add_statement_net(builder, name);
  return at->second;
}

ExtensionCode connection_code(const MacroPin &pin) { return extension_code(upper_case(pin.connection->pin_part)); }

// An output that is meant for the signal as a whole.
bool is_target(const MacroPin &pin) {
  const ExtensionCode code = connection_code(pin);
  return pin.is_output && (code == EXT_NONE || code == EXT_PIN);
}

NetIndex find_own_net(const SignalMapper &mapper, const MacroPin &pin) {
  const std::string suffix = netlist_name("", upper_case(pin.connection->pin_part));
  for (const auto &[known, net] : mapper.nets)
    if (known == suffix) return net;
  return kNone;
}

NetIndex driver_net(SignalMapper &mapper) {
  if (is_pin(mapper.design, mapper.signal)) return net_of(mapper, "_H");
  return net_of(mapper, has(mapper, EXT_OE) ? "_D" : "");
}

// All names that a net made for a macro must not take.
UniqueNames collect_names(const NetlistBuilder &builder) {
  UniqueNames names;
  for (SignalIndex signal = 0; signal < signal_count(builder.design); signal++)
    names.taken.insert(signal_name(builder.design, signal));
  for (const MacroPin &pin : builder.macro_pins)
    if (pin.connection->signal == kNoSignal)
      names.taken.insert(netlist_name(pin.connection->name, upper_case(pin.connection->pin_part)));
  for (const Net &net : builder.netlist.nets) names.taken.insert(name_text(net.name));
  return names;
}

// Connects what the signals have left over: nets that nothing declares, parts of signals that no equation makes, and
// outputs whose net has a driver.
struct LeftOverPins {
  NetlistBuilder &builder;
  std::optional<UniqueNames> names{};     // made when the first one is needed
  TextMap<std::string, NetIndex> parts{}; // by "signal.part"
  std::unordered_set<NetIndex> driven{};
};

NetIndex unique_net(LeftOverPins &pins, const std::string &wanted) {
  if (!pins.names) pins.names = collect_names(pins.builder);
  return add_statement_net(pins.builder, make_unique(*pins.names, wanted));
}

NetIndex part_net(LeftOverPins &pins, const std::string &base, const std::string &part) {
  const auto [at, is_new] = pins.parts.try_emplace(display_name(base, part), kNone);
  if (is_new) at->second = unique_net(pins, netlist_name(base, part));
  return at->second;
}

void connect_left_over(LeftOverPins &pins, MacroPin &pin) {
  NetlistBuilder &builder = pins.builder;
  const Connection &connection = *pin.connection;
  const bool is_declared = connection.signal != kNoSignal;
  const std::string &base = is_declared ? signal_name(builder.design, connection.signal) : connection.name;
  const std::string part = upper_case(connection.pin_part);
  const std::string name = is_target(pin) ? base : netlist_name(base, part);
  if (pin.is_apart)
    pin.net = unique_net(pins, name + "_H");
  else if (pin.net == kNone)
    pin.net = is_declared ? part_net(pins, base, part) : plain_net(builder, name);
  if (!pin.is_output) return;
  const bool is_rail = builder.netlist.nets[pin.net].kind == NetKind::RAIL;
  if (is_rail || !pins.driven.insert(pin.net).second) pin.net = unique_net(pins, name + "_H");
}

// Two placed macros may have been given one name; the later one gets another.
std::vector<std::string> instance_names(const NetlistBuilder &builder) {
  TextSet<std::string_view> seen;
  std::optional<UniqueNames> names;
  std::vector<std::string> result;
  for (const Instance &instance : builder.design.instances) {
    result.push_back(instance.name);
    if (seen.insert(instance.name).second) continue;
    if (!names) {
      names = collect_names(builder);
      for (const Instance &each : builder.design.instances) names->taken.insert(each.name);
      for (const Symbol &symbol : builder.signal_symbols) names->taken.insert(name_text(symbol.instance));
      for (const OutputGate &gate : builder.netlist.outputs)
        for (const Name &name : {gate.instance, gate.block}) names->taken.insert(name_text(name));
    }
    result.back() = make_unique(*names, instance.name);
  }
  return result;
}

} // namespace

std::string make_unique(UniqueNames &names, const std::string &wanted) {
  if (names.taken.insert(wanted).second) return wanted;
  for (int &number = names.numbers.try_emplace(wanted, 2).first->second;; number++) {
    std::string name = wanted + "_" + std::to_string(number);
    if (names.taken.insert(name).second) return name;
  }
}

void collect_macro_pins(NetlistBuilder &builder) {
  std::vector<SignalIndex> signals;
  std::vector<std::uint32_t> connected;
  const auto take = [&](const std::vector<Connection> &list, bool is_output) {
    for (const Connection &connection : list) {
      if (connection.signal != kNoSignal) {
        connected.push_back(static_cast<std::uint32_t>(builder.macro_pins.size()));
        signals.push_back(connection.signal);
      }
      builder.macro_pins.push_back({&connection, is_output});
    }
  };
  for (const Instance &instance : builder.design.instances) {
    take(instance.inputs, false);
    take(instance.outputs, true);
  }
  builder.connected = group_by_signal(signals, signal_count(builder.design));
  for (std::uint32_t &entry : builder.connected.entries) entry = connected[entry];
}

const MacroPin *find_macro_driver(const NetlistBuilder &builder, SignalIndex signal) {
  const MacroPin *driver = nullptr;
  for_each_entry(builder.connected, signal, [&](std::uint32_t at) {
    if (driver == nullptr && is_target(builder.macro_pins[at])) driver = &builder.macro_pins[at];
  });
  return driver;
}

std::uint32_t macro_reads(const NetlistBuilder &builder, SignalIndex signal) {
  std::uint32_t reads = 0;
  for_each_entry(builder.connected, signal, [&](std::uint32_t at) {
    const MacroPin &pin = builder.macro_pins[at];
    const ExtensionCode code = connection_code(pin);
    if (!pin.is_output && code < EXT_UNSUPPORTED) reads |= 1U << code;
  });
  return reads;
}

void connect_macro_pins(NetlistBuilder &builder, SignalMapper &mapper, const ReadNets &reads, const MacroPin *driver) {
  for_each_entry(builder.connected, mapper.signal, [&](std::uint32_t at) {
    MacroPin &pin = builder.macro_pins[at];
    if (&pin == driver) {
      pin.net = driver_net(mapper);
    } else if (pin.is_output) {
      pin.is_apart = is_target(pin) || find_own_net(mapper, pin) != kNone;
    } else {
      pin.net = read_net(reads, connection_code(pin));
      if (pin.net == kNone) pin.net = find_own_net(mapper, pin);
    }
  });
}

void add_macros(NetlistBuilder &builder) {
  LeftOverPins pins{builder};
  for (MacroPin &pin : builder.macro_pins) connect_left_over(pins, pin);
  const MacroPin *next = builder.macro_pins.data();
  const std::vector<std::string> names = instance_names(builder);
  for (std::size_t i = 0; i < names.size(); i++) {
    const Instance &instance = builder.design.instances[i];
    builder.netlist.own_names.push_back(names[i]);
    open_symbol(builder.netlist, Primitive::MACRO, {builder.netlist.own_names.back(), ""}).origin =
        static_cast<std::uint32_t>(instance.macro);
    for (std::uint32_t port = 0; port < instance.inputs.size(); port++)
      builder.netlist.pins.push_back({PinKind::PORT_IN, port, (next++)->net});
    for (std::uint32_t port = 0; port < instance.outputs.size(); port++)
      builder.netlist.pins.push_back({PinKind::PORT_OUT, port, (next++)->net});
    close_symbol(builder.netlist);
  }
}

} // namespace cubenet
