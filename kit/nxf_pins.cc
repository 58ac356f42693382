// Symbols of one primitive mostly have the same pins: each line is first held against what stood there in the last
// such symbol, and only its net is new. A net with many readers is found by its name's bytes alone, and the net of an
// output is mostly the one behind the last driven one; the other nets are looked up later, many together.
#include "kit/nxf_pins.h"

#include <algorithm>
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
[[gnu::always_inline]] inline const char *end_of_item(const char *item, const Sought &instance, const PinPattern &pin) {
  if (!instance.stands_at(item)) return nullptr;
  item += instance.name.size();
  if ((load_bytes(item) & pin.dotted_mask) != pin.dotted) return nullptr;
  item += pin.dotted_size;
  return is_word_end(*item) ? item : nullptr;
}

// The name as all pins have it that share it. There can't be more than kMostPinNames.
bool share_name(PinReader &reader, std::string_view name, Pin &pin) {
  std::vector<std::string_view> &names = reader.netlist.pin_names;
  const auto next = static_cast<std::uint32_t>(names.size());
  const std::uint32_t shared =
      add_value(reader.names, hash_name(name), next, [&](std::uint32_t other) { return names[other] == name; });
  pin.name = shared & (kMostPinNames - 1);
  if (shared != next) return true;
  if (next == kMostPinNames) return fail(reader.text, "the symbols have too many names of pins");
  names.push_back(name);
  // An item of a net breaks at its last dot.
  if (reader.joints != nullptr && name.find('.') != std::string_view::npos)
    return fail(reader.text, "the name of a pin has a dot");
  return true;
}

// The statement begins at `start` and stands at its net's name.
void add_pattern(PinReader &reader, const char *start, std::string_view name, Direction direction) {
  const auto size = static_cast<std::size_t>(reader.text.at - start);
  PinPattern pattern{};
  pattern.direction = direction;
  if (size >= 8 && size <= 16) {
    pattern.size = static_cast<std::uint32_t>(size);
    pattern.first = load_bytes(start);
    pattern.rest_mask = kFirstBytes[size - 8];
    pattern.rest = load_bytes(start + 8) & pattern.rest_mask;
    const std::string dotted = '.' + std::string(name) + std::string(8, '\0');
    pattern.dotted_size = static_cast<std::uint32_t>(name.size() + 1);
    pattern.dotted_mask = kFirstBytes[pattern.dotted_size];
    pattern.dotted = load_bytes(dotted.data());
  }
  reader.patterns.push_back(pattern);
}

// The name of a net and the end of the statement, for the pin that netlist.pins gets next. The net is looked up later.
bool take_net_for_later(PinReader &reader, Pin &pin) {
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
  pin.net = kNone;
  reader.joints->lookups.push_back({start,
                                    static_cast<std::uint32_t>(size),
                                    static_cast<std::uint32_t>(hasher.finish(size)),
                                    {static_cast<SymbolIndex>(reader.netlist.symbols.size()),
                                     static_cast<std::uint32_t>(reader.netlist.pins.size())}});
  return end_statement(text, "PIN");
}

// The same with the net looked up at once.
bool take_net(PinReader &reader, Pin &pin) {
  std::string_view name;
  if (!take_word(reader.text, name) && name.empty()) return fail(reader.text, "PIN without a net name");
  pin.net = find_net(reader.netlist, name);
  if (pin.net == kNone) reader.strangers.push_back({static_cast<std::uint32_t>(reader.netlist.pins.size()), name});
  return end_statement(reader.text, "PIN");
}

// "\tPIN pin IN|OUT|BIDI net;"
bool take_other_pin(PinReader &reader, const char *start) {
  NxfText &text = reader.text;
  Pin pin;
  std::string_view name;
  Direction direction = Direction::IN;
  if (!take_word(text, name)) return fail(text, "PIN without a name");
  if (!take_direction(text, direction) || !share_name(reader, name, pin)) return false;
  pin.direction = direction;
  if (reader.patterns.size() < reader.netlist.pin_names.size()) add_pattern(reader, start, name, direction);
  if (!(reader.joints != nullptr ? take_net_for_later(reader, pin) : take_net(reader, pin))) return false;
  reader.netlist.pins.push_back(pin);
  return true;
}

// Reads what stands at `at`, the name of a net with many readers and the end of the statement. Returns the place
// behind; nullptr when it is another net.
[[gnu::always_inline]] inline const char *take_busy_net(Joints &joints, const char *at, const char *end, Pin &pin) {
  BusyNets::Name name;
  if (!name.take(at)) return nullptr;
  const BusyNets::Entry &entry = joints.busy_nets.at(name);
  const char *stop = at + name.size;
  if (entry.name.first != name.first || entry.name.rest != name.rest || stop + 2 > end || stop[1] != '\n')
    return nullptr;
  pin.net = entry.net;
  __builtin_prefetch(joints.open_items[pin.net]);
  return stop + 2;
}

// The same for the net that is most likely the next to be driven.
[[gnu::always_inline]] inline const char *take_next_driven(Joints &joints, const char *at, const char *end, Pin &pin) {
  const std::vector<Net> &nets = joints.netlist.nets;
  if (joints.next_driven >= nets.size()) return nullptr;
  const std::string_view name = nets[joints.next_driven].name;
  if (static_cast<std::size_t>(end - at) < name.size() + 2 || !same_bytes(at, name.data(), name.size())) return nullptr;
  at += name.size();
  if (at[0] != ';' || at[1] != '\n') return nullptr;
  pin.net = joints.next_driven++;
  return at + 2;
}

