// Walks from a net down to nets whose values are known and builds the function on the way back up, without
// recursion: a netlist may be deeper than any stack.
#include "kit/prove/circuit.h"

#include <algorithm>

namespace cubekit {

namespace {

constexpr Literal kBusy = ~1U;   // on the way down: reaching it again is a loop
constexpr Literal kWithin = ~2U; // inside a tree that is treated as one gate

bool is_known(Literal value) { return value < kWithin; }

struct Frame {
  NetIndex net;
  std::vector<NetIndex> inputs{}; // of the gate, or of the tree that ends in it
  std::size_t settled = 0;        // inputs that are known by now
};

void set_fault(Circuit &circuit, NetIndex net, const char *what) {
  if (circuit.fault.empty())
    circuit.fault = std::string(what) + " '" + std::string(circuit.netlist.nets[net].name) + "'";
}

// A new variable, so that everything that depends on it differs.
Literal unknown_value(Circuit &circuit, NetIndex net) {
  return make_variable(circuit.formulas, "net " + std::string(circuit.netlist.nets[net].name));
}

// An AND of ANDs, or an OR of ORs, where nothing else reads the inner one.
bool is_inner(const Circuit &circuit, Function function, NetIndex net) {
  const Net &inner = circuit.netlist.nets[net];
  if (circuit.values[net] != kUnset || inner.destination_count != 1 || inner.source.symbol == kNone) return false;
  const PrimitiveRow &primitive = primitive_of(circuit.netlist.symbols[inner.source.symbol]);
  return primitive.function == function && !primitive.inverted;
}

void collect_inputs(Circuit &circuit, const Symbol &root, std::vector<NetIndex> &inputs) {
  const Netlist &netlist = circuit.netlist;
  const Function function = primitive_of(root).function;
  const bool grows = function == Function::AND || function == Function::OR;
  std::vector<const Symbol *> waiting{&root};
  while (!waiting.empty()) {
    const Symbol &symbol = *waiting.back();
    waiting.pop_back();
    for (const Pin pin : pins_of(netlist, symbol)) {
      if (pin.direction != Direction::IN || pin.net == kNone) continue;
      if (grows && is_inner(circuit, function, pin.net)) {
        circuit.values[pin.net] = kWithin;
        waiting.push_back(&netlist.symbols[netlist.nets[pin.net].source.symbol]);
      } else {
        inputs.push_back(pin.net);
      }
    }
  }
}

Literal table_value(Circuit &circuit, SymbolIndex symbol_index, const std::vector<Literal> &inputs) {
  const Symbol &symbol = circuit.netlist.symbols[symbol_index];
  if (const std::uint32_t output = circuit.zdot_outputs[symbol_index]; output != kNone) {
    // A ZDOT has no rows of its own: they are those of its equation, over the columns that the equation uses,
    // in order.
    const CubeTable &cubes = *circuit.meaning.cubes;
    std::vector<std::uint8_t> used(cubes.inputs);
    for (std::uint32_t i = circuit.meaning.starts[output]; i < circuit.meaning.starts[output + 1]; i++)
      for_each_literal(cubes, cube(cubes, circuit.meaning.terms[i]), [&](std::size_t input, bool) { used[input] = 1; });
    std::vector<Literal> columns(cubes.inputs, kFalse);
    std::size_t next = 0;
    for (std::size_t i = 0; i < columns.size(); i++)
      if (used[i] != 0 && next < inputs.size()) columns[i] = inputs[next++];
    return sum_of_terms(circuit.meaning, circuit.formulas, output, columns);
  }
  std::vector<Literal> terms, literals;
  for (std::size_t r = 0; r < symbol.row_count; r++) {
    const std::string_view row = row_at(symbol, r);
    literals.clear();
    for (std::size_t i = 0; i < row.size() && i < inputs.size(); i++)
      if (row[i] != '-') literals.push_back(invert(inputs[i], row[i] == '0'));
    terms.push_back(make_and(circuit.formulas, literals));
  }
  return make_or(circuit.formulas, terms);
}

Literal gate_value(Circuit &circuit, NetIndex net, const std::vector<NetIndex> &input_nets) {
  const Netlist &netlist = circuit.netlist;
  const EndPoint source = netlist.nets[net].source;
  const PrimitiveRow &primitive = primitive_of(netlist.symbols[source.symbol]);
  std::vector<Literal> inputs;
  for (const NetIndex input : input_nets) inputs.push_back(circuit.values[input]);
  switch (primitive.function) {
  case Function::AND: return invert(make_and(circuit.formulas, inputs), primitive.inverted);
  case Function::OR: return invert(make_or(circuit.formulas, inputs), primitive.inverted);
  case Function::XOR:
    if (inputs.size() != 2) break;
    return invert(make_xor(circuit.formulas, inputs[0], inputs[1]), netlist.pins[source.pin].name == "ZN0");
  case Function::BUFFER:
    if (inputs.size() != 1) break;
    return invert(inputs[0], primitive.inverted);
  case Function::TABLE: return table_value(circuit, source.symbol, inputs);
  default: break;
  }
  set_fault(circuit, net, "the value is not known of net");
  return unknown_value(circuit, net);
}

// Puts the net on the stack when it is not known yet.
void descend(Circuit &circuit, std::vector<Frame> &stack, NetIndex net) {
  if (is_known(circuit.values[net])) return;
  if (circuit.values[net] == kBusy) {
    set_fault(circuit, net, "a loop of gates runs through net");
    circuit.values[net] = unknown_value(circuit, net);
    return;
  }
  const Net &record = circuit.netlist.nets[net];
  if (record.rail) {
    circuit.values[net] = record.name == "VCC" ? kTrue : kFalse;
  } else if (record.source.symbol == kNone) {
    circuit.values[net] = unknown_value(circuit, net);
  } else {
    circuit.values[net] = kBusy;
    Frame &frame = stack.emplace_back(Frame{net});
    collect_inputs(circuit, circuit.netlist.symbols[record.source.symbol], frame.inputs);
  }
}

void settle(Circuit &circuit, NetIndex root) {
  std::vector<Frame> stack;
  descend(circuit, stack, root);
  while (!stack.empty()) {
    Frame &top = stack.back();
    if (top.settled < top.inputs.size()) {
      const NetIndex input = top.inputs[top.settled];
      if (is_known(circuit.values[input]))
        top.settled++;
      else
        descend(circuit, stack, input);
      continue;
    }
    const Frame frame = std::move(top);
    stack.pop_back();
    const Literal value = gate_value(circuit, frame.net, frame.inputs);
    if (circuit.values[frame.net] == kBusy) circuit.values[frame.net] = value;
  }
}

} // namespace

Circuit make_circuit(const Netlist &netlist, const Meaning &meaning, Formulas &formulas) {
  return {netlist, meaning, formulas, std::vector<Literal>(netlist.nets.size(), kUnset),
          std::vector<std::uint32_t>(netlist.symbols.size(), kNone)};
}

Literal net_value(Circuit &circuit, NetIndex net) {
  settle(circuit, net);
  return circuit.values[net];
}

Literal driver_value(Circuit &circuit, NetIndex net) {
  const SymbolIndex driver = driver_of(circuit.netlist, net);
  if (driver == kNone) return net_value(circuit, net);
  std::vector<NetIndex> inputs;
  collect_inputs(circuit, circuit.netlist.symbols[driver], inputs);
  for (const NetIndex input : inputs) settle(circuit, input);
  return gate_value(circuit, net, inputs);
}

Literal pin_value(Circuit &circuit, SymbolIndex symbol, std::string_view pin, Literal missing) {
  const NetIndex net = net_at(circuit.netlist, symbol, pin);
  return net == kNone ? missing : net_value(circuit, net);
}

} // namespace cubekit
