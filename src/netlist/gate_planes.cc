// Takes the terms, their connections and the netlist around them, prints the nets and symbols of the planes.
// Separate passes over the terms find their gates, locate their literals, and print nets and symbols.
#include "netlist/gate_planes.h"

#include <algorithm>
#include <array>
#include <bit>

#include "model/names.h"
#include "model/run_settings.h"
#include "util/text_hash.h"

namespace cubenet {

namespace {

TermGate choose_gate(const GatePlanes &planes, std::uint32_t term) {
  const std::uint32_t *row = cube(planes.cubes, term);
  std::uint32_t outputs = 0, logic = 0, last = 0;
  for_each_output(planes.cubes, row, [&](std::size_t j) {
    outputs++;
    if (planes.connections.forms[j] != OutputForm::LOGIC) return;
    logic++;
    last = static_cast<std::uint32_t>(j);
  });
  if (logic == 0) return {};
  TermGate gate{.literals = static_cast<std::uint32_t>(count_literals(planes.cubes, row))};
  if (gate.literals >= 2 && outputs == 1 && term_count(planes.connections, last) == 1) gate.output = last;
  return gate;
}

void choose_gates(GatePlanes &planes) {
  planes.gates.resize(planes.cubes.NUM_CUBES);
  for (std::uint32_t i = 0; i < planes.gates.size(); i++) planes.gates[i] = choose_gate(planes, i);
}

void list_literals(GatePlanes &planes) {
  const CubeTable &cubes = planes.cubes;
  LiteralLists &lists = planes.literals;
  lists.starts.assign(2 * cubes.inputs + 1, 0);
  const auto for_each_used = [&](auto visit) {
    for (std::uint32_t i = 0; i < planes.gates.size(); i++) {
      if (planes.gates[i].literals == 0) continue;
      std::uint32_t place = 0;
      for_each_literal(cubes, cube(cubes, i),
                       [&](std::size_t input, bool is_true) { visit(2 * input + (is_true ? 0 : 1), i, place++); });
    }
  };
  std::uint32_t last_place = 0;
  for_each_used([&](std::size_t list, std::uint32_t, std::uint32_t place) {
    lists.starts[list + 1]++;
    last_place = std::max(last_place, place);
  });
  for (std::size_t list = 1; list < lists.starts.size(); list++) lists.starts[list] += lists.starts[list - 1];
  lists.place_bits = std::bit_width(last_place);
  const bool is_wide = std::bit_width(planes.gates.size()) + lists.place_bits > 32;
  if (is_wide)
    lists.wide.resize(lists.starts.back());
  else
    lists.narrow.resize(lists.starts.back());
  std::vector<std::size_t> next(lists.starts.begin(), lists.starts.end() - 1);
  for_each_used([&](std::size_t list, std::uint32_t term, std::uint32_t place) {
    const std::uint64_t entry = std::uint64_t{term} << lists.place_bits | place;
    if (is_wide)
      lists.wide[next[list]++] = entry;
    else
      lists.narrow[next[list]++] = static_cast<std::uint32_t>(entry);
  });
}

void name_columns(GatePlanes &planes) {
  const Netlist &netlist = planes.netlist;
  planes.column_texts.resize(netlist.column_nets.size());
  for (std::size_t k = 0; k < netlist.column_nets.size(); k++)
    if (const NetIndex net = netlist.column_nets[k]; net != kNone)
      planes.column_texts[k] = name_text(netlist.nets[net].name);
}

std::size_t list_size(const GatePlanes &planes, std::size_t list) {
  return planes.literals.starts[list + 1] - planes.literals.starts[list];
}

void put_generated(OutputFile &file, const std::string &prefix, std::uint32_t index) {
  put_all(file, prefix, Decimal{index});
}

void put_tree_name(OutputFile &file, const std::string &prefix, std::uint32_t index, std::uint32_t level,
                   std::uint32_t number) {
  put_all(file, prefix, Decimal{index}, '_', Decimal{level}, '_', Decimal{number});
}

// " gate.pin" of input `place` of a term's gate, or of the first rank of its tree.
void put_and_pin(OutputFile &file, const GatePlanes &planes, std::uint32_t term, const TermGate &gate,
                 std::uint32_t place) {
  const std::uint32_t width = planes.and_width;
  put(file, ' ');
  if (gate.literals > width) {
    put_tree_name(file, planes.prefixes.and_gates, term, 0, place / width);
    return put_all(file, ".A", Decimal{place % width});
  }
  if (gate.output != kNone)
    put(file, planes.netlist.outputs[gate.output].instance);
  else
    put_generated(file, planes.prefixes.and_gates, term);
  put_all(file, ".A", Decimal{place});
}

void put_or_pin(OutputFile &file, const GatePlanes &planes, std::uint32_t output, std::uint32_t place) {
  const std::uint32_t width = planes.or_width;
  put(file, ' ');
  if (term_count(planes.connections, output) <= width) {
    put(file, planes.netlist.outputs[output].instance);
    put_all(file, ".A", Decimal{place});
  } else {
    put_tree_name(file, planes.prefixes.or_gates, output, 0, place / width);
    put_all(file, ".A", Decimal{place % width});
  }
}

struct OrPin {
  std::uint32_t output, place;
};

// The OR pins that a single-literal term reaches.
void add_or_pins(const GatePlanes &planes, std::uint32_t term, std::vector<OrPin> &pins) {
  const Connections &connections = planes.connections;
  for_each_output(planes.cubes, cube(planes.cubes, term), [&](std::size_t j) {
    if (connections.forms[j] != OutputForm::LOGIC) return;
    const std::uint32_t *first = first_term(connections, j);
    const std::uint32_t *last = first + term_count(connections, j);
    pins.push_back(
        {static_cast<std::uint32_t>(j), static_cast<std::uint32_t>(std::lower_bound(first, last, term) - first)});
  });
}

void put_or_pins(OutputFile &file, const GatePlanes &planes, std::vector<OrPin> &pins) {
  std::sort(pins.begin(), pins.end(), [](const OrPin &a, const OrPin &b) {
    return a.output != b.output ? a.output < b.output : a.place < b.place;
  });
  for (const OrPin &pin : pins) put_or_pin(file, planes, pin.output, pin.place);
}

struct LiteralAt {
  std::uint32_t term, place;
};

template <typename Visit> void for_each_listed(const GatePlanes &planes, std::size_t list, Visit visit) {
  const LiteralLists &lists = planes.literals;
  const std::uint64_t place_mask = (std::uint64_t{1} << lists.place_bits) - 1;
  for (std::size_t i = lists.starts[list]; i < lists.starts[list + 1]; i++) {
    const std::uint64_t entry = lists.wide.empty() ? lists.narrow[i] : lists.wide[i];
    visit(LiteralAt{static_cast<std::uint32_t>(entry >> lists.place_bits),
                    static_cast<std::uint32_t>(entry & place_mask)});
  }
}

void put_literal(OutputFile &file, const GatePlanes &planes, const LiteralAt &at, std::vector<OrPin> &or_pins) {
  const TermGate gate = planes.gates[at.term];
  if (gate.literals == 1)
    add_or_pins(planes, at.term, or_pins);
  else
    put_and_pin(file, planes, at.term, gate, at.place);
}

void put_list(OutputFile &file, const GatePlanes &planes, std::size_t list) {
  std::vector<OrPin> or_pins;
  for_each_listed(planes, list, [&](const LiteralAt &at) { put_literal(file, planes, at, or_pins); });
  put_or_pins(file, planes, or_pins);
}

// Several columns on one net: their literals are merged into term order.
void put_merged_lists(OutputFile &file, const GatePlanes &planes, NetIndex net) {
  std::vector<LiteralAt> all;
  for_each_column(planes.netlist, net, [&](std::uint32_t k) {
    for_each_listed(planes, std::size_t{2} * k, [&](const LiteralAt &at) { all.push_back(at); });
  });
  std::sort(all.begin(), all.end(), [](const LiteralAt &a, const LiteralAt &b) {
    return a.term != b.term ? a.term < b.term : a.place < b.place;
  });
  std::vector<OrPin> or_pins;
  for (const LiteralAt &at : all) put_literal(file, planes, at, or_pins);
  put_or_pins(file, planes, or_pins);
}

// A gate, or the tree of gates that replaces it.
struct Tree {
  bool is_or;
  bool invert; // the final gate drives ZN0
  bool protect;
  std::uint32_t width;
  const std::string &prefix;
  std::uint32_t index; // term or output
  Name final_name;     // instance
  Name final_net;
};

std::uint32_t rank_size(std::uint32_t inputs, std::uint32_t width) { return inputs / width + (inputs % width != 0); }

// Nets from the gates of rank level-1, n of them, into the rank above them, and on to the final gate.
void map_emit_tree_nets(OutputFile &file, const Tree &tree, std::uint32_t n, std::uint32_t level) {
  for (std::uint32_t g = 0; g < n; g++) {
    put(file, "NET ");
    put_tree_name(file, tree.prefix, tree.index, level - 1, g);
    put(file, " SRC ");
    put_tree_name(file, tree.prefix, tree.index, level - 1, g);
    put(file, ".Z0 DST ");
    if (n > tree.width)
      put_tree_name(file, tree.prefix, tree.index, level, g / tree.width);
    else
      put(file, tree.final_name);
    put_all(file, ".A", Decimal{n > tree.width ? g % tree.width : g}, ";\n\n");
  }
  if (n > tree.width) map_emit_tree_nets(file, tree, rank_size(n, tree.width), level + 1);
}

// The name of a gate of two or more inputs includes its width.
void put_gate_kind(OutputFile &file, std::string_view kind, std::uint32_t inputs) {
  put_all(file, "SYM ", kind);
  if (inputs > 1) put_number(file, inputs);
  put(file, ' ');
}

// The rest of the symbol's first line, and the input pins; put_input(j) prints the net of input number j.
template <typename PutInput>
void put_gate_inputs(OutputFile &file, bool protect, std::uint32_t inputs, PutInput put_input) {
  put(file, protect ? " PROTECT;\n" : ";\n");
  for (std::uint32_t j = 0; j < inputs; j++) {
    put_all(file, "\tPIN A", Decimal{j}, " IN ");
    put_input(j);
    put(file, ";\n");
  }
}

// Gate `number` of a rank inside the tree; put_input(j) prints the net of signal number j below the rank.
template <typename PutInput>
void put_inner_gate(OutputFile &file, const Tree &tree, std::uint32_t level, std::uint32_t number, std::uint32_t inputs,
                    PutInput put_input) {
  put_gate_kind(file, inputs == 1 ? "BUF" : tree.is_or ? "OR" : "AND", inputs);
  put_tree_name(file, tree.prefix, tree.index, level, number);
  put_gate_inputs(file, tree.protect, inputs, [&](std::uint32_t j) { put_input(number * tree.width + j); });
  put(file, "\tPIN Z0 OUT ");
  put_tree_name(file, tree.prefix, tree.index, level, number);
  put(file, ";\nEND;\n\n");
}

template <typename PutInput>
void put_final_gate(OutputFile &file, const Tree &tree, std::uint32_t inputs, PutInput put_input) {
  const std::string_view kind = inputs == 1  ? (tree.invert ? "INV" : "BUF")
                                : tree.is_or ? (tree.invert ? "NOR" : "OR")
                                             : (tree.invert ? "NAND" : "AND");
  put_gate_kind(file, kind, inputs);
  put(file, tree.final_name);
  put_gate_inputs(file, tree.protect, inputs, put_input);
  put(file, tree.invert ? "\tPIN ZN0 OUT " : "\tPIN Z0 OUT ");
  put(file, tree.final_net);
  put(file, ";\nEND;\n\n");
}

template <typename PutInput>
void put_rank(OutputFile &file, const Tree &tree, std::uint32_t level, std::uint32_t inputs, PutInput put_input) {
  for (std::uint32_t g = 0; g < rank_size(inputs, tree.width); g++)
    put_inner_gate(file, tree, level, g, std::min(tree.width, inputs - g * tree.width), put_input);
}

// The ranks above the first, n signals coming from rank level-1, and the final gate.
void map_emit_or_tree(OutputFile &file, const Tree &tree, std::uint32_t n, std::uint32_t level) {
  const auto put_input = [&](std::uint32_t j) { put_tree_name(file, tree.prefix, tree.index, level - 1, j); };
  if (n <= tree.width) return put_final_gate(file, tree, n, put_input);
  put_rank(file, tree, level, n, put_input);
  map_emit_or_tree(file, tree, rank_size(n, tree.width), level + 1);
}

template <typename PutInput>
void put_tree(OutputFile &file, const Tree &tree, std::uint32_t inputs, PutInput put_input) {
  if (inputs <= tree.width) return put_final_gate(file, tree, inputs, put_input);
  put_rank(file, tree, 0, inputs, put_input);
  map_emit_or_tree(file, tree, rank_size(inputs, tree.width), 1);
}

void put_tree_nets(OutputFile &file, const Tree &tree, std::uint32_t inputs) {
  if (inputs > tree.width) map_emit_tree_nets(file, tree, rank_size(inputs, tree.width), 1);
}

// `text` is the name of a gate that is not an output's.
Tree and_tree(const GatePlanes &planes, std::uint32_t term, std::string &text) {
  const std::uint32_t output = planes.gates[term].output;
  Tree tree{false, false, false, planes.and_width, planes.prefixes.and_gates, term, {}, {}};
  if (output != kNone) {
    const OutputGate &gate = planes.netlist.outputs[output];
    tree.invert = gate.active_low;
    tree.protect = gate.protect;
    tree.final_name = gate.instance;
    tree.final_net = planes.netlist.nets[gate.net].name;
  } else {
    text.assign(planes.prefixes.and_gates).append(std::to_string(term));
    tree.final_name = tree.final_net = {text, ""};
  }
  return tree;
}

Tree or_tree(const GatePlanes &planes, std::uint32_t output) {
  const OutputGate &gate = planes.netlist.outputs[output];
  return {true,
          gate.active_low,
          gate.protect,
          planes.or_width,
          planes.prefixes.or_gates,
          output,
          gate.instance,
          planes.netlist.nets[gate.net].name};
}

bool has_or_gate(const GatePlanes &planes, std::uint32_t output) {
  const Connections &connections = planes.connections;
  if (connections.forms[output] != OutputForm::LOGIC) return false;
  return term_count(connections, output) > 1 || planes.gates[*first_term(connections, output)].output == kNone;
}

void put_literal_net(OutputFile &file, const GatePlanes &planes, std::size_t input, bool is_true) {
  if (is_true)
    put(file, planes.column_texts[input]);
  else
    put_generated(file, planes.prefixes.inverters, static_cast<std::uint32_t>(input));
}

// A term of one literal is that literal's net.
void put_term_net(OutputFile &file, const GatePlanes &planes, std::uint32_t term) {
  if (planes.gates[term].literals != 1) return put_generated(file, planes.prefixes.and_gates, term);
  for_each_literal(planes.cubes, planes.connections.lists, term,
                   [&](std::uint32_t input, bool is_true) { put_literal_net(file, planes, input, is_true); });
}

void write_and_nets(OutputFile &file, const GatePlanes &planes) {
  std::vector<std::uint32_t> seen(planes.connections.forms.size(), 0); // terms so far, per output
  std::string text;
  for (std::uint32_t i = 0; i < planes.gates.size(); i++) {
    const TermGate &gate = planes.gates[i];
    if (gate.literals == 0) continue;
    const bool has_gate = gate.literals > 1;
    if (has_gate) put_tree_nets(file, and_tree(planes, i, text), gate.literals);
    if (gate.output != kNone) continue;
    if (has_gate) put_all(file, "NET ", text, " SRC ", text, ".Z0 DST");
    for_each_output(planes.cubes, cube(planes.cubes, i), [&](std::size_t j) {
      if (planes.connections.forms[j] != OutputForm::LOGIC) return;
      const std::uint32_t place = seen[j]++;
      if (has_gate) put_or_pin(file, planes, static_cast<std::uint32_t>(j), place);
    });
    if (has_gate) put(file, ";\n\n");
  }
}

void write_and_symbols(OutputFile &file, const GatePlanes &planes) {
  std::vector<std::pair<std::uint32_t, bool>> inputs;
  std::string text;
  for (std::uint32_t i = 0; i < planes.gates.size(); i++) {
    if (planes.gates[i].literals <= 1) continue;
    inputs.clear();
    for_each_literal(planes.cubes, cube(planes.cubes, i), [&](std::size_t input, bool is_true) {
      inputs.emplace_back(static_cast<std::uint32_t>(input), is_true);
    });
    put_tree(file, and_tree(planes, i, text), static_cast<std::uint32_t>(inputs.size()),
             [&](std::uint32_t j) { put_literal_net(file, planes, inputs[j].first, inputs[j].second); });
  }
}

// Prefixes under which existing names look like names of the planes, by the number of numbers that follow:
// "P7" has one, "P7_0_1" three.
std::array<TextSet<std::string>, 4> find_taken_prefixes(const Netlist &netlist) {
  std::array<TextSet<std::string>, 4> taken;
  const auto take = [&](const Name &name) {
    if (!name.base.starts_with("_PL")) return;
    std::string text = name_text(name);
    for (std::size_t numbers = 1; numbers < taken.size(); numbers++) {
      const std::size_t start = text.find_last_not_of("0123456789") + 1;
      if (start == text.size() || start == 0 || text[start - 1] != '_') return;
      text.resize(start);
      taken[numbers].insert(text);
      text.pop_back();
    }
  };
  for (const Net &net : netlist.nets) take(net.name);
  for_each_instance(netlist, take);
  return taken;
}

} // namespace

PlanePrefixes map_choose_prefixes(const Design &design, const Netlist &netlist) {
  const auto taken = find_taken_prefixes(netlist);
  const auto choose = [&](std::string_view prefix, const std::string &other, bool has_gates, bool has_trees) {
    std::string candidate(prefix);
    for (SignalIndex signal = 0; signal < signal_count(design); signal++) {
      const std::string_view name = signal_name(design, signal);
      if (name.size() >= 6 && equal_ignoring_case(name.substr(0, prefix.size()), prefix)) candidate = other + '_';
    }
    const auto is_taken = [&] {
      return (has_gates && taken[1].contains(candidate)) || (has_trees && taken[3].contains(candidate));
    };
    for (int number = 1; is_taken(); number++) candidate = other + (number == 1 ? "" : std::to_string(number)) + '_';
    return candidate;
  };
  return {choose("_PLO_", "_PLA_OR", false, true), choose("_PLN_", "_PLA_AND", true, true),
          choose("_PLI_", "_PLA_INV", true, false)};
}

GatePlanes make_gate_planes(const Design &design, const CubeTable &cubes, const Connections &connections,
                            const Netlist &netlist) {
  GatePlanes planes{cubes,
                    connections,
                    netlist,
                    map_choose_prefixes(design, netlist),
                    static_cast<std::uint32_t>(run_settings.and_width),
                    static_cast<std::uint32_t>(run_settings.or_width)};
  choose_gates(planes);
  list_literals(planes);
  name_columns(planes);
  return planes;
}

bool has_plane_destinations(const GatePlanes &planes, NetIndex net) {
  bool has_any = false;
  for_each_column(planes.netlist, net, [&](std::uint32_t k) {
    const std::vector<std::size_t> &starts = planes.literals.starts;
    has_any = has_any || starts[std::size_t{2} * k] != starts[std::size_t{2} * k + 2];
  });
  return has_any;
}

void put_plane_destinations(OutputFile &file, const GatePlanes &planes, NetIndex net) {
  const std::uint32_t first = planes.netlist.first_columns[net];
  if (first == kNone) return;
  if (planes.netlist.next_columns[first] == kNone)
    put_list(file, planes, std::size_t{2} * first);
  else
    put_merged_lists(file, planes, net);
  for_each_column(planes.netlist, net, [&](std::uint32_t k) {
    if (list_size(planes, std::size_t{2} * k + 1) == 0) return;
    put(file, ' ');
    put_generated(file, planes.prefixes.inverters, k);
    put(file, ".A0");
  });
}

void write_plane_nets(OutputFile &file, const GatePlanes &planes) {
  write_and_nets(file, planes);
  for (std::uint32_t j = 0; j < planes.connections.forms.size(); j++)
    if (has_or_gate(planes, j)) put_tree_nets(file, or_tree(planes, j), term_count(planes.connections, j));
  for (std::uint32_t k = 0; k < planes.cubes.inputs; k++) {
    if (list_size(planes, std::size_t{2} * k + 1) == 0) continue;
    put(file, "NET ");
    put_generated(file, planes.prefixes.inverters, k);
    put(file, " SRC ");
    put_generated(file, planes.prefixes.inverters, k);
    put(file, ".ZN0 DST");
    put_list(file, planes, std::size_t{2} * k + 1);
    put(file, ";\n\n");
  }
}

void write_plane_symbols(OutputFile &file, const GatePlanes &planes) {
  write_and_symbols(file, planes);
  for (std::uint32_t j = 0; j < planes.connections.forms.size(); j++) {
    if (!has_or_gate(planes, j)) continue;
    const std::uint32_t *terms = first_term(planes.connections, j);
    put_tree(file, or_tree(planes, j), term_count(planes.connections, j),
             [&](std::uint32_t place) { put_term_net(file, planes, terms[place]); });
  }
  for (std::uint32_t k = 0; k < planes.cubes.inputs; k++) {
    if (list_size(planes, std::size_t{2} * k + 1) == 0) continue;
    put(file, "SYM INV ");
    put_generated(file, planes.prefixes.inverters, k);
    put_all(file, ";\n\tPIN A0 IN ", planes.column_texts[k], ";\n\tPIN ZN0 OUT ");
    put_generated(file, planes.prefixes.inverters, k);
    put(file, ";\nEND;\n\n");
  }
}

} // namespace cubenet