// Reads the pins that the symbol has like the last one of its primitive.
bool take_expected_pins(PinReader &reader, const SymbolKind &kind) {
  Joints &joints = *reader.joints;
  NxfText &text = reader.text;
  std::vector<Pin> &pins = reader.netlist.pins;
  for (std::uint32_t p = kind.first_pin; p < kind.first_pin + kind.pin_count; p++) {
    Pin pin = pins[p];
    const PinPattern &pattern = reader.patterns[pin.name];
    const char *at = text.at;
    if (load_bytes(at) != pattern.first || (load_bytes(at + 8) & pattern.rest_mask) != pattern.rest ||
        pattern.size == 0 || pattern.direction != pin.direction || pin.direction == Direction::BIDI)
      break;
    at += pattern.size;
    __builtin_prefetch(at + kTextAhead);
    const char *const behind = pin.direction == Direction::OUT ? take_next_driven(joints, at, text.end, pin)
                                                               : take_busy_net(joints, at, text.end, pin);
    text.at = behind != nullptr ? behind : at;
    if (behind != nullptr)
      text.line++;
    else if (!take_net_for_later(reader, pin))
      return false;
    pins.push_back(pin);
  }
  return true;
}

// Answers the net with the pin of the symbol that netlist.symbols gets next. False when the net names another one.
[[gnu::always_inline]] inline bool answer(PinReader &reader, const Sought &instance, std::uint32_t p) {
  Joints &joints = *reader.joints;
  const Pin &pin = joints.netlist.pins[p];
  const PinPattern &pattern = reader.patterns[pin.name];
  if (pin.direction != Direction::OUT) {
    const char *&item = joints.open_items[pin.net];
    const char *const stop = end_of_item(item, instance, pattern);
    if (stop != nullptr) go_behind(item, stop);
    return stop != nullptr;
  }
  Net &net = joints.netlist.nets[pin.net];
  if (!net.has_source || net.source.pin != kNone || end_of_item(source_item(net), instance, pattern) == nullptr)
    return false;
  net.source = {static_cast<SymbolIndex>(joints.netlist.symbols.size()), p};
  if (net.name == instance.name) joints.drives_own_name[net.source.symbol] = true;
  return true;
}

// Joins those of the pins just read whose nets are known.
bool join_expected_pins(PinReader &reader, std::string_view instance_name, std::uint32_t first_pin) {
  const std::vector<Pin> &pins = reader.netlist.pins;
  const Sought instance(instance_name);
  for (std::uint32_t p = first_pin; p < pins.size(); p++)
    if (pins[p].net != kNone && !answer(reader, instance, p))
      return fail(reader.text, "the pin is not the next one of its net");
  return true;
}

// The first `alike` pins are known to be those of the kind.
bool is_of_kind(const Netlist &netlist, const SymbolHead &head, std::uint32_t first_pin, std::size_t alike,
                const SymbolKind &kind) {
  const std::size_t pin_count = netlist.pins.size() - first_pin;
  if (head.protect != kind.protect || head.hard != kind.hard || pin_count != kind.pin_count) return false;
  const Pin *pins = netlist.pins.data() + first_pin, *others = netlist.pins.data() + kind.first_pin;
  return std::equal(pins + alike, pins + pin_count, others + alike,
                    [](Pin a, Pin b) { return a.name == b.name && a.direction == b.direction; });
}

const SymbolKind &add_kind(Netlist &netlist, const SymbolHead &head, std::uint32_t first_pin) {
  const auto number = static_cast<std::uint32_t>(netlist.kinds.size());
  SymbolKind &kind = netlist.kinds.emplace_back();
  kind.primitive_text = head.primitive_text;
  kind.number = number;
  kind.protect = head.protect;
  kind.hard = head.hard;
  kind.first_pin = first_pin;
  kind.pin_count = static_cast<std::uint32_t>(netlist.pins.size()) - first_pin;
  if (!kind.hard) kind.primitive = parse_primitive(head.primitive_text, kind.width); // a macro's name may be any
  const PrimitiveRow &row = kPrimitives[kind.primitive];
  if (row.numbered && !row.width_in_name) kind.width = kind.pin_count > 0 ? kind.pin_count - 1 : 0;
  return kind;
}

} // namespace

bool read_pins(PinReader &reader, const SymbolHead &head, const SymbolKind *&last) {
  Netlist &netlist = reader.netlist;
  const auto first_pin = static_cast<std::uint32_t>(netlist.pins.size());
  if (reader.joints != nullptr && last != nullptr &&
      !(take_expected_pins(reader, *last) && join_expected_pins(reader, head.instance, first_pin)))
    return false;
  const std::size_t alike = netlist.pins.size() - first_pin;
  for (const char *start = reader.text.at; skip(reader.text, "\tPIN "); start = reader.text.at)
    if (!take_other_pin(reader, start)) return false;
  if (reader.joints != nullptr && netlist.pins.size() > first_pin + alike) reader.joints->may_wait = false;
  if (last == nullptr || !is_of_kind(netlist, head, first_pin, alike, *last))
    last = &add_kind(netlist, head, first_pin);
  return true;
}

} // namespace cubekit
