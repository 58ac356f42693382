// Symbols of one primitive mostly have the same pins: each line is first held against what stood there in the last
// such symbol, and only its net is new. A net with many readers is found by its name's bytes alone, and the net of an
// output is mostly the one behind the last driven one; the other nets are looked up later, many together.
#include "kit/netlist/nxf_pins.h"

#include <algorithm>
#include <bit>
#include <span>
#include <string>

#include "util/text_hash.h"

namespace cubekit {

namespace {

// How far ahead the text is asked of the memory. The lists of many nets are read beside it, more than the processor
// looks ahead in by itself.
constexpr std::size_t kTextAhead = 768;

// A name that many places of the text are held against.
struct Sought {
  std::string_view name;
  std::uint64_t first = 0, last = 0; // its first and last eight bytes

  explicit Sought(std::string_view text) : name(text), first(load_bytes(text.data())) {
    if (name.size() < 8)
      first &= kFirstBytes[name.size()];
    else
      last = load_bytes(name.data() + name.size() - 8);
  }
  // The text must go on that far.
  [[gnu::always_inline]] bool stands_at(const char *at) const {
    const std::size_t size = name.size();
    if (size < 8) return (load_bytes(at) & kFirstBytes[size]) == first;
    return load_bytes(at) == first && load_bytes(at + size - 8) == last &&
           (size <= 16 || same_bytes(at + 8, name.data() + 8, size - 16));
  }
};

// Where the item ends, when it names the pin of the instance; nullptr otherwise.
[[gnu::always_inline]] inline const char *end_of_item(const char *item, const Sought &instance, const PortName &port) {
  if (!instance.stands_at(item)) return nullptr;
  item += instance.name.size();
  if ((load_bytes(item) & port.dotted_mask) != port.dotted) return nullptr;
  item += port.dotted_size;
  return is_word_end(*item) ? item : nullptr;
}

// The statement begins at `start` and stands at its net's name.
PortName make_name(const char *start, const char *net_name, std::string_view name, Direction direction) {
  const auto size = static_cast<std::size_t>(net_name - start); // of "\tPIN X IN " at least
  PortName result{};
  result.name = name;
  result.direction = direction;
  if (size > 16) return result;
  result.size = static_cast<std::uint32_t>(size);
  result.first = load_bytes(start);
  result.rest_mask = kFirstBytes[size - 8];
  result.rest = load_bytes(start + 8) & result.rest_mask;
  const std::string dotted = '.' + std::string(name) + std::string(8, '\0');
  result.dotted_size = static_cast<std::uint32_t>(name.size() + 1);
  result.dotted_mask = kFirstBytes[result.dotted_size];
  result.dotted = load_bytes(dotted.data());
  return result;
}

// The net of that hash that stands next behind the last one read, which it becomes; kNone when there is none so near.
NetIndex find_near(Joints &joints, std::uint32_t hash) {
  constexpr std::size_t kStep = 16;
  static_assert(kNear % kStep == 0);
  if (joints.last_read == kNone) return kNone;
  const std::size_t first = std::size_t{joints.last_read} + 1;
  const std::uint32_t *const hashes = joints.hashes.data() + first;
  for (std::size_t i = 0; i < kNear; i += kStep) {
    std::uint32_t met = 0; // so many are looked at at once
    for (std::size_t k = 0; k < kStep; k++) met |= std::uint32_t{hashes[i + k] == hash} << k;
    if (met == 0) continue;
    const std::size_t net = first + i + static_cast<std::size_t>(std::countr_zero(met));
    joints.last_read = net < joints.netlist.nets.size() ? static_cast<NetIndex>(net) : kNone;
    return joints.last_read;
  }
  return joints.last_read = kNone;
}

// The name of a net and the end of the statement, for the pin that netlist.pin_nets gets next. The net is looked up
// later.
bool take_net_for_later(PinReader &reader, Direction direction) {
  NxfText &text = reader.text;
  const char *const start = text.at;
  const char *at = start;
  cubenet::TextHasher hasher;
  std::size_t last = 0;
  for (;; at += 8) {
    const std::uint64_t bytes = load_bytes(at);
    last = find_word_end(bytes);
    hasher.add(bytes & kFirstBytes[last]);
    if (last < 8) break;
  }
  text.at = at + last;
  const auto size = static_cast<std::size_t>(text.at - start);
  if (size == 0) return fail(text, "PIN without a net name");
  const auto hash = static_cast<std::uint32_t>(hasher.finish(size));
  reader.joints->lookups.push_back({start,
                                    static_cast<std::uint32_t>(size),
                                    hash,
                                    {static_cast<SymbolIndex>(reader.netlist.symbols.size()),
                                     static_cast<std::uint32_t>(reader.netlist.pin_nets.size())},
                                    direction == Direction::OUT ? kNone : find_near(*reader.joints, hash)});
  return end_statement(text, "PIN");
}

// The same with the net looked up at once.
bool take_net(PinReader &reader, NetIndex &net) {
  std::string_view name;
  if (!take_word(reader.text, name) && name.empty()) return fail(reader.text, "PIN without a net name");
  net = find_net(reader.netlist, name);
  if (net == kNone) reader.strangers.push_back({static_cast<std::uint32_t>(reader.netlist.pin_nets.size()), name});
  return end_statement(reader.text, "PIN");
}

// "\tPIN pin IN|OUT|BIDI net;"
bool take_other_pin(PinReader &reader, const char *start) {
  NxfText &text = reader.text;
  Port port;
  if (!take_word(text, port.name)) return fail(text, "PIN without a name");
  if (!take_direction(text, port.direction)) return false;
  const auto next = static_cast<std::uint32_t>(reader.names.size());
  const auto has_name = [&](std::uint32_t other) { return reader.names[other].name == port.name; };
  port.name_number = add_value(reader.names_by_text, hash_name(port.name), next, has_name);
  if (port.name_number == next) reader.names.push_back(make_name(start, text.at, port.name, port.direction));
  reader.others.push_back(port);
  NetIndex net = kNone;
  if (!(reader.joints != nullptr ? take_net_for_later(reader, port.direction) : take_net(reader, net))) return false;
  reader.netlist.pin_nets.push_back(net);
  return true;
}

// Reads what stands at `at`, the name of a net with many readers and the end of the statement. Returns the place
// behind; nullptr when it is another net.
[[gnu::always_inline]] inline const char *take_busy_net(Joints &joints, const char *at, const char *end,
                                                        NetIndex &net) {
  BusyNets::Name name;
  if (!name.take(at)) return nullptr;
  const BusyNets::Entry &entry = joints.busy_nets.at(name);
  const char *stop = at + name.size;
  if (entry.name.first != name.first || entry.name.rest != name.rest || stop + 2 > end || stop[1] != '\n')
    return nullptr;
  net = entry.net;
  __builtin_prefetch(joints.open_items[net]);
  return stop + 2;
}

// The same for the net that is most likely the next to be driven.
[[gnu::always_inline]] inline const char *take_next_driven(Joints &joints, const char *at, const char *end,
                                                           NetIndex &net) {
  const std::vector<Net> &nets = joints.netlist.nets;
  if (joints.next_driven >= nets.size()) return nullptr;
  const std::string_view name = nets[joints.next_driven].name;
  if (static_cast<std::size_t>(end - at) < name.size() + 2 || !same_bytes(at, name.data(), name.size())) return nullptr;
  at += name.size();
  if (at[0] != ';' || at[1] != '\n') return nullptr;
  net = joints.next_driven++;
  return at + 2;
}

// Reads the pins that the symbol has like the last one of its primitive.
bool take_expected_pins(PinReader &reader, const SymbolKind &kind) {
  NxfText &text = reader.text;
  for (const Port &port : kind.ports) {
    const PortName &name = reader.names[port.name_number];
    const char *at = text.at;
    if (load_bytes(at) != name.first || (load_bytes(at + 8) & name.rest_mask) != name.rest || name.size == 0 ||
        name.direction != port.direction)
      break;
    at += name.size;
    __builtin_prefetch(at + kTextAhead);
    NetIndex net = kNone;
    const char *const behind = port.direction == Direction::OUT ? take_next_driven(*reader.joints, at, text.end, net)
                                                                : take_busy_net(*reader.joints, at, text.end, net);
    text.at = behind != nullptr ? behind : at;
    if (behind != nullptr)
      text.line++;
    else if (!take_net_for_later(reader, port.direction))
      return false;
    reader.netlist.pin_nets.push_back(net);
  }
  return true;
}

// Joins those of the pins just read whose nets are known.
bool join_expected_pins(PinReader &reader, std::string_view instance_name, const SymbolKind &kind,
                        std::uint32_t first_pin) {
  const std::vector<NetIndex> &nets = reader.netlist.pin_nets;
  const Sought instance(instance_name);
  EndPoint pin{static_cast<SymbolIndex>(reader.netlist.symbols.size()), first_pin};
  for (; pin.pin < nets.size(); pin.pin++) {
    const Port &port = kind.ports[pin.pin - first_pin];
    const PortName &name = reader.names[port.name_number];
    const auto find_end = [&](const char *item) { return end_of_item(item, instance, name); };
    const NetIndex net = nets[pin.pin];
    if (net != kNone && !answer_net(*reader.joints, net, pin, instance_name, port.direction, find_end)) return false;
  }
  return true;
}

// Whether the kind has such marks and, behind the `alike` ports that it is known to have, the others.
bool is_of_kind(const SymbolHead &head, std::size_t alike, const std::vector<Port> &others, const SymbolKind &kind) {
  return head.protect == kind.protect && head.hard == kind.hard && kind.ports.size() == alike + others.size() &&
         std::equal(
             others.begin(), others.end(), kind.ports.begin() + static_cast<std::ptrdiff_t>(alike),
             [](const Port &a, const Port &b) { return a.name_number == b.name_number && a.direction == b.direction; });
}

const SymbolKind &add_kind(Netlist &netlist, const SymbolHead &head, std::span<const Port> alike,
                           const std::vector<Port> &others) {
  const auto number = static_cast<std::uint32_t>(netlist.kinds.size());
  SymbolKind &kind = netlist.kinds.emplace_back();
  kind.primitive_text = head.primitive_text;
  kind.number = number;
  kind.protect = head.protect;
  kind.hard = head.hard;
  kind.ports.reserve(alike.size() + others.size());
  kind.ports.assign(alike.begin(), alike.end());
  kind.ports.insert(kind.ports.end(), others.begin(), others.end());
  if (!kind.hard) kind.primitive = parse_primitive(head.primitive_text, kind.width); // a macro's name may be any
  const PrimitiveRow &row = kPrimitives[kind.primitive];
  if (row.numbered && !row.width_in_name)
    kind.width = kind.ports.empty() ? 0 : static_cast<std::uint32_t>(kind.ports.size()) - 1;
  return kind;
}

} // namespace

bool read_pins(PinReader &reader, const SymbolHead &head, const SymbolKind *&last) {
  Netlist &netlist = reader.netlist;
  const auto first_pin = static_cast<std::uint32_t>(netlist.pin_nets.size());
  if (reader.joints != nullptr && last != nullptr &&
      !(take_expected_pins(reader, *last) && join_expected_pins(reader, head.instance, *last, first_pin)))
    return false;
  const std::size_t alike = netlist.pin_nets.size() - first_pin;
  reader.others.clear();
  for (const char *start = reader.text.at; skip(reader.text, "\tPIN "); start = reader.text.at)
    if (!take_other_pin(reader, start)) return false;
  if (reader.joints != nullptr && !reader.others.empty()) reader.joints->may_wait = false;
  if (last == nullptr)
    last = &add_kind(netlist, head, {}, reader.others);
  else if (!is_of_kind(head, alike, reader.others, *last))
    last = &add_kind(netlist, head, std::span(last->ports).first(alike), reader.others);
  return true;
}

} // namespace cubekit
