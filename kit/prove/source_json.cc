// Reads the module that Yosys makes of a source into functions over its inputs and registers.
#include <nlohmann/json.hpp>
#include <unordered_set>

#include "kit/import/yosys_json.h"
#include "kit/prove/source.h"
#include "kit/util/finding.h"

namespace cubekit {

using nlohmann::ordered_json;

namespace {

using Bit = std::uint64_t;

Bit number(const ordered_json &bit) { return bit.get<Bit>(); }

class Reader {
public:
  Reader(const ordered_json &module, Formulas &formulas, Source &source, std::string &error)
      : module_(module), formulas_(formulas), source_(source), error_(error) {}

  bool read() {
    if (!gather_cells()) return false;
    name_registers();
    gather_ports();
    find_owners();
    for (std::size_t i = 0; i < storage_.size(); i++) {
      const ordered_json &cell = *storage_[i];
      NextValue &next = source_.registers[i].next;
      next.cleared = value_at(cell, "R");
      next.set = value_at(cell, "S");
      next.event = value_at(cell, source_.registers[i].is_latch ? "E" : "C");
      next.next = value_at(cell, "D");
    }
    for (const auto &[port, bit] : driven_) drive(port, *bit);
    return error_.empty();
  }

private:
  static const ordered_json &bit_at(const ordered_json &cell, const char *pin) {
    return cell.at("connections").at(pin).at(0);
  }

  bool gather_cells() {
    for (const auto &cell : module_.at("cells")) {
      const auto type = cell.at("type").get<std::string>();
      const bool is_latch = type == "$_DLATCHSR_PPP_", is_register = is_latch || type == "$_DFFSR_PPP_";
      if (!is_register && type != "$_AND_" && type != "$_NOT_" && type != "$_TBUF_") {
        error_ = "yosys left a cell of type " + cubekit::quoted(type);
        return false;
      }
      const ordered_json &output = bit_at(cell, is_register ? "Q" : "Y");
      if (!output.is_number()) continue;
      (type == "$_TBUF_" ? buffers_ : is_register ? registers_ : gates_)[number(output)] = &cell;
      if (!is_register) continue;
      storage_.push_back(&cell);
      source_.registers.emplace_back().is_latch = is_latch;
    }
    return true;
  }

  // A register has the names of the nets that its output is on.
  void name_registers() {
    std::unordered_map<Bit, std::vector<std::string>> names;
    for (const auto &[name, net] : module_.at("netnames").items()) {
      const ordered_json &bits = net.at("bits");
      if (net.value("hide_name", 0) != 0) continue;
      for (std::size_t i = 0; i < bits.size(); i++)
        if (bits[i].is_number() && registers_.contains(number(bits[i])))
          names[number(bits[i])].push_back(bit_name(name, net, i));
    }
    for (std::size_t i = 0; i < storage_.size(); i++) {
      const Bit bit = number(bit_at(*storage_[i], "Q"));
      SourceRegister &storage = source_.registers[i];
      storage.names = std::move(names[bit]);
      const std::string name = storage.names.empty() ? "register " + std::to_string(i) : storage.names[0];
      storage.value = values_[bit] = make_variable(formulas_, name + ".Q");
    }
  }

  // The level at a pin is a variable of its own where the design doesn't drive it, or not always.
  void gather_ports() {
    for (const auto &[name, port] : module_.at("ports").items()) {
      const auto direction = port.at("direction").get<std::string>();
      const ordered_json &bits = port.at("bits");
      for (std::size_t i = bits.size(); i-- > 0;) {
        SourcePort &added = source_.ports.emplace_back(SourcePort{bit_name(name, port, i)});
        added.kind = direction == "input" ? PortKind::IN : direction == "output" ? PortKind::OUT : PortKind::INOUT;
        const Bit bit = bits[i].is_number() ? number(bits[i]) : 0; // 0: none
        const bool is_driven =
            !bits[i].is_number() || gates_.contains(bit) || registers_.contains(bit) || buffers_.contains(bit);
        if (added.kind != PortKind::IN) driven_.emplace_back(source_.ports.size() - 1, &bits[i]);
        if (!is_driven && added.kind == PortKind::OUT) continue; // the value of another port
        if (is_driven && (!buffers_.contains(bit) || bit_at(*buffers_[bit], "E") == "1")) continue;
        if (!values_.contains(bit)) values_[bit] = make_variable(formulas_, added.name);
        added.outside = values_[bit];
      }
    }
  }

