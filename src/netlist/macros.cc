// Placed macros: hard blocks whose ports connect to signals in the form that a connection names, or to nets of their
// own. A net gets one driver; what a macro would drive a second time is kept apart on a net of its own.
#include "netlist/macros.h"

#include <unordered_set>

namespace cubenet {

namespace {

NetIndex add_statement_net(NetlistBuilder &builder, std::string name) {
  builder.netlist.own_names.push_back(std::move(name));
  const NetIndex net = add_net(builder.netlist, {builder.netlist.own_names.back(), ""}, NetKind::INTERNAL);
  builder.netlist.statements.push_back(net);
  return net;
}

// A net that nothing declares, by the name that its statement gives it.
NetIndex plain_net(NetlistBuilder &builder, const std::string &name) {
  if (name == "GND" || name == "VCC") return rail(builder.netlist, name == "VCC");
  const auto [at, is_new] = builder.plain_nets.try_emplace(name, kNone);
  if (is_new) at->second = add_statement_net(builder, name);
  return at->second;
}

ExtensionCode connection_code(const Connection &connection) { return extension_code(upper_case(connection.pin_part)); }

// An output that is meant for the signal as a whole.
bool is_target(const Connection &connection, bool is_output) {
  const ExtensionCode code = connection_code(connection);
  return is_output && (code == EXT_NONE || code == EXT_PIN);
}
bool is_target(const MacroPin &pin) { return is_target(*pin.connection, pin.is_output); }

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

// Connects what the signals have left over: nets that nothing declares, parts of signals that no equation makes, and
// outputs whose net has a driver.
struct LeftOverPins {
  NetlistBuilder &builder;
  TextMap<std::string, NetIndex> parts{}; // by "signal.part"
  std::unordered_set<NetIndex> driven{};
};

NetIndex add_yielding_net(NetlistBuilder &builder, std::string wanted) {
  const NetIndex net = add_statement_net(builder, std::move(wanted));
  builder.yielding_nets.push_back(net);
  return net;
}

NetIndex part_net(LeftOverPins &pins, const std::string &base, const std::string &part) {
  const auto [at, is_new] = pins.parts.try_emplace(display_name(base, part), kNone);
  if (is_new) at->second = add_yielding_net(pins.builder, netlist_name(base, part));
  return at->second;
}

void connect_left_over(LeftOverPins &pins, MacroPin &pin) {
  NetlistBuilder &builder = pins.builder;
  const Connection &connection = *pin.connection;
  const bool is_declared = connection.signal != kNoSignal;
  const std::string &base = is_declared ? signal_name(builder.design, connection.signal) : connection.name;
  const std::string part = upper_case(connection.pin_part);
  const std::string name = spelled_name(base, connection, pin.is_output);
  if (pin.is_apart)
    pin.net = add_yielding_net(builder, name + "_H");
  else if (pin.net == kNone)
    pin.net = is_declared ? part_net(pins, base, part) : plain_net(builder, name);
  if (!pin.is_output) return;
  const bool is_rail = builder.netlist.nets[pin.net].kind == NetKind::RAIL;
  if (is_rail || !pins.driven.insert(pin.net).second) pin.net = add_yielding_net(builder, name + "_H");
}

} // namespace

std::string spelled_name(const std::string &base, const Connection &connection, bool is_output) {
  return is_target(connection, is_output) ? base : netlist_name(base, upper_case(connection.pin_part));
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
    const ExtensionCode code = connection_code(*pin.connection);
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
      pin.net = read_net(reads, connection_code(*pin.connection));
      if (pin.net == kNone) pin.net = find_own_net(mapper, pin);
    }
  });
}

void add_macros(NetlistBuilder &builder) {
  LeftOverPins pins{builder};
  for (MacroPin &pin : builder.macro_pins) connect_left_over(pins, pin);
  const MacroPin *next = builder.macro_pins.data();
  TextSet<std::string_view> names;
  for (const Instance &instance : builder.design.instances) {
    if (!names.insert(instance.name).second)
      builder.yielding_symbols.push_back(static_cast<SymbolIndex>(builder.netlist.symbols.size()));
    open_symbol(builder.netlist, Primitive::MACRO, {instance.name, ""}).origin =
        static_cast<std::uint32_t>(instance.macro);
    for (std::uint32_t port = 0; port < instance.inputs.size(); port++)
      builder.netlist.pins.push_back({PinKind::PORT_IN, port, (next++)->net});
    for (std::uint32_t port = 0; port < instance.outputs.size(); port++)
      builder.netlist.pins.push_back({PinKind::PORT_OUT, port, (next++)->net});
    close_symbol(builder.netlist);
  }
}

} // namespace cubenet
