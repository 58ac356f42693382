// Netlists as drawings in Graphviz's language.
#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "kit/netlist/netlist.h"

namespace CLI {
class App;
}

namespace cubekit {

// `cubekit graph`.
std::function<int()> setup_graph(CLI::App &command);

// Per symbol: the signal it belongs to, by its name or, for gates that outputs may share, by its readers.
// Empty where the readers belong to several signals.
std::vector<std::string_view> signals_of_symbols(const Netlist &netlist);

// With a signal, draws only what it depends on. False when the netlist has no such signal.
[[nodiscard]] bool write_dot(std::ostream &stream, const Netlist &netlist, std::string_view signal);

// Has Graphviz's dot draw such a text as SVG. False, with a sentence in `fault`, when dot can't be started or
// fails.
[[nodiscard]] bool draw_svg(std::string_view dot, std::string &svg, std::string &fault);

} // namespace cubekit
