// Decides the claims of a netlist one by one, and reports for each that fails: the vector, both values, and
// the gates between the vector and the wrong value.
#include "kit/prove/settle.h"

#include <unordered_set>

#include "kit/prove/abc.h"
#include "kit/prove/equal.h"
#include "kit/util/progress.h"
#include "model/run_settings.h"

namespace cubekit {

namespace {

constexpr std::size_t kShownGates = 40;
constexpr std::size_t kShownInputs = 16; // of one gate

char digit(bool value) { return value ? '1' : '0'; }

// The nets from the given one down to those whose values the vector gives, readers before what they read.
std::vector<NetIndex> nets_on_the_way(Circuit &circuit, const Claim &claim) {
  const Netlist &netlist = circuit.netlist;
  std::vector<NetIndex> nets{claim.net};
  std::unordered_set<NetIndex> seen{claim.net};
  for (std::size_t next = 0; next < nets.size() && nets.size() < kShownGates; next++) {
    const SymbolIndex driver = driver_of(netlist, nets[next]);
    const bool given = node_of(net_value(circuit, nets[next])) != 0 &&
                       circuit.formulas.nodes[node_of(net_value(circuit, nets[next]))].kind == NodeKind::VARIABLE;
    if (driver == kNone || (given && !(next == 0 && claim.at_driver))) continue;
    const Symbol &symbol = netlist.symbols[driver];
    for (const Pin pin : pins_of(netlist, symbol))
      if (pin.direction == Direction::IN && seen.insert(pin.net).second) nets.push_back(pin.net);
  }
  return nets;
}

// "  FD21 q0 <net> = 1 (A0 = 0, A1 = 1)" for each gate on the way.
std::string tell_gates(Circuit &circuit, Decider &decider, const Claim &claim, const Difference &difference) {
  if (claim.net == kNone) return {};
  const Netlist &netlist = circuit.netlist;
  std::string text;
  const auto value = [&](NetIndex net) {
    const Literal root = net == claim.net ? claim.actual : net_value(circuit, net);
    return digit(evaluate(decider, {&root, 1}, difference.vector)[0]);
  };
  for (const NetIndex net : nets_on_the_way(circuit, claim)) {
    const SymbolIndex driver = driver_of(netlist, net);
    text += "  net " + shortened(netlist.nets[net].name) + " = " + value(net);
    if (driver != kNone) {
      const Symbol &symbol = netlist.symbols[driver];
      text += ", driven by " + shortened(symbol.primitive_text) + ' ' + shortened(symbol.instance);
      std::size_t shown = 0;
      for (const Pin pin : pins_of(netlist, symbol)) {
        if (pin.direction != Direction::IN) continue;
        if (shown == kShownInputs) break;
        text += (shown++ == 0 ? " with " : ", ") + shortened(pin.name) + " = " + value(pin.net);
      }
    }
    text += '\n';
  }
  return text;
}

std::string tell_difference(Circuit &circuit, Decider &decider, const Claim &claim, const Difference &difference,
                            std::string_view other) {
  std::string text = claim.what + ": the netlist gives " + digit(difference.first) + ", " + std::string(other) + ' ' +
                     digit(difference.second) + "\n  for";
  for (const auto &[variable, value] : difference.vector)
    text += ' ' + circuit.formulas.variable_names[circuit.formulas.nodes[variable].first] + '=' + digit(value);
  if (difference.vector.empty()) text += " every input";
  return text + '\n' + tell_gates(circuit, decider, claim, difference);
}

// Primitives that the device series doesn't have.
void find_strange_primitives(const Netlist &netlist, int series, ProofReport &report) {
  for (const Symbol &symbol : netlist.symbols) {
    const PrimitiveRow &primitive = primitive_of(symbol);
    if (series >= primitive.min_series && series <= primitive.max_series) continue;
    report.texts.push_back(shortened(symbol.primitive_text) + ' ' + shortened(symbol.instance) +
                           ": devices of series " + std::to_string(series) + " have no such primitive\n");
  }
}

void settle_each(const Claims &claims, Circuit &circuit, const ProofOptions &options, ProofReport &report) {
  Decider decider{circuit.formulas, options.conflicts};
  Stage stage("claims settled", claims.list.size());
  std::size_t settled = 0;
  for (const Claim &claim : claims.list) {
    stage.set_done(settled++);
    Difference difference;
    if (!find_difference(decider, claim.actual, claim.wanted, difference)) continue;
    report.differences++;
    if (report.differences <= options.shown_differences)
      report.texts.push_back(tell_difference(circuit, decider, claim, difference, options.other));
  }
  report.claims = claims.list.size();
  report.by_structure = decider.by_structure;
  report.by_exhaustion = decider.by_exhaustion;
  report.by_sat = decider.by_sat;
  report.given_up = decider.given_up;
}

} // namespace

bool settle_claims(const Claims &claims, Circuit &circuit, const ProofOptions &options, ProofReport &report) {
  for (const std::string &fault : claims.faults) report.texts.push_back(fault + '\n');
  const Netlist &netlist = circuit.netlist;
  find_strange_primitives(netlist, options.series.value_or(cubenet::part_series(netlist.part)), report);
  settle_each(claims, circuit, options, report);
  std::string error;
  const auto ask = [&] { return ask_abc(circuit.formulas, claims.list, error); };
  if (options.abc && !during("asking berkeley-abc", ask)) report.texts.push_back("abc: " + error + '\n');
  return report.texts.empty() && report.differences == 0;
}

} // namespace cubekit
