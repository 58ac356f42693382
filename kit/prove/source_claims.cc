// Compares a netlist with a source. Pins and storage are matched by name; elements without a name that both
// sides know are matched by behaviour. A pair is only a guess: its consequences are then proved.
#include <algorithm>
#include <unordered_map>

#include "kit/netlist/flow.h"
#include "kit/prove/source.h"
#include "kit/util/finding.h"

namespace cubekit {

namespace {

// A storage element of the netlist, and its register in the source; kNone: not known.
struct Holder {
  SymbolIndex symbol = kNone;
  NetIndex net = kNone; // its value
  std::string_view name;
  std::uint32_t partner = kNone;
};

const SourceRegister &partner_of(const Source &source, const Holder &holder) {
  return source.registers[holder.partner];
}

// Flip-flops, latches, and the gates that end latches made of gates.
std::vector<Holder> find_storage(const Netlist &netlist) {
  const Flow flow = order_symbols(netlist, passes_gates);
  std::vector<Holder> holders;
  for (SymbolIndex s = 0; s < netlist.symbols.size(); s++) {
    const Symbol &symbol = netlist.symbols[s];
    const Function function = primitive_of(symbol).function;
    if (is_storage(function)) holders.push_back({s, net_at(netlist, s, "Q0"), symbol.instance});
    if (function != Function::OR || !symbol.instance.ends_with("_5")) continue;
    const NetIndex net = net_at(netlist, s, "Z0");
    if (net != kNone && flow.cut[net])
      holders.push_back({s, net, symbol.instance.substr(0, symbol.instance.size() - 2)});
  }
  std::erase_if(holders, [](const Holder &holder) { return holder.net == kNone; });
  return holders;
}

std::string new_name(const NewNames &names, const std::string &name) {
  const auto found = names.find(name);
  return found == names.end() ? name : found->second;
}

void pair_by_name(const Source &source, const NewNames &names, std::vector<Holder> &holders) {
  std::unordered_map<std::string, std::uint32_t> registers;
  for (std::uint32_t r = 0; r < source.registers.size(); r++)
    for (const std::string &name : source.registers[r].names) registers.emplace(new_name(names, name), r);
  for (Holder &holder : holders)
    if (const auto found = registers.find(std::string(holder.name)); found != registers.end())
      holder.partner = found->second;
}

void set_net(Circuit &circuit, NetIndex net, Literal value) {
  if (net != kNone) circuit.values[net] = value;
}

// The element with its value in the circuit: the partner's, or a variable of its own.
Element place_element(const Source &source, const Holder &holder, Circuit &circuit) {
  const bool is_known = holder.partner != kNone;
  const std::string name(holder.name);
  const Literal value =
      is_known ? partner_of(source, holder).value : make_variable(circuit.formulas, "the netlist's " + name + ".Q");
  set_net(circuit, holder.net, invert(value, holds_complement(circuit.netlist, holder.symbol)));
  const bool is_named = is_known && !partner_of(source, holder).names.empty();
  return {is_named ? partner_of(source, holder).names[0] : name, holder.symbol, value};
}

using Word = std::uint64_t;

Word mix(Word a, Word b) {
  Word x = (a ^ (b + 0x9E3779B97F4A7C15U + (a << 6) + (a >> 2))) * 0xBF58476D1CE4E5B9U;
  return x ^ x >> 31;
}

// The values of all nodes for the words of the variables, 64 vectors at once.
std::vector<Word> simulate(const Formulas &formulas, const std::vector<Word> &variables) {
  std::vector<Word> values(formulas.nodes.size());
  for (std::size_t n = 0; n < values.size(); n++) {
    const Node &node = formulas.nodes[n];
    if (node.kind == NodeKind::VARIABLE) values[n] = variables[node.first];
    if (node.kind != NodeKind::AND && node.kind != NodeKind::XOR) continue;
    values[n] = node.kind == NodeKind::AND ? ~Word{0} : 0;
    for (const Literal input : inputs_of(formulas, node)) {
      const Word value = values[node_of(input)] ^ (is_inverted(input) ? ~Word{0} : 0);
      values[n] = node.kind == NodeKind::AND ? values[n] & value : values[n] ^ value;
    }
  }
  return values;
}

// A storage element without a partner: the functions that describe its behaviour.
struct Stranger {
  Literal value; // a variable
  std::vector<Literal> functions;
  std::uint32_t index; // into Source::registers or the holders
  bool is_source;
  Word kind; // strangers of one kind may still be the same
};

// Refines the kinds by simulation until it distinguishes no more of them.
void tell_apart(const Formulas &formulas, std::vector<Stranger> &strangers) {
  constexpr int kRounds = 8; // without a new distinction
  std::size_t known = 0;
  for (Word round = 1, idle = 0; idle < kRounds; round++) {
    std::vector<Word> variables(formulas.variable_names.size());
    for (std::size_t v = 0; v < variables.size(); v++) variables[v] = mix(round, v);
    for (const Stranger &stranger : strangers)
      variables[formulas.nodes[node_of(stranger.value)].first] = mix(stranger.kind, round);
    const std::vector<Word> values = simulate(formulas, variables);
    std::vector<Word> kinds;
    for (Stranger &stranger : strangers) {
      for (const Literal function : stranger.functions)
        stranger.kind = mix(stranger.kind, values[node_of(function)] ^ (is_inverted(function) ? ~Word{0} : 0));
      kinds.push_back(stranger.kind);
    }
    std::ranges::sort(kinds);
    const auto count = static_cast<std::size_t>(std::unique(kinds.begin(), kinds.end()) - kinds.begin());
    idle = count > known ? 0 : idle + 1;
    known = std::max(known, count);
  }
}

std::vector<Literal> functions_of(Formulas &formulas, const NextValue &next, bool is_latch, Literal value) {
  if (is_latch) return {level_value(formulas, next, value)};
  return {next.event, next.cleared, make_and(formulas, {next.set, invert(next.cleared)}), next.next};
}

void pair_by_function(const Source &source, Circuit &circuit, const std::vector<Element> &elements,
                      std::vector<Holder> &holders) {
  Formulas &formulas = circuit.formulas;
  std::vector<Stranger> strangers;
  std::vector<bool> is_taken(source.registers.size());
  for (const Holder &holder : holders)
    if (holder.partner != kNone) is_taken[holder.partner] = true;
  for (std::uint32_t r = 0; r < source.registers.size(); r++) {
    const auto &[names, is_latch, value, next] = source.registers[r];
    if (!is_taken[r]) strangers.push_back({value, functions_of(formulas, next, is_latch, value), r, true, is_latch});
  }
  for (std::uint32_t p = 0; p < holders.size() && !strangers.empty(); p++) {
    if (holders[p].partner != kNone) continue;
    const Element &element = elements[p];
    const Function function = primitive_of(circuit.netlist.symbols[element.symbol]).function;
    const bool is_latch = function != Function::FLIP_FLOP;
    std::vector<Literal> functions;
    if (function == Function::OR)
      functions = {driver_value(circuit, holders[p].net)};
    else if (const NextValue next = element_value(circuit, element); next.event != kUnset && next.next != kUnset)
      functions = functions_of(formulas, next, is_latch, element.storage);
    strangers.push_back({element.storage, functions, p, false, is_latch});
  }
  tell_apart(formulas, strangers);
  std::ranges::stable_sort(strangers, {}, &Stranger::kind);
  for (auto first = strangers.begin(); first != strangers.end();) {
    const auto end = std::find_if(first, strangers.end(), [&](const Stranger &s) { return s.kind != first->kind; });
    auto second = std::find_if(first, end, [](const Stranger &s) { return !s.is_source; }); // they come last
    for (auto at = first; second != end && at->is_source; ++at, ++second) holders[second->index].partner = at->index;
    first = end;
  }
}

// Values of pins.
void place_ports(const Source &source, const NewNames &names, Circuit &circuit, Claims &claims) {
  const Netlist &netlist = circuit.netlist;
  std::vector<bool> is_known(netlist.external_pins.size());
  for (const SourcePort &port : source.ports) {
    const std::uint32_t pin = find_name(netlist.external_by_pin, new_name(names, port.name));
    if (pin == kNone) {
      if (port.value != kUnset) claims.faults.push_back("the netlist has no output pin " + cubekit::quoted(port.name));
      continue;
    }
    is_known[pin] = true;
    const ExternalPin &external = netlist.external_pins[pin];
    const SymbolIndex driver = external.net == kNone ? kNone : find_driver(netlist, external.net);
    const bool is_input = external.direction == Direction::IN, is_bidirectional = external.direction == Direction::BIDI;
    if (is_input != (port.value == kUnset) || (is_bidirectional && port.outside == kUnset))
      claims.faults.push_back("pin " + cubekit::quoted(port.name) + " has the wrong direction");
    if (is_input || is_bidirectional) set_net(circuit, external.net, port.outside);
    if (is_bidirectional && driver != kNone) set_net(circuit, net_at(netlist, driver, "Z0"), port.outside);
  }
  for (std::size_t i = 0; i < is_known.size(); i++)
    if (!is_known[i])
      claims.faults.push_back("the source has no port " + cubekit::quoted(netlist.external_pins[i].pin));
}

void claim_outputs(const Source &source, const NewNames &names, Circuit &circuit, Claims &claims) {
  const Netlist &netlist = circuit.netlist;
  Formulas &formulas = circuit.formulas;
  for (const SourcePort &port : source.ports) {
    const std::uint32_t pin = find_name(netlist.external_by_pin, new_name(names, port.name));
    if (port.value == kUnset || pin == kNone || netlist.external_pins[pin].direction == Direction::IN) continue;
    NetIndex net = netlist.external_pins[pin].net;
    const SymbolIndex driver = net == kNone ? kNone : find_driver(netlist, net);
    const bool has_pad = driver != kNone && is_pad(netlist.symbols[driver]);
    Literal enable = kTrue;
    if (has_pad) {
      enable = pin_value(circuit, driver, "OE", kTrue);
      net = net_at(netlist, driver, "A0");
    }
    if (enable != kTrue || port.enable != kTrue)
      add_claim(claims,
                {port.name + ": output enable", enable, port.enable, has_pad ? net_at(netlist, driver, "OE") : kNone});
    const Literal care = make_and(formulas, {port.care, port.enable});
    const auto counted = [&](Literal value) {
      return value == kUnset ? value : make_or(formulas, {value, invert(care)});
    };
    add_claim(claims, {port.name, counted(net == kNone ? kUnset : net_value(circuit, net)), counted(port.value), net});
  }
}

} // namespace

bool has_unknown_name(const Source &source, const Netlist &netlist) {
  for (const SourcePort &port : source.ports)
    if (find_name(netlist.external_by_pin, port.name) == kNone) return true;
  std::vector<Holder> holders = find_storage(netlist);
  pair_by_name(source, {}, holders);
  return std::ranges::any_of(holders, [](const Holder &holder) { return holder.partner == kNone; });
}

void collect_source_claims(const Source &source, const NewNames &names, Circuit &circuit, Claims &claims,
                           std::vector<std::string> &lacking) {
  const Netlist &netlist = circuit.netlist;
  std::vector<Holder> holders = find_storage(netlist);
  pair_by_name(source, names, holders);
  std::vector<Element> elements;
  const auto place_all = [&] {
    claims.faults.clear();
    elements.clear();
    place_ports(source, names, circuit, claims);
    for (const Holder &holder : holders) elements.push_back(place_element(source, holder, circuit));
  };
  place_all();
  if (std::ranges::any_of(holders, [](const Holder &holder) { return holder.partner == kNone; })) {
    pair_by_function(source, circuit, elements, holders);
    std::ranges::fill(circuit.values, kUnset);
    circuit.fault.clear();
    place_all();
  }
  for (const Symbol &symbol : netlist.symbols)
    if (primitive_of(symbol).function == Function::TABLE && !has_rows(symbol) && symbol.width > 0)
      claims.faults.push_back("the rows of ZDOT " + cubekit::quoted(symbol.instance) + " are not in the netlist");
  claim_outputs(source, names, circuit, claims);
  std::vector<bool> is_taken(source.registers.size());
  for (std::size_t p = 0; p < holders.size(); p++) {
    if (holders[p].partner == kNone) continue;
    const SourceRegister &partner = partner_of(source, holders[p]);
    claim_element(circuit, elements[p], !partner.is_latch, partner.next, claims);
    is_taken[holders[p].partner] = true;
  }
  for (std::size_t r = 0; r < is_taken.size(); r++)
    if (!is_taken[r])
      lacking.push_back(source.registers[r].names.empty() ? "one without a name" : source.registers[r].names[0]);
  if (!circuit.fault.empty()) claims.faults.push_back(circuit.fault);
}

} // namespace cubekit
