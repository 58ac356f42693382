// Joins the two tellings of an .nxf file: nets name the pins of symbols, and pins name their nets.
#pragma once

#include <bit>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

#include "kit/netlist.h"
#include "kit/words.h"

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

struct Joints {
  Netlist &netlist;
  // So far each pin was the next that its net names. Then that is all there is to join; otherwise all is joined anew,
  // item by item, for the faults.
  bool in_order = true;

  // By net, the first item behind DST that no pin has answered yet; at the ';' when all are answered.
  std::vector<const char *> open_items{};

  // The net names of the last pins, whose nets are looked up together: each lookup would wait for memory several times,
  // and together they wait at the same time.
  struct Lookup {
    const char *name;
    std::uint32_t size;
    std::uint32_t hash;
    std::uint32_t pin;
    NetIndex net = kNone;
  };
  std::vector<Lookup> lookups{};
  SymbolIndex first_symbol = 0; // whose pins are not joined yet
  BusyNets busy_nets{};
  std::vector<bool> drives_own_name{}; // by symbol: it is the source of the net of its name
  NetIndex next_driven = 0;            // behind the last driven one: symbols drive nets mostly in the nets' order

  std::vector<std::pair<std::uint32_t, std::string_view>> strangers{}; // pins with the names of nets that there are not
};

// Once all nets are known, before their pins are joined.
void index_nets(Joints &joints);

// Joins the pins of the symbols since the last call, once the waiting names are looked up. The symbols' names must
// stand in the text behind all nets.
void join_pins(Joints &joints);

// Once all symbols are known. Faults go to netlist.faults.
void finish_joints(Joints &joints);

} // namespace cubekit
