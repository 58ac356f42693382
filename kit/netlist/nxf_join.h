// Joins the two tellings of an .nxf file: nets name the pins of symbols, and pins name their nets.
//
// In most files the pins, one after the other, are what their nets name next, since nets name them in the order of the
// symbols. Joints join such a file while its pins are read, without a lookup of symbols. join_by_name joins any file,
// item by item, and finds its faults.
#pragma once

#include <bit>
#include <cstdint>
#include <string_view>
#include <vector>

#include "kit/netlist/netlist.h"
#include "kit/util/words.h"

namespace cubekit {

// Nets with many readers, by their names: these are looked up most often.
struct BusyNets {
  // A name of at most fifteen bytes with the mark behind it, filled up with zeros.
  struct Name {
    std::uint64_t first = 0, rest = 0;
    std::size_t size = 0; // without the mark

    // The word that begins there. False when it is longer.
    bool take(const char *text) {
      first = load_bytes(text);
      size = find_word_end(first);
      if (size < 8) {
        first &= kFirstBytes[size + 1];
        return true;
      }
      rest = load_bytes(text + 8);
      const std::size_t more = find_word_end(rest);
      if (more == 8) return false;
      rest &= kFirstBytes[more + 1];
      size += more;
      return true;
    }
  };
  struct Entry {
    Name name;
    NetIndex net = kNone;
  };
  std::vector<Entry> entries{std::vector<Entry>(4096)}; // each name has one place; the last one that came stays

  Entry &at(const Name &name) {
    const std::uint64_t product = (name.first ^ std::rotl(name.rest, 32)) * 0x9E3779B97F4A7C15U;
    return entries[product >> 52];
  }
};

// So many nets behind the last one read are looked at first: the inputs of gates are mostly nets in the nets' order.
constexpr std::size_t kNear = 64;

struct Joints {
  Netlist &netlist;
  // By net, the first item behind DST that no pin has answered yet; at the ';' when all are answered.
  std::vector<const char *> open_items{};

  // Pins whose nets are looked up together: each lookup would wait for memory several times, and together they wait at
  // the same time. A net may be busy only while no pin on it waits here, or its pins would answer out of order.
  struct Lookup {
    const char *name;
    std::uint32_t size;
    std::uint32_t hash;
    EndPoint end;
    NetIndex net; // of that hash, most likely of that name; kNone: not found yet
  };
  std::vector<Lookup> lookups{};
  bool may_wait = true; // false: a pin that waits may be on a busy net
  BusyNets busy_nets{};
  std::vector<bool> drives_own_name{}; // by symbol: it is the source of the net of its name
  std::vector<std::uint32_t> hashes{}; // of the nets' names; some more stand behind them
  NetIndex last_read = kNone;          // most likely the net of the last input that waited
  NetIndex next_driven = 0;            // behind the last driven one: symbols drive nets mostly in the nets' order
};

// Where the items of a net begin: at " SRC", " DST" or the ';'.
inline const char *items_of(const Net &net) {
  return net.name.data() + net.name.size() + (net.external ? std::string_view(" EXT").size() : 0);
}
inline const char *source_item(const Net &net) { return items_of(net) + std::string_view(" SRC ").size(); }

// A pin has answered the item, which ends there.
inline void go_behind(const char *&item, const char *end) {
  item = *end == ' ' ? end + 1 : end;
  // Until the next pin on the net comes, this is gone from where the processor keeps it.
  __builtin_prefetch(item + 64);
}

// Answers what the net names next, or its source for an output, with a pin of the instance: an item of the text.
// `find_end` gives the end of an item that names the pin, and null for any other. False when the net names another pin.
template <typename FindEnd>
[[gnu::always_inline]] inline bool answer_net(Joints &joints, NetIndex net_index, EndPoint pin,
                                              std::string_view instance, Direction direction, const FindEnd &find_end) {
  if (direction != Direction::OUT) {
    const char *&item = joints.open_items[net_index];
    const char *const end = find_end(item);
    if (end != nullptr) go_behind(item, end);
    return end != nullptr;
  }
  Net &net = joints.netlist.nets[net_index];
  if (!net.has_source || net.source.pin != kNone || find_end(source_item(net)) == nullptr) return false;
  net.source = pin;
  if (net.name == instance) joints.drives_own_name[pin.symbol] = true;
  return true;
}

// Before each symbol.
inline void add_symbol(Joints &joints) { joints.drives_own_name.push_back(false); }

// These give false when the file is not in order.

// Once all nets are known, before their pins are joined.
[[nodiscard]] bool index_nets(Joints &joints);

// Joins the waiting pins. Their symbols must be known, and the symbols' names must stand in the text behind all nets.
[[nodiscard]] bool join_lookups(Joints &joints);

// Behind each symbol: the same when it is time.
[[nodiscard]] inline bool join_some(Joints &joints) {
  constexpr std::size_t kMost = 64; // enough to wait for memory, few enough to stay in the nearest of it
  return (joints.may_wait && joints.lookups.size() < kMost) || join_lookups(joints);
}

// Once all pins are read. Faults of the device pins go to netlist.faults.
[[nodiscard]] bool finish_joints(Joints &joints);

// A pin that names a net that there is not.
struct Stranger {
  std::uint32_t pin; // into Netlist::pin_nets
  std::string_view net_name;
};

// Once all nets are known, before join_by_name.
void index_nets_by_name(Netlist &netlist);

// Joins everything, once all symbols are known and each pin has the net that it names. The strangers stand in the order
// of the pins. Faults go to netlist.faults.
void join_by_name(Netlist &netlist, const std::vector<Stranger> &strangers);

} // namespace cubekit
