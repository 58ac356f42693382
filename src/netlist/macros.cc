// Placed macros: hard blocks whose ports connect to signals in the form that a connection names, or to nets of their
// own. A net gets one driver; what a macro would drive a second time is kept apart on a net of its own.
#include "netlist/netlist_builder.h"

namespace cubenet {

namespace {

// A net by its spelled name: nothing declares it, or no equation makes it.
NetIndex plain_net(NetlistBuilder &builder, const std::string &name) {
  if (name == "GND" || name == "VCC") return rail(builder.netlist, name == "VCC");
  const auto [at, is_new] = builder.plain_nets.try_emplace(name, kNone);
  if (is_new) {
    builder.netlist.own_names.push_back(name);
    at->second = add_net(builder.netlist, {builder.netlist.own_names.back(), ""}, NetKind::INTERNAL);
    builder.netlist.statements.push_back(at->second);
  }
  return at->second;
}

ExtensionCode connection_code(const MacroPin &pin) { return extension_code(upper_case(pin.connection->pin_part)); }

// An output that is meant for the signal as a whole.
bool is_target(const MacroPin &pin) {
  const ExtensionCode code = connection_code(pin);
  return pin.is_output && (code == EXT_NONE || code == EXT_PIN);
}

NetIndex find_own_net(const SignalMapper &mapper, std::string_view suffix) {
  for (const auto &[known, net] : mapper.nets)
    if (known == suffix) return net;
  return kNone;
}

NetIndex driven_net(NetlistBuilder &builder, SignalMapper &mapper, const MacroPin &pin, const MacroPin *driver) {
  const bool to_pin = is_pin(mapper.design, mapper.signal);
  if (&pin == driver) return net_of(mapper, to_pin ? "_H" : has(mapper, EXT_OE) ? "_D" : "");
  const std::string suffix = is_target(pin) ? "_H" : netlist_name("", upper_case(pin.connection->pin_part));
  const bool is_taken = find_own_net(mapper, suffix) != kNone;
  return plain_net(builder, std::string(mapper.base).append(suffix).append(is_taken ? "_H" : ""));
}

NetIndex reading_net(NetlistBuilder &builder, const SignalMapper &mapper, const ReadNets &reads, const MacroPin &pin) {
  const NetIndex net = read_net(reads, connection_code(pin));
  if (net != kNone) return net;
  const std::string suffix = netlist_name("", upper_case(pin.connection->pin_part));
  const NetIndex own = find_own_net(mapper, suffix);
  return own != kNone ? own : plain_net(builder, std::string(mapper.base).append(suffix));
}

// Connections that name no declared signal, and outputs on a net that another macro drives already.
void connect_plain_macro_pins(NetlistBuilder &builder) {
  std::vector<bool> driven(builder.netlist.nets.size());
  const auto is_taken = [&](NetIndex net) {
    return builder.netlist.nets[net].kind == NetKind::RAIL || (net < driven.size() && driven[net]);
  };
  for (MacroPin &pin : builder.macro_pins) {
    std::string name = netlist_name(pin.connection->name, upper_case(pin.connection->pin_part));
    if (pin.net == kNone) pin.net = plain_net(builder, name);
    if (!pin.is_output) continue;
    while (is_taken(pin.net)) pin.net = plain_net(builder, name.append("_H"));
    driven.resize(builder.netlist.nets.size());
    driven[pin.net] = true;
  }
}

} // namespace

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
    pin.net = pin.is_output ? driven_net(builder, mapper, pin, driver) : reading_net(builder, mapper, reads, pin);
  });
}

void add_macros(NetlistBuilder &builder) {
  connect_plain_macro_pins(builder);
  const MacroPin *next = builder.macro_pins.data();
  for (const Instance &instance : builder.design.instances) {
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
