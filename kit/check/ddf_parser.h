// Reads ddf netlists, strictly, with the oddities of the format: no semicolon after a ZDOT, no line end after
// XDL2 to XDL4, one pad line and one pin line in the spelling of the other format.
#pragma once

#include <functional>
#include <string_view>
#include <vector>

#include "kit/netlist/netlist.h"

namespace cubekit {

struct DdfSymbol {
  std::string_view primitive, instance;
  bool protect = false;
  bool unended = false;           // the form has no place for a mark
  std::string_view data_net = {}; // of the pin line below it; empty: there is none
  std::size_t line = 0;
};

struct DdfNet {
  std::string_view name;
  std::uint32_t first_item = 0; // into DdfNetlist::items: ports (".pin"), the source, the destinations
  std::uint32_t item_count = 0;
  std::size_t line = 0;
};

struct DdfNetlist {
  std::string_view cell;
  std::vector<std::string_view> outputs, inputs, inouts;
  std::vector<DdfSymbol> symbols;
  std::vector<DdfNet> nets;
  std::vector<std::string_view> items;
};

// `is_instance` recognizes a symbol's name where the format doesn't mark its end. The netlist holds views
// into the text.
[[nodiscard]] bool parse_ddf(std::string_view text, const std::function<bool(std::string_view)> &is_instance,
                             DdfNetlist &netlist, Finding &error);

} // namespace cubekit
