// Draws a netlist: a node per symbol and per device pin, an edge per driven pin, a box around the symbols of
// a signal.
#include "kit/draw/graph.h"

#include <algorithm>
#include <array>
#include <ostream>

#include "kit/draw/html.h"
#include "kit/netlist/flow.h"
#include "kit/util/run_program.h"

namespace cubekit {

namespace {

struct ShapeRow {
  Function function;
  std::string_view attributes;
};
// clang-format off
constexpr std::array kShapes{std::to_array<ShapeRow>({
    {Function::AND,       "shape=box, style=rounded"},
    {Function::OR,        "shape=ellipse"},
    {Function::XOR,       "shape=octagon"},
    {Function::BUFFER,    "shape=triangle, orientation=270"},
    {Function::TABLE,     "shape=box3d"},
    {Function::FLIP_FLOP, "shape=box, peripheries=2"},
    {Function::LATCH,     "shape=box, peripheries=2, style=rounded"},
    {Function::PAD,       "shape=house, orientation=270"},
    {Function::TRISTATE,  "shape=invtriangle, orientation=270"},
    {Function::MACRO,     "shape=component"},
})};
// clang-format on
constexpr bool rows_stand_by_function() {
  for (std::size_t i = 0; i < kShapes.size(); i++)
    if (kShapes[i].function != static_cast<Function>(i)) return false;
  return true;
}
static_assert(rows_stand_by_function());

constexpr std::array<std::string_view, 3> kPinShapes{"shape=cds", "shape=cds, style=bold", "shape=diamond"};

// The suffixes that a signal's nets and gates add to its name; each also with a "B" for a complement.
constexpr auto kSuffixes = std::to_array<std::string_view>({
    "1", "2",   "3",   "4",   "5",   "6",   "7",  "8", "9",   "AP",  "AR", "BD", "C",   "CE",
    "D", "DX1", "DX2", "FB",  "GX1", "GX2", "H",  "J", "K",   "LE",  "LH", "OE", "PIN", "PR",
    "Q", "R",   "RE",  "REG", "S",   "SP",  "SR", "T", "TX1", "TX2", "X1", "X2", "Z",
});

bool is_suffix(std::string_view text) {
  if (std::find(kSuffixes.begin(), kSuffixes.end(), text) != kSuffixes.end() || text == "B") return true;
  return text.ends_with('B') &&
         std::find(kSuffixes.begin(), kSuffixes.end(), text.substr(0, text.size() - 1)) != kSuffixes.end();
}

std::string_view signal_by_name(const Netlist &netlist, const Symbol &symbol) {
  const std::string_view name = symbol.instance;
  if (find_name(netlist.external_by_pin, name) != kNone || is_storage(primitive_of(symbol).function)) return name;
  const std::size_t at = name.rfind('_');
  return at != std::string_view::npos && at > 0 && is_suffix(name.substr(at + 1)) ? name.substr(0, at) : name;
}

// The gates of the planes are numbered, after a prefix that begins so.
bool is_plane_gate(const Symbol &symbol) { return symbol.instance.starts_with("_PL"); }

struct Drawing {
  std::ostream &stream;
  const Netlist &netlist;
  std::vector<std::string_view> signals; // per symbol
  std::vector<bool> drawn;               // per symbol
  std::string_view only;                 // the signal whose cone is drawn; empty: all
};

// Graphviz reads HTML entities.
std::string escape(std::string_view text) {
  std::string escaped;
  for (const char c : escape_html(text)) {
    if (c == '\\') escaped += '\\';
    escaped += c;
  }
  return escaped;
}

// How an SVG of the drawing identifies a symbol, a device pin or a rail, and what a viewer shows of it.
struct Identity {
  char letter;
  std::size_t index;
  std::string_view look; // its class
  std::string_view name;
};

std::ostream &operator<<(std::ostream &stream, const Identity &thing) {
  return stream << "id=" << thing.letter << thing.index << ", class=\"" << thing.look << "\", tooltip=\""
                << escape(thing.name) << "\", ";
}

void write_symbol(Drawing &drawing, SymbolIndex index, std::string_view indent) {
  const Symbol &symbol = drawing.netlist.symbols[index];
  drawing.stream << indent << 's' << index << " [label=\"" << escape(symbol.primitive_text) << "\\n"
                 << escape(symbol.instance) << "\", "
                 << Identity{'s', index, is_storage(primitive_of(symbol).function) ? "storage" : "", symbol.instance}
                 << kShapes[static_cast<std::size_t>(primitive_of(symbol).function)].attributes << "];\n";
}

// Symbols of one signal are grouped; the signals come in file order.
void write_clusters(Drawing &drawing) {
  NameIndex clusters;
  std::vector<std::vector<SymbolIndex>> members;
  for (SymbolIndex i = 0; i < drawing.netlist.symbols.size(); i++) {
    if (!drawing.drawn[i]) continue;
    if (drawing.signals[i].empty()) {
      write_symbol(drawing, i, "  ");
      continue;
    }
    const auto cluster = add_name(clusters, drawing.signals[i], static_cast<std::uint32_t>(members.size()));
    if (cluster == members.size()) members.emplace_back();
    members[cluster].push_back(i);
  }
  for (std::size_t c = 0; c < members.size(); c++) {
    drawing.stream << "  subgraph cluster_" << c << " {\n    label=\"" << escape(drawing.signals[members[c].front()])
                   << "\";\n";
    for (const SymbolIndex symbol : members[c]) write_symbol(drawing, symbol, "    ");
    drawing.stream << "  }\n";
  }
}

bool is_net_read(const Drawing &drawing, const Net &net) {
  for (std::uint32_t d = 0; d < net.destination_count; d++)
    if (drawing.drawn[drawing.netlist.destinations[net.first_destination + d].symbol]) return true;
  return false;
}

bool is_pin_drawn(const Drawing &drawing, const ExternalPin &pin) {
  if (drawing.only.empty() || pin.pin == drawing.only) return true;
  return pin.direction != Direction::OUT && is_net_read(drawing, drawing.netlist.nets[pin.net]);
}

void write_pins(Drawing &drawing) {
  for (std::size_t i = 0; i < drawing.netlist.external_pins.size(); i++) {
    const ExternalPin &pin = drawing.netlist.external_pins[i];
    if (is_pin_drawn(drawing, pin))
      drawing.stream << "  p" << i << " [label=\"" << escape(pin.pin) << "\", " << Identity{'p', i, "pin", pin.pin}
                     << kPinShapes[static_cast<std::size_t>(pin.direction)] << "];\n";
  }
}

// An edge's class names both its ends.
void begin_edge(const Drawing &drawing, const std::string &from, const std::string &to, const Net &net) {
  drawing.stream << "  " << from << " -> " << to << " [class=\"" << from << ' ' << to << "\", tooltip=\""
                 << escape(net.name) << '"';
}

// The edge's end shows the pin's name where the symbol's pins have different functions.
void write_edge(Drawing &drawing, const std::string &from, const Net &net, const EndPoint &to) {
  if (!drawing.drawn[to.symbol]) return;
  const Pin &pin = drawing.netlist.pins[to.pin];
  const Symbol &symbol = drawing.netlist.symbols[to.symbol];
  begin_edge(drawing, from, "s" + std::to_string(to.symbol), net);
  if (primitive_of(symbol).function >= Function::FLIP_FLOP)
    drawing.stream << ", headlabel=\"" << escape(pin.name) << '"';
  drawing.stream << (pin.direction == Direction::BIDI ? ", dir=both];\n" : "];\n");
}

void write_edges(Drawing &drawing, NetIndex index, const std::string &from) {
  const Net &net = drawing.netlist.nets[index];
  for (std::uint32_t d = 0; d < net.destination_count; d++)
    write_edge(drawing, from, net, drawing.netlist.destinations[net.first_destination + d]);
}

void write_pin_edges(Drawing &drawing) {
  for (std::size_t i = 0; i < drawing.netlist.external_pins.size(); i++) {
    const ExternalPin &pin = drawing.netlist.external_pins[i];
    if (!is_pin_drawn(drawing, pin)) continue;
    const Net &net = drawing.netlist.nets[pin.net];
    const std::string name = "p" + std::to_string(i);
    if (!net.has_source) {
      write_edges(drawing, pin.net, name);
    } else if (drawing.drawn[net.source.symbol]) {
      begin_edge(drawing, "s" + std::to_string(net.source.symbol), name, net);
      drawing.stream << "];\n";
    }
  }
}

void write_net_edges(Drawing &drawing) {
  for (NetIndex i = 0; i < drawing.netlist.nets.size(); i++) {
    const Net &net = drawing.netlist.nets[i];
    if (net.has_source && drawing.drawn[net.source.symbol])
      write_edges(drawing, i, "s" + std::to_string(net.source.symbol));
    if (!net.rail || !is_net_read(drawing, net)) continue;
    drawing.stream << "  n" << i << " [label=\"" << escape(net.name) << "\", " << Identity{'n', i, "", net.name}
                   << "shape=plaintext];\n";
    write_edges(drawing, i, "n" + std::to_string(i));
  }
}

// False when there is no such signal.
bool choose_cone(Drawing &drawing) {
  const Netlist &netlist = drawing.netlist;
  std::vector<NetIndex> nets;
  for (SymbolIndex i = 0; i < netlist.symbols.size(); i++) {
    if (drawing.signals[i] != drawing.only) continue;
    for (const Pin pin : pins_of(netlist, netlist.symbols[i]))
      if (pin.direction != Direction::IN) nets.push_back(pin.net);
  }
  const std::uint32_t pin = find_name(netlist.external_by_pin, drawing.only);
  if (pin != kNone) nets.push_back(netlist.external_pins[pin].net);
  const bool found = !nets.empty();
  drawing.drawn = find_influences(netlist, std::move(nets));
  return found;
}

} // namespace

std::vector<std::string_view> signals_of_symbols(const Netlist &netlist) {
  std::vector<std::string_view> signals(netlist.symbols.size());
  const std::vector<SymbolIndex> order = order_symbols(netlist, passes_gates).order;
  for (auto at = order.rbegin(); at != order.rend(); ++at) {
    const Symbol &symbol = netlist.symbols[*at];
    if (!is_plane_gate(symbol)) {
      signals[*at] = signal_by_name(netlist, symbol);
      continue;
    }
    // Its readers come later in the order, so theirs are already known.
    bool first = true;
    for (const Pin pin : pins_of(netlist, symbol)) {
      if (pin.direction == Direction::IN) continue;
      const Net &net = netlist.nets[pin.net];
      for (std::uint32_t d = 0; d < net.destination_count; d++) {
        const std::string_view reader = signals[netlist.destinations[net.first_destination + d].symbol];
        signals[*at] = first || signals[*at] == reader ? reader : std::string_view();
        first = false;
      }
    }
  }
  return signals;
}

bool write_dot(std::ostream &stream, const Netlist &netlist, std::string_view signal) {
  Drawing drawing{stream, netlist, signals_of_symbols(netlist), {}, signal};
  if (signal.empty())
    drawing.drawn.assign(netlist.symbols.size(), true);
  else if (!choose_cone(drawing))
    return false;
  stream << "digraph \"" << escape(netlist.design) << "\" {\n"
         << "  rankdir=LR;\n  node [fontname=\"Helvetica\", fontsize=10];\n"
         << "  edge [fontname=\"Helvetica\", fontsize=8];\n";
  write_pins(drawing);
  write_clusters(drawing);
  write_pin_edges(drawing);
  write_net_edges(drawing);
  stream << "}\n";
  return true;
}

bool draw_svg(std::string_view dot, std::string &svg, std::string &fault) {
  ProgramRun run = run_program({"dot", "-Tsvg"}, dot);
  svg = std::move(run.output);
  if (run.status != 0) fault = "'dot' of Graphviz " + run.fault;
  if (run.status > 0) fault += ": " + run.errors.substr(0, run.errors.find('\n'));
  return run.status == 0;
}

} // namespace cubekit
