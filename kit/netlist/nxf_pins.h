// Reads the pins of the symbols of an .nxf file, and with them what kinds of symbols there are.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "kit/netlist/netlist.h"
#include "kit/netlist/nxf_join.h"
#include "kit/netlist/nxf_text.h"

namespace cubekit {

// The name of ports, with the texts that it stands in: as a pin's statement begins, "\tPIN A12 IN ", and as an item of
// a net ends, ".A12"; in words of eight bytes.
struct PortName {
  std::string_view name;
  std::uint64_t first, rest, rest_mask;
  std::uint64_t dotted, dotted_mask;
  std::uint32_t size; // 0: the statement begins with more than sixteen bytes
  std::uint32_t dotted_size;
  Direction direction; // of the statement
};

struct PinReader {
  Netlist &netlist;
  NxfText &text;
  Joints *joints; // null: the pins are not joined while they are read
  HashIndex names_by_text{};
  std::vector<PortName> names{};
  std::vector<Port> others{};        // of the symbol that is read: its ports behind those that were expected
  std::vector<Stranger> strangers{}; // without joints
};

// What a symbol's first line says.
struct SymbolHead {
  std::string_view instance, primitive_text;
  bool protect = false;
  bool hard = false;
};

// Reads the pins of the symbol that netlist.symbols gets next. `last` is the kind of the last symbol of the primitive,
// or null; it becomes the kind of this one. False when a line breaks the format or, with joints, when a pin is not the
// one that its net names next.
[[nodiscard]] bool read_pins(PinReader &reader, const SymbolHead &head, const SymbolKind *&last);

} // namespace cubekit
