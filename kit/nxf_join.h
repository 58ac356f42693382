// Joins the two tellings of an .nxf file: nets name the pins of symbols, and pins name their nets.
#pragma once

#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

#include "kit/netlist.h"

namespace cubekit {

struct Joints {
  Netlist &netlist;
  // So far each pin was the next that its net names. Then that is all there is to join; otherwise all is joined anew,
  // item by item, for the faults.
  bool in_order = true;

  // What no pin has answered yet; views into the text of the net's statement.
  struct OpenNet {
    const char *source = nullptr;      // nullptr: none, or answered
    const char *destination = nullptr; // at the ';' when all are answered
    std::uint32_t next_destination = 0;
  };
  std::vector<OpenNet> open_nets;                                      // as netlist.nets
  std::vector<std::pair<std::uint32_t, std::string_view>> strangers{}; // pins with the names of nets that there are not
};

// Once all nets are known, before their pins are joined.
void index_nets(Joints &joints);

// Answers what the pin's net names next with the pin, whose net index stands already. The name of the symbol must stand
// in the text behind all nets.
void join_pin(Joints &joints, SymbolIndex symbol, std::string_view instance, std::uint32_t pin);

// Once all symbols are known. Faults go to netlist.faults.
void finish_joints(Joints &joints);

} // namespace cubekit
