// A net's items follow the symbols, so in a sound file the pins answer them one after the other, without a lookup of
// symbols. Where they don't, or where a name stands twice, everything is joined by name, which finds the faults.
#include "kit/nxf_join.h"

#include <algorithm>
#include <string>

#include "kit/words.h"

namespace cubekit {

namespace {

void add_fault(Netlist &netlist, std::size_t line, std::string text) {
  netlist.faults.push_back({line, std::move(text)});
}

void index_symbols(Joints &joints) {
  Netlist &netlist = joints.netlist;
  reserve(netlist.symbols_by_instance, netlist.symbols.size());
  for (SymbolIndex i = 0; i < netlist.symbols.size(); i++) {
    const Symbol &symbol = netlist.symbols[i];
    const SymbolIndex first =
        add_value(netlist.symbols_by_instance, hash_name(symbol.instance), i,
                  [&](SymbolIndex other) { return netlist.symbols[other].instance == symbol.instance; });
    if (first != i) {
      add_fault(netlist, symbol.line, "two symbols are named " + quoted(symbol.instance));
      joints.in_order = false;
    }
    if (symbol.primitive != kMacro || symbol.pin_count <= kFewPins) continue;
    NameIndex &ports = netlist.large_macros[i];
    for (std::uint32_t p = symbol.first_pin; p < symbol.first_pin + symbol.pin_count; p++)
      if (add_name(ports, netlist.pins[p].name, p) != p) joints.in_order = false;
  }
}

void index_external_pins(Netlist &netlist) {
  for (std::uint32_t i = 0; i < netlist.external_pins.size(); i++) {
    ExternalPin &pin = netlist.external_pins[i];
    if (add_name(netlist.external_by_pin, pin.pin, i) != i)
      add_fault(netlist, pin.line, "pin " + quoted(pin.pin) + " has two XPIN lines");
    pin.net = find_net(netlist, pin.net_name);
    if (pin.net == kNone)
      add_fault(netlist, pin.line, "there is no net " + quoted(pin.net_name) + " for pin " + quoted(pin.pin));
  }
}

// Where the item ends, when it names the pin; nullptr otherwise.
const char *end_of_item(const char *item, std::string_view instance, std::string_view pin) {
  if (!same_bytes(item, instance.data(), instance.size())) return nullptr;
  item += instance.size();
  if (*item++ != '.' || !same_bytes(item, pin.data(), pin.size())) return nullptr;
  item += pin.size();
  return is_word_end(*item) ? item : nullptr;
}

// Whether find_pin finds each pin of the symbol under its name.
bool has_plain_pins(const Netlist &netlist, const Symbol &symbol) {
  const Pin *pins = netlist.pins.data() + symbol.first_pin;
  std::uint32_t numbered = 0;
  const std::size_t most = std::min<std::size_t>(symbol.pin_count, netlist.input_names.size());
  while (numbered < most && pins[numbered].name.text == netlist.input_names[numbered].text) numbered++;
  if (symbol.primitive == kMacro && symbol.pin_count > kFewPins) return true; // all of them are indexed
  if (symbol.pin_count - numbered > kFewPins) return false;
  for (std::uint32_t p = numbered; p < symbol.pin_count; p++) {
    const std::string_view name = pins[p].name;
    if (name[0] == 'A' && name.size() > 1 && name[1] >= '0' && name[1] <= '9') return false;
    for (std::uint32_t before = numbered; before < p; before++)
      if (pins[before].name.text == pins[p].name.text) return false;
  }
  return true;
}

bool are_all_answered(const Joints &joints) {
  for (NetIndex i = 0; i < joints.open_nets.size(); i++) {
    const Net &net = joints.netlist.nets[i];
    if (joints.open_nets[i].source != nullptr ||
        joints.open_nets[i].next_destination != net.first_destination + net.destination_count)
      return false;
  }
  return std::all_of(joints.netlist.symbols.begin(), joints.netlist.symbols.end(),
                     [&](const Symbol &symbol) { return has_plain_pins(joints.netlist, symbol); });
}

struct SlowJoin {
  Joints &joints;
  std::vector<NetIndex> named_nets; // what the pins say
};

std::string_view net_name_of(const SlowJoin &join, std::uint32_t pin) {
  if (join.named_nets[pin] != kNone) return join.joints.netlist.nets[join.named_nets[pin]].name;
  const auto &strangers = join.joints.strangers; // in the order of the pins
  return std::lower_bound(strangers.begin(), strangers.end(), std::pair{pin, std::string_view()})->second;
}

// Joins one item of a net with the pin it names; the pin must name the net in turn.
EndPoint join_item(SlowJoin &join, NetIndex net_index, std::string_view item) {
  Netlist &netlist = join.joints.netlist;
  const Net &net = netlist.nets[net_index];
  const auto fault = [&](const std::string &why) {
    add_fault(netlist, net.line, "net " + quoted(net.name) + " names " + quoted(item) + ", " + why);
    return EndPoint{};
  };
  const std::size_t dot = item.rfind('.');
  if (dot == std::string_view::npos) return fault("which is not an instance and a pin");
  const SymbolIndex symbol = find_symbol(netlist, item.substr(0, dot));
  if (symbol == kNone) return fault("but there is no such symbol");
  const std::uint32_t pin_index = find_pin(netlist, symbol, item.substr(dot + 1));
  if (pin_index == kNone) return fault("but the symbol has no such pin");
  Pin &pin = netlist.pins[pin_index];
  if (net_name_of(join, pin_index) != net.name)
    return fault("but that pin is on net " + quoted(net_name_of(join, pin_index)));
  if (pin.net != kNone) return fault("which a net has named already");
  pin.net = net_index;
  return {symbol, pin_index};
}

std::string_view take_item(const char *&at) {
  const char *start = at;
  at = find_word_end(at);
  return {start, static_cast<std::size_t>(at - start)};
}

void join_by_name(Joints &joints) {
  Netlist &netlist = joints.netlist;
  SlowJoin join{joints, {}};
  join.named_nets.reserve(netlist.pins.size());
  for (Pin &pin : netlist.pins) join.named_nets.push_back(std::exchange(pin.net, kNone));
  for (NetIndex i = 0; i < netlist.nets.size(); i++) {
    Net &net = netlist.nets[i];
    net.in_order = false;
    const char *at = net.name.data() + net.name.size() + (net.external ? std::string_view(" EXT").size() : 0);
    if (net.has_source) {
      at += std::string_view(" SRC ").size();
      net.source = join_item(join, i, take_item(at));
    }
    at += std::string_view(" DST").size();
    for (std::uint32_t d = net.first_destination; d < net.first_destination + net.destination_count; d++)
      netlist.destinations[d] = join_item(join, i, take_item(++at));
  }
  for (const Symbol &symbol : netlist.symbols) {
    for (std::uint32_t p = symbol.first_pin; p < symbol.first_pin + symbol.pin_count; p++) {
      if (netlist.pins[p].net != kNone) continue;
      add_fault(netlist, symbol.line,
                "pin " + quoted(netlist.pins[p].name) + " of " + quoted(symbol.instance) + " is on net " +
                    quoted(net_name_of(join, p)) + ", which doesn't name it");
    }
  }
}

} // namespace

void index_nets(Joints &joints) {
  Netlist &netlist = joints.netlist;
  reserve(netlist.nets_by_name, netlist.nets.size());
  for (NetIndex i = 0; i < netlist.nets.size(); i++) {
    const Net &net = netlist.nets[i];
    const NetIndex first = add_value(netlist.nets_by_name, hash_name(net.name), i,
                                     [&](NetIndex other) { return netlist.nets[other].name == net.name; });
    if (first == i) continue;
    add_fault(netlist, net.line, "net " + quoted(net.name) + " has two statements");
    joints.in_order = false;
  }
}

void join_pin(Joints &joints, SymbolIndex symbol, std::string_view instance, std::uint32_t pin_index) {
  Netlist &netlist = joints.netlist;
  const Pin &pin = netlist.pins[pin_index];
  if (!joints.in_order) return;
  Joints::OpenNet &open = joints.open_nets[pin.net];
  const auto answers_source = [&] {
    if (open.source == nullptr || end_of_item(open.source, instance, pin.name) == nullptr) return false;
    netlist.nets[pin.net].source = {symbol, pin_index};
    open.source = nullptr;
    return true;
  };
  const auto answers_destination = [&] {
    const char *end = end_of_item(open.destination, instance, pin.name);
    if (end == nullptr) return false;
    netlist.destinations[open.next_destination++] = {symbol, pin_index};
    open.destination = *end == ' ' ? end + 1 : end;
    __builtin_prefetch(open.destination + 64);
    if (pin.direction == Direction::OUT) netlist.nets[pin.net].in_order = false;
    return true;
  };
  const bool answered = pin.direction == Direction::OUT ? answers_source() || answers_destination()
                                                        : answers_destination() || answers_source();
  joints.in_order = answered;
}

void finish_joints(Joints &joints) {
  index_symbols(joints);
  index_external_pins(joints.netlist);
  if (!joints.in_order || !are_all_answered(joints)) join_by_name(joints);
}

} // namespace cubekit
