// Joins while pins are read, as long as they answer what their nets name next and no name stands twice; then the same
// by name, which finds the faults.
#include "kit/netlist/nxf_join.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>

#include "kit/util/words.h"

namespace cubekit {

namespace {

void add_fault(Netlist &netlist, std::size_t line, std::string text) {
  netlist.faults.push_back({line, std::move(text)});
}

// False when a macro has two pins of one name.
bool index_ports(Netlist &netlist) {
  bool unique = true;
  for (SymbolKind &kind : netlist.kinds) {
    if (kind.primitive != kMacro || kind.ports.size() <= kFewPins) continue;
    for (std::uint32_t place = 0; place < kind.ports.size(); place++)
      unique &= add_name(kind.ports_by_name, kind.ports[place].name, place) == place;
  }
  return unique;
}

template <typename TellAgain, typename KeepHash = KeepNoHash>
void index_net_names(Netlist &netlist, const TellAgain &tell_again, const KeepHash &keep_hash = {}) {
  add_all(
      netlist.nets_by_name, netlist.nets.size(), [](std::size_t i) { return static_cast<NetIndex>(i); },
      [&](NetIndex net) { return netlist.nets[net].name; }, tell_again, keep_hash);
}

void index_symbols(Netlist &netlist) {
  const auto name_of_symbol = [&](SymbolIndex symbol) { return netlist.symbols[symbol].instance; };
  add_all(
      netlist.symbols_by_instance, netlist.symbols.size(), [](std::size_t i) { return static_cast<SymbolIndex>(i); },
      name_of_symbol,
      [&](SymbolIndex symbol) {
        add_fault(netlist, netlist.symbols[symbol].line, "two symbols are named " + quoted(name_of_symbol(symbol)));
      });
}

// Those that no net leads to, as it does to nearly all in gate form. False when a name stands twice.
bool index_other_symbols(const Joints &joints) {
  Netlist &netlist = joints.netlist;
  std::vector<SymbolIndex> others;
  bool unique = true;
  const auto name_of_symbol = [&](SymbolIndex symbol) { return netlist.symbols[symbol].instance; };
  for (SymbolIndex s = 0; s < netlist.symbols.size(); s++) {
    if (joints.drives_own_name[s]) continue;
    unique = unique && find_symbol(netlist, name_of_symbol(s)) == kNone;
    others.push_back(s);
  }
  add_all(
      netlist.symbols_by_instance, others.size(), [&](std::size_t i) { return others[i]; }, name_of_symbol,
      [&](SymbolIndex) { unique = false; });
  return unique;
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

// Whether find_pin finds each pin of such a symbol under its name.
bool has_plain_ports(const SymbolKind &kind) {
  const std::vector<Port> &ports = kind.ports;
  // An item breaks at its last dot.
  const auto has_dot = [](const Port &port) { return port.name.find('.') != std::string_view::npos; };
  if (std::any_of(ports.begin(), ports.end(), has_dot)) return false;
  if (kind.primitive == kMacro && ports.size() > kFewPins) return true; // all of them are indexed
  std::uint32_t numbered = 0;
  while (numbered < ports.size() && is_numbered(ports[numbered].name, numbered)) numbered++;
  if (ports.size() - numbered > kFewPins) return false;
  for (std::size_t p = numbered; p < ports.size(); p++) {
    const std::string_view name = ports[p].name;
    if (name[0] == 'A' && name.size() > 1 && name[1] >= '0' && name[1] <= '9') return false;
    for (std::size_t before = numbered; before < p; before++)
      if (ports[before].name == name) return false;
  }
  return true;
}

bool are_all_answered(const Joints &joints) {
  const auto is_driven = [](const Net &net) { return !net.has_source || net.source.pin != kNone; };
  const auto is_answered = [](const char *item) { return *item == ';'; };
  return std::all_of(joints.netlist.nets.begin(), joints.netlist.nets.end(), is_driven) &&
         std::all_of(joints.open_items.begin(), joints.open_items.end(), is_answered) &&
         std::all_of(joints.netlist.kinds.begin(), joints.netlist.kinds.end(), has_plain_ports);
}

struct JoinByName {
  Netlist &netlist;
  const std::vector<Stranger> &strangers;
  std::vector<NetIndex> named_nets{}; // what the pins say
};

std::string_view net_name_of(const JoinByName &join, std::uint32_t pin) {
  if (join.named_nets[pin] != kNone) return join.netlist.nets[join.named_nets[pin]].name;
  const auto stands_before = [](const Stranger &stranger, std::uint32_t other) { return stranger.pin < other; };
  return std::lower_bound(join.strangers.begin(), join.strangers.end(), pin, stands_before)->net_name;
}

// Joins one item of a net with the pin it names; the pin must name the net in turn, or the first one of that name.
EndPoint join_item(JoinByName &join, NetIndex net_index, NetIndex first_of_name, std::string_view item) {
  Netlist &netlist = join.netlist;
  const Net &net = netlist.nets[net_index];
  const auto fault = [&](const std::string &why) {
    add_fault(netlist, net.line, "net " + quoted(net.name) + " names " + quoted(item) + ", " + why);
    return EndPoint{};
  };
  const std::size_t dot = item.rfind('.');
  if (dot == std::string_view::npos) return fault("which is not an instance and a pin");
  const std::string_view instance = item.substr(0, dot);
  const SymbolIndex symbol = find_value(netlist.symbols_by_instance, hash_name(instance),
                                        [&](SymbolIndex other) { return netlist.symbols[other].instance == instance; });
  if (symbol == kNone) return fault("but there is no such symbol");
  const std::uint32_t pin_index = find_pin(netlist, symbol, item.substr(dot + 1));
  if (pin_index == kNone) return fault("but the symbol has no such pin");
  if (join.named_nets[pin_index] != first_of_name)
    return fault("but that pin is on net " + quoted(net_name_of(join, pin_index)));
  NetIndex &joined = netlist.pin_nets[pin_index];
  if (joined != kNone) return fault("which a net has named already");
  joined = net_index;
  return {symbol, pin_index};
}

// An item of a net whose statement ends before `limit`, whatever has become of a mapped file since it was parsed.
std::string_view take_item(const char *&at, const char *limit) {
  const char *start = at;
  while (at < limit && !is_word_end(*at)) at++;
  return {start, static_cast<std::size_t>(at - start)};
}

// What are most likely the nets of all waiting names: their hashes are the same. Each loop asks for the memory that the
// next one looks at.
void find_nets(Joints &joints) {
  const Netlist &netlist = joints.netlist;
  const HashIndex &index = netlist.nets_by_name;
  if (index.slots.empty()) return;
  for (const Joints::Lookup &lookup : joints.lookups)
    if (lookup.net == kNone) prefetch_slot(index, lookup.hash);
  for (Joints::Lookup &lookup : joints.lookups) {
    if (lookup.net == kNone) lookup.net = find_value(index, lookup.hash, [](NetIndex) { return true; });
    if (lookup.net == kNone) continue;
    __builtin_prefetch(&netlist.nets[lookup.net]);
    __builtin_prefetch(&joints.open_items[lookup.net]);
  }
  for (const Joints::Lookup &lookup : joints.lookups) {
    if (lookup.net == kNone) continue;
    __builtin_prefetch(netlist.nets[lookup.net].name.data());
    __builtin_prefetch(joints.open_items[lookup.net]);
  }
}

// The net of that name, where find_nets has found one that may be it.
NetIndex settle(const Netlist &netlist, const Joints::Lookup &lookup) {
  const auto has_name = [&](NetIndex net) {
    const std::string_view name = netlist.nets[net].name;
    return name.size() == lookup.size && same_bytes(name.data(), lookup.name, lookup.size);
  };
  if (lookup.net == kNone || has_name(lookup.net)) return lookup.net;
  return find_value(netlist.nets_by_name, lookup.hash, has_name);
}

// Whether what is left of the net's items is long: pins on it will come often.
bool has_many_readers(const Netlist &netlist, const char *item) {
  constexpr std::size_t kManyBytes = 64;
  const auto left = static_cast<std::size_t>(netlist.text.data() + netlist.text.size() - item);
  return left > kManyBytes && std::memchr(item, ';', kManyBytes) == nullptr;
}

} // namespace

bool index_nets(Joints &joints) {
  bool unique = true;
  joints.hashes.reserve(joints.netlist.nets.size() + kNear);
  index_net_names(
      joints.netlist, [&](NetIndex) { unique = false; }, [&](std::uint32_t hash) { joints.hashes.push_back(hash); });
  joints.hashes.resize(joints.netlist.nets.size() + kNear);
  return unique;
}

bool join_lookups(Joints &joints) {
  Netlist &netlist = joints.netlist;
  find_nets(joints);
  for (const Joints::Lookup &lookup : joints.lookups) {
    const NetIndex net = settle(netlist, lookup);
    const std::string_view instance = netlist.symbols[lookup.end.symbol].instance;
    const Port &port = port_of(netlist, lookup.end);
    const auto find_end = [&](const char *item) { return end_of_item(item, instance, port.name); };
    if (net == kNone || !answer_net(joints, net, lookup.end, instance, port.direction, find_end)) return false;
    netlist.pin_nets[lookup.end.pin] = net;
    if (port.direction == Direction::OUT)
      joints.next_driven = net + 1;
    else
      joints.last_read = net;
    BusyNets::Name name;
    if (has_many_readers(netlist, joints.open_items[net]) && name.take(lookup.name))
      joints.busy_nets.at(name) = {name, net};
  }
  joints.lookups.clear();
  joints.may_wait = true;
  return true;
}

bool finish_joints(Joints &joints) {
  Netlist &netlist = joints.netlist;
  netlist.in_order =
      join_lookups(joints) && are_all_answered(joints) && index_ports(netlist) && index_other_symbols(joints);
  if (netlist.in_order) index_external_pins(netlist);
  return netlist.in_order;
}

void index_nets_by_name(Netlist &netlist) {
  index_net_names(netlist, [&](NetIndex net) {
    add_fault(netlist, netlist.nets[net].line, "net " + quoted(netlist.nets[net].name) + " has two statements");
  });
}

void join_by_name(Netlist &netlist, const std::vector<Stranger> &strangers) {
  index_ports(netlist);
  index_symbols(netlist);
  index_external_pins(netlist);
  JoinByName join{netlist, strangers};
  const char *const end =
      netlist.symbols.empty() ? netlist.text.data() + netlist.text.size() : netlist.symbols[0].instance.data();
  if (!netlist.nets.empty())
    netlist.destinations.resize(netlist.nets.back().first_destination + netlist.nets.back().destination_count);
  join.named_nets = std::exchange(netlist.pin_nets, std::vector<NetIndex>(netlist.pin_nets.size(), kNone));
  for (NetIndex i = 0; i < netlist.nets.size(); i++) {
    Net &net = netlist.nets[i];
    const char *const limit = i + 1 < netlist.nets.size() ? netlist.nets[i + 1].name.data() : end;
    const NetIndex first_of_name = find_net(netlist, net.name);
    const char *at = items_of(net);
    if (net.has_source) {
      at = source_item(net);
      net.source = join_item(join, i, first_of_name, take_item(at, limit));
    }
    at += std::string_view(" DST").size();
    for (std::uint32_t d = net.first_destination; d < net.first_destination + net.destination_count && at < limit; d++)
      netlist.destinations[d] = join_item(join, i, first_of_name, take_item(++at, limit));
  }
  for (const Symbol &symbol : netlist.symbols) {
    for (std::uint32_t place = 0; place < pin_count(symbol); place++) {
      const std::uint32_t p = symbol.first_pin + place;
      if (netlist.pin_nets[p] != kNone) continue;
      add_fault(netlist, symbol.line,
                "pin " + quoted(symbol.kind->ports[place].name) + " of " + quoted(symbol.instance) + " is on net " +
                    quoted(net_name_of(join, p)) + ", which doesn't name it");
    }
  }
}

} // namespace cubekit
