// What the mapping of one signal works with: its equations, its readers, and the netlist that it adds to.
#pragma once

#include <array>
#include <cstdint>
#include <initializer_list>
#include <string_view>
#include <utility>
#include <vector>

#include "model/design.h"
#include "model/names.h"
#include "netlist/netlist.h"

namespace cubenet {

constexpr std::size_t kExtensionCodes = EXT_PR + 1;

// The nets on which a signal's values are read, by the form of the reference.
struct ReadNets {
  NetIndex plain = kNone; // also .PIN
  NetIndex q = kNone, fb = kNone;
  NetIndex d = kNone, t = kNone, reg = kNone;
};
// The net on which a reference with that extension reads; kNone when the signal can't be read so.
NetIndex read_net(const ReadNets &reads, ExtensionCode code);

struct SignalMapper {
  const Design &design;
  Netlist &netlist;
  std::vector<Symbol> &symbols; // the signals' symbols, in print order
  SignalIndex signal = kNoSignal;
  std::string_view base;                                     // the signal's name
  std::array<std::uint32_t, kExtensionCodes> equations{};    // by extension code: output-list entry, kNone for none
  std::uint32_t reads = 0;                                   // bit per extension code: somebody reads the signal so
  std::vector<std::pair<std::string_view, NetIndex>> nets{}; // by suffix
};

inline bool has(const SignalMapper &mapper, ExtensionCode code) { return mapper.equations[code] != kNone; }
inline bool is_read(const SignalMapper &mapper, ExtensionCode code) { return (mapper.reads >> code & 1U) != 0; }
inline bool is_pin_read(const SignalMapper &mapper) { return is_read(mapper, EXT_NONE) || is_read(mapper, EXT_PIN); }

// The signal's net of that suffix (fixed text), made on first use.
NetIndex net_of(SignalMapper &mapper, std::string_view suffix);

struct PinSpec {
  PinKind kind;
  NetIndex net;
};
Symbol &add_symbol(SignalMapper &mapper, Primitive primitive, std::string_view suffix,
                   std::initializer_list<PinSpec> pins);
void add_pin(SignalMapper &mapper, PinKind kind, NetIndex net); // to the symbol added last

// A gate named after the net it drives: inputs on A0, A1, ..., output on Z0 (ZN0 of an inverting gate).
NetIndex add_gate(SignalMapper &mapper, Primitive primitive, std::string_view suffix,
                  std::initializer_list<NetIndex> inputs);
// The same gate named `suffix` but driving another net.
void add_gate_to(SignalMapper &mapper, Primitive primitive, std::string_view suffix,
                 std::initializer_list<NetIndex> inputs, NetIndex output);
// An AND or OR of the inputs that are there (kNone is left out); one input alone needs no gate and is the result.
NetIndex join(SignalMapper &mapper, Primitive primitive, std::string_view suffix,
              std::initializer_list<NetIndex> inputs);

// The pad of a pin, or the tristate buffer of a node, fed from `data`; enable kNone: always on. Returns the net on
// which the signal itself is read, kNone for a pad that nobody reads.
NetIndex add_pad(SignalMapper &mapper, NetIndex data, NetIndex enable);

} // namespace cubenet