  // Where ports share a net, the buffer belongs to the first bidirectional one, if any, else to the first;
  // the others show its level.
  void find_owners() {
    for (const PortKind kind : {PortKind::INOUT, PortKind::OUT})
      for (const auto &[port, bit] : driven_)
        if (source_.ports[port].kind == kind && bit->is_number()) owners_.try_emplace(number(*bit), port);
  }

  void drive(std::size_t index, const ordered_json &bit) {
    SourcePort &port = source_.ports[index];
    const bool is_buffer = bit.is_number() && buffers_.contains(number(bit)) && owners_.at(number(bit)) == index;
    if (port.kind == PortKind::INOUT && !is_buffer && port.outside != kUnset) return;
    if (is_buffer) port.enable = value_at(*buffers_[number(bit)], "E");
    port.value = is_buffer ? value_at(*buffers_[number(bit)], "A") : value_of(bit);
  }

  Literal value_at(const ordered_json &cell, const char *pin) { return value_of(bit_at(cell, pin)); }

  // An unknown one is low.
  Literal value_of(const ordered_json &bit) {
    if (!bit.is_number()) return bit.get<std::string>() == "1" ? kTrue : kFalse;
    settle(number(bit));
    return values_.at(number(bit));
  }

  const ordered_json *find_driver(Bit bit) const {
    for (const auto *drivers : {&gates_, &buffers_})
      if (const auto found = drivers->find(bit); found != drivers->end()) return found->second;
    return nullptr;
  }

  static std::vector<const ordered_json *> inputs_of(const ordered_json &gate) {
    const auto type = gate.at("type").get<std::string>();
    if (type == "$_AND_") return {&bit_at(gate, "A"), &bit_at(gate, "B")};
    return {&bit_at(gate, "A")}; // an inverter, or a buffer that always drives
  }

  // Without recursion: logic may be deeper than any stack.
  void settle(Bit root) {
    std::vector<Bit> open{root};
    std::unordered_set<Bit> on_the_way;
    while (!open.empty()) {
      const Bit bit = open.back();
      if (values_.contains(bit)) {
        open.pop_back();
        continue;
      }
      const ordered_json *gate = find_driver(bit);
      if (gate == nullptr) {
        values_[bit] = make_variable(formulas_, "a signal without a driver");
        continue;
      }
      const std::size_t before = open.size();
      on_the_way.insert(bit);
      const auto inputs = inputs_of(*gate);
      for (const ordered_json *input : inputs)
        if (input->is_number() && !values_.contains(number(*input))) open.push_back(number(*input));
      for (std::size_t i = before; i < open.size(); i++)
        if (on_the_way.contains(open[i])) {
          error_ = "the source has a loop of logic without a register";
          values_[open[i]] = make_variable(formulas_, "a loop");
        }
      if (open.size() > before) continue;
      values_[bit] = gate_value(*gate, inputs);
      on_the_way.erase(bit);
      open.pop_back();
    }
  }

  Literal gate_value(const ordered_json &gate, const std::vector<const ordered_json *> &inputs) {
    std::vector<Literal> literals;
    for (const ordered_json *input : inputs) literals.push_back(value_of(*input));
    return invert(make_and(formulas_, literals), gate.at("type").get<std::string>() == "$_NOT_");
  }

  const ordered_json &module_;
  Formulas &formulas_;
  Source &source_;
  std::string &error_;
  std::unordered_map<Bit, const ordered_json *> gates_{}, buffers_{}, registers_{}; // by what they drive
  std::unordered_map<Bit, std::size_t> owners_{};                                   // ports
  std::vector<const ordered_json *> storage_{};                                     // of Source::registers
  std::vector<std::pair<std::size_t, const ordered_json *>> driven_{};              // ports but inputs
  std::unordered_map<Bit, Literal> values_{};
};

} // namespace

bool read_source_json(std::string_view text, Formulas &formulas, Source &source, std::string &error) {
  const ordered_json design = ordered_json::parse(text, nullptr, false);
  const ordered_json *module = find_top(design);
  error.clear();
  try {
    if (module != nullptr) return Reader(*module, formulas, source, error).read();
  } catch (const ordered_json::exception &) { // something is missing, or of another type
  } catch (const std::out_of_range &) {
  }
  error = "yosys gave a design that can't be read";
  return false;
}

} // namespace cubekit
