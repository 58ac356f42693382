// What has to be proved of a netlist: pairs of functions, one as the netlist computes it, one as the design
// specifies it.
#pragma once

#include <string>
#include <vector>

#include "kit/netlist/netlist.h"
#include "kit/prove/circuit.h"
#include "kit/prove/meaning.h"

namespace cubekit {

struct Claim {
  std::string what;        // "q0.D", "pin y", "q1: next value"
  Literal actual = kUnset; // of the netlist
  Literal wanted = kUnset; // of the design
  NetIndex net = kNone;    // where `actual` was taken, to show the gates on the way; kNone: not at one net
  bool at_driver = false;  // the function is that of the net's driver
};

struct Claims {
  std::vector<Claim> list;
  std::vector<std::string> faults; // what the netlist lacks or has in excess
};

// Finds the design's signals in the netlist under the given names, gives their nets values in `circuit` and
// `values`, and lists what must hold: every equation, every storage element's next value, every pin, pad and
// macro input.
void collect_claims(const std::vector<std::string> &names, Values &values, Circuit &circuit, Claims &claims);

// Adds the claim, or a fault where one side is kUnset.
void add_claim(Claims &claims, Claim claim);

// A flip-flop or latch of the netlist, or the last gate of a latch made of gates.
struct Element {
  std::string name; // for texts
  SymbolIndex symbol = kNone;
  Literal storage = kUnset; // its value as the design sees it
};
// Its behaviour; not for a latch made of gates. `event` and `next` are kUnset when it lacks the pins.
NextValue element_value(Circuit &circuit, const Element &element);
// With a reset that has to act as a preset the element stores the complement, on net N_QB.
bool holds_complement(const Netlist &netlist, SymbolIndex symbol);
// The net of the element's data input.
NetIndex data_net(const Netlist &netlist, SymbolIndex symbol);
// A level-sensitive element as one function of its inputs and its value.
Literal level_value(Formulas &formulas, const NextValue &next, Literal storage);
// Lists what must hold for the element to behave as wanted.
void claim_element(Circuit &circuit, const Element &element, bool flip_flop, const NextValue &wanted, Claims &claims);

} // namespace cubekit
