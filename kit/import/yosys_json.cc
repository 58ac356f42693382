// Reads the module that Yosys writes: ports, sums of products, registers, latches and tristate buffers, each
// of one bit. The bits are the signals of the draft.
#include "kit/import/yosys_json.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <nlohmann/json.hpp>
#include <tuple>
#include <unordered_map>

#include "kit/util/finding.h"

namespace cubekit {

using cubenet::ExtensionCode;
using enum cubenet::ExtensionCode;
using nlohmann::ordered_json;

namespace {

// The type of a register or latch has a letter per control, for the level at which it acts.
struct StorageCell {
  std::string_view type;    // up to the letters
  std::string_view letters; // one per place: the pin it is for; 'V': the value after a reset
  bool is_synchronous;      // the reset
};
// clang-format off
constexpr auto kStorageCells = std::to_array<StorageCell>({
    {"$_DFF_",      "C",    false},
    {"$_DFF_",      "CRV",  false},
    {"$_DFFE_",     "CE",   false},
    {"$_DFFE_",     "CRVE", false},
    {"$_DFFSR_",    "CSR",  false},
    {"$_DFFSRE_",   "CSRE", false},
    {"$_SDFF_",     "CRV",  true},
    {"$_SDFFCE_",   "CRVE", true}, // the enable gates the reset
    {"$_DLATCH_",   "G",    false}, // G: pin E, the gate
    {"$_DLATCH_",   "GRV",  false},
    {"$_DLATCHSR_", "GSR",  false},
});
// clang-format on

// A bit: a number, or the text of a constant.
constexpr std::uint32_t kLow = kNone - 1, kHigh = kNone - 2; // no real signals

struct PublicNet {
  std::size_t depth; // instances in its name
  Place place;
  std::size_t order;
  std::string name;
  const ordered_json *net;
};

class Reader {
public:
  Reader(const ordered_json &module, Draft &draft, Remark &fault) : module_(module), draft_(draft), fault_(fault) {}

  bool read() {
    return read_ports() && read_nets() && add_unnamed() && read_cells() && add_aliases() && check_drivers();
  }

private:
  bool fail(Place place, std::string text) {
    fault_ = {place, std::move(text)};
    return false;
  }

  // Bits of a vector are listed as they are written, the left one first. Where ports share a bit, the first
  // input, or else the first bidirectional port, drives the others.
  bool read_ports() {
    constexpr std::array kRanks{PortKind::IN, PortKind::INOUT, PortKind::OUT};
    std::array<std::vector<std::pair<std::uint32_t, const ordered_json *>>, kRanks.size()> ports;
    for (const auto &[name, port] : module_.at("ports").items()) {
      const auto direction = port.at("direction").get<std::string>();
      const std::size_t rank = direction == "input" ? 0 : direction == "output" ? 2 : 1;
      const auto net = module_.at("netnames").find(name);
      const Place place = net == module_.at("netnames").end() ? Place{} : source_place(draft_, *net);
      const ordered_json &bits = port.at("bits");
      for (std::size_t i = bits.size(); i-- > 0;)
        ports[rank].emplace_back(add_signal(draft_, bit_name(name, port, i), kRanks[rank], place), &bits[i]);
    }
    for (const auto &list : ports)
      for (const auto &[signal, bit] : list) {
        if (bit->is_number() && signals_.try_emplace(number(*bit), signal).second) continue;
        const DraftSignal &port = draft_.signals[signal];
        if (port.port == PortKind::IN)
          return fail(port.place, cubekit::quoted(port.source) + " is an input, and driven in the module");
        aliases_.emplace_back(signal, bit);
      }
    return true;
  }

  std::vector<PublicNet> public_nets() {
    std::vector<PublicNet> nets;
    for (const auto &[name, net] : module_.at("netnames").items()) {
      if (net.value("hide_name", 0) != 0) continue;
      const auto depth = static_cast<std::size_t>(std::ranges::count(name, '.'));
      nets.push_back({depth, source_place(draft_, net), nets.size(), name, &net});
    }
    return nets;
  }

  // A bit with several names takes the one with the fewest instances in it, then the first in the source.
  bool read_nets() {
    std::vector<PublicNet> nets = public_nets();
    const auto by_place = [](const PublicNet &net) { return std::tuple(net.place.file, net.place.line, net.order); };
    std::ranges::sort(nets, {},
                      [&](const PublicNet &net) { return std::tuple_cat(std::tuple(net.depth), by_place(net)); });
    std::unordered_map<std::uint64_t, const PublicNet *> names;
    for (const PublicNet &net : nets)
      for (const ordered_json &bit : net.net->at("bits"))
        if (bit.is_number()) names.try_emplace(number(bit), &net);
    std::vector<const PublicNet *> in_order;
    for (const PublicNet &net : nets) in_order.push_back(&net);
    std::ranges::sort(in_order, {}, [&](const PublicNet *net) { return by_place(*net); });
    for (const PublicNet *net : in_order) {
      const ordered_json &bits = net->net->at("bits");
      for (std::size_t i = bits.size(); i-- > 0;)
        if (bits[i].is_number() && names.at(number(bits[i])) == net && !signals_.contains(number(bits[i])))
          signals_[number(bits[i])] = add_signal(draft_, bit_name(net->name, *net->net, i), PortKind::NONE, net->place);
      count_initial(*net);
    }
    return true;
  }

  void count_initial(const PublicNet &net) {
    const auto attributes = net.net->find("attributes");
    if (attributes == net.net->end() || !attributes->contains("init")) return;
    const auto value = attributes->at("init").get<std::string>();
    const auto known = static_cast<std::size_t>(std::ranges::count(value, '0') + std::ranges::count(value, '1'));
    if (known > 0 && lost_values_ == 0) lost_place_ = net.place;
    lost_values_ += known;
  }

  // Bits that only cells name.
  bool add_unnamed() {
    for (const auto &cell : module_.at("cells"))
      for (const auto &bits : cell.at("connections"))
        for (const ordered_json &bit : bits)
          if (bit.is_number() && !signals_.contains(number(bit)))
            signals_[number(bit)] = add_signal(draft_, "", PortKind::NONE, source_place(draft_, cell));
    return true;
  }

  static std::uint64_t number(const ordered_json &bit) { return bit.get<std::uint64_t>(); }

  // kLow or kHigh for a constant; an unknown one is low.
  std::uint32_t signal_of_bit(const ordered_json &bit) const {
    if (!bit.is_number()) return bit.get<std::string>() == "1" ? kHigh : kLow;
    return signals_.at(number(bit));
  }

  std::uint32_t signal_at(const ordered_json &cell, const char *pin) const {
    return signal_of_bit(cell.at("connections").at(pin).at(0));
  }

  // The equation is that signal's value, or its complement.
  void add_value(std::uint32_t signal, ExtensionCode extension, std::uint32_t from, bool is_true, Place place) {
    Equation &equation = add_equation(draft_, signal, extension, place);
    const bool is_constant = from == kLow || from == kHigh;
    if (!is_constant)
      add_product(draft_, equation, {2 * from + (is_true ? 1U : 0U)});
    else if ((from == kHigh) == is_true)
      add_product(draft_, equation, {});
  }

  // The signal that a cell drives, unless another one does.
  bool find_driven(const ordered_json &cell, const char *pin, std::uint32_t &signal) {
    signal = signal_at(cell, pin);
    if (signal == kLow || signal == kHigh) return fail(source_place(draft_, cell), "a constant is driven");
    const DraftSignal &driven = draft_.signals[signal];
    const std::string name = driven.source.empty() ? "a signal" : cubekit::quoted(driven.source);
    if (driven.port == PortKind::IN) return fail(driven.place, name + " is an input, and driven in the module");
    if (!driven.equations.empty()) return fail(driven.place, name + " is driven more than once");
    return true;
  }

  bool read_cells() {
    for (const auto &cell : module_.at("cells")) {
      const auto type = cell.at("type").get<std::string>();
      const bool is_read = type == "$sop"                         ? read_sop(cell)
                           : type == "$_NOT_" || type == "$_BUF_" ? read_inverter(cell, type == "$_BUF_")
                           : type == "$_TBUF_"                    ? read_tristate(cell)
                           : type.starts_with("$_")               ? read_storage(cell, type)
                                                                  : refuse(cell, type);
      if (!is_read) return false;
    }
    if (lost_values_ > 0)
      draft_.remarks.push_back({lost_place_, "initial values are lost, " + std::to_string(lost_values_) +
                                                 (lost_values_ == 1 ? " bit" : " bits") + " in all: a table has none"});
    return true;
  }

  bool refuse(const ordered_json &cell, const std::string &type) {
    return fail(source_place(draft_, cell),
                "a cell of type " + cubekit::quoted(type) + " has no counterpart in a table");
  }

  // TABLE has two bits for each input of each product, starting from its end: must be 0, must be 1.
  bool read_sop(const ordered_json &cell) {
    std::uint32_t output = 0;
    if (!find_driven(cell, "Y", output)) return false;
    const ordered_json &inputs = cell.at("connections").at("A");
    const auto table = cell.at("parameters").at("TABLE").get<std::string>();
    const std::uint64_t depth = number_of(cell.at("parameters"), "DEPTH");
    if (inputs.empty() || depth > table.size() || table.size() < 2 * inputs.size() * depth) return refuse(cell, "$sop");
    Equation &equation = add_equation(draft_, output, EXT_NONE, draft_.signals[output].place);
    for (std::size_t product = 0; product < depth; product++) {
      std::vector<TermLiteral> literals;
      bool is_possible = true;
      for (std::size_t i = 0; i < inputs.size(); i++) {
        const std::size_t at = table.size() - 1 - 2 * (product * inputs.size() + i);
        for (const bool level : {false, true}) {
          if (table[at - (level ? 1 : 0)] != '1') continue;
          const std::uint32_t signal = signal_of_bit(inputs[i]);
          if (signal == kLow || signal == kHigh)
            is_possible &= (signal == kHigh) == level;
          else
            literals.push_back(2 * signal + (level ? 1 : 0));
        }
      }
      if (is_possible) add_product(draft_, equation, std::move(literals));
    }
    return true;
  }

  bool read_inverter(const ordered_json &cell, bool is_true) {
    std::uint32_t output = 0;
    if (!find_driven(cell, "Y", output)) return false;
    add_value(output, EXT_NONE, signal_at(cell, "A"), is_true, draft_.signals[output].place);
    return true;
  }

  bool read_tristate(const ordered_json &cell) {
    const Place place = source_place(draft_, cell);
    std::uint32_t output = 0;
    if (!find_driven(cell, "Y", output)) return false;
    if (draft_.signals[output].port == PortKind::NONE) return fail(place, "a tristate buffer that drives no port");
    add_value(output, EXT_NONE, signal_at(cell, "A"), true, place);
    const std::uint32_t enable = signal_at(cell, "E");
    if (enable != kHigh) add_value(output, EXT_OE, enable, true, place);
    return true;
  }

  bool read_storage(const ordered_json &cell, const std::string &type) {
    const std::size_t middle = type.find('_', 2);
    const std::string head = type.substr(0, std::min(middle, type.size() - 1) + 1);
    const std::string letters =
        type.ends_with('_') && middle + 1 < type.size() ? type.substr(middle + 1, type.size() - middle - 2) : "";
    const auto kind = std::ranges::find_if(kStorageCells, [&](const StorageCell &each) {
      return each.type == head && each.letters.size() == letters.size();
    });
    if (kind == kStorageCells.end() || letters.empty()) return refuse(cell, type);
    const Place place = source_place(draft_, cell);
    std::uint32_t output = 0;
    if (!find_driven(cell, "Q", output)) return false;
    add_value(output, EXT_D, signal_at(cell, "D"), true, place);
    for (std::size_t i = 0; i < letters.size(); i++) {
      const bool is_high = letters[i] == 'P';
      switch (kind->letters[i]) {
      case 'C': add_value(output, EXT_C, signal_at(cell, "C"), is_high, place); break;
      case 'G': add_value(output, is_high ? EXT_LH : EXT_LE, signal_at(cell, "E"), true, place); break;
      case 'E': add_value(output, EXT_CE, signal_at(cell, "E"), is_high, place); break;
      case 'S': add_value(output, EXT_AP, signal_at(cell, "S"), is_high, place); break;
      case 'R': {
        const bool has_value = i + 1 < letters.size() && kind->letters[i + 1] == 'V';
        const bool sets = has_value && letters[i + 1] == '1';
        const ExtensionCode extension = kind->is_synchronous ? (sets ? EXT_SP : EXT_SR) : (sets ? EXT_AP : EXT_AR);
        add_value(output, extension, signal_at(cell, "R"), is_high, place);
        break;
      }
      default: break; // the value belongs to the reset
      }
    }
    return true;
  }

  // Ports that share a bit with another port, or are constants.
  bool add_aliases() {
    for (const auto &[signal, bit] : aliases_) {
      const Place place = draft_.signals[signal].place;
      if (bit->is_string() && bit->get<std::string>() == "z") return tell_undriven(draft_.signals[signal]);
      add_value(signal, EXT_NONE, signal_of_bit(*bit), true, place);
    }
    return true;
  }

  bool tell_undriven(const DraftSignal &signal) {
    return fail(signal.place,
                (signal.source.empty() ? "a signal" : cubekit::quoted(signal.source)) + " is driven by nothing");
  }

  bool check_drivers() {
    bool has_output = false;
    for (const DraftSignal &signal : draft_.signals) {
      const bool is_input = signal.port == PortKind::IN || signal.port == PortKind::INOUT;
      has_output |= signal.port != PortKind::NONE && !signal.equations.empty();
      if (!signal.equations.empty() || is_input) continue;
      if (signal.port == PortKind::OUT) return tell_undriven(signal);
      undriven_.push_back(&signal);
    }
    if (!has_output) return fail({}, "the module drives no output");
    std::vector<bool> is_read(draft_.signals.size());
    for (const TermLiteral literal : draft_.terms.literals) is_read[cubekit::signal_of(literal)] = true;
    for (const DraftSignal *signal : undriven_)
      if (is_read[static_cast<std::size_t>(signal - draft_.signals.data())]) return tell_undriven(*signal);
    return true;
  }

  const ordered_json &module_;
  Draft &draft_;
  Remark &fault_;
  std::unordered_map<std::uint64_t, std::uint32_t> signals_{};            // by bit
  std::vector<std::pair<std::uint32_t, const ordered_json *>> aliases_{}; // ports, and their bits
  std::vector<const DraftSignal *> undriven_{};
  std::size_t lost_values_ = 0; // initial values
  Place lost_place_{};
};

} // namespace

std::string bit_name(const std::string &name, const ordered_json &vector, std::size_t bit) {
  const std::size_t size = vector.at("bits").size();
  const auto offset = vector.value("offset", std::int64_t{0});
  if (size == 1 && offset == 0) return name;
  const bool is_upto = vector.value("upto", 0) != 0;
  return name + '[' + std::to_string(offset + static_cast<std::int64_t>(is_upto ? size - 1 - bit : bit)) + ']';
}

const ordered_json *find_top(const ordered_json &design) {
  const auto modules = design.find("modules");
  if (modules == design.end() || !modules->is_object()) return nullptr;
  for (const ordered_json &module : *modules)
    if (module.is_object() && module.contains("attributes") && module["attributes"].is_object() &&
        module["attributes"].contains("top"))
      return &module;
  return modules->size() == 1 ? &modules->begin().value() : nullptr;
}

std::uint64_t number_of(const ordered_json &parameters, const char *name) {
  const auto found = parameters.find(name);
  if (found == parameters.end()) return 0;
  if (found->is_number()) return found->get<std::uint64_t>();
  std::uint64_t value = 0;
  for (const char c : found->get<std::string>()) value = value << 1 | (c == '1' ? 1U : 0U);
  return value;
}

Place parse_place(Draft &draft, std::string_view text) {
  text = text.substr(0, text.find('|'));
  for (std::size_t colon = text.rfind(':'); colon != std::string_view::npos && colon > 0;
       colon = text.rfind(':', colon - 1)) {
    std::size_t line = 0;
    const char *start = text.data() + colon + 1;
    if (std::from_chars(start, text.data() + text.size(), line).ptr == start) continue;
    const std::string_view file = text.substr(0, colon);
    auto known = std::ranges::find(draft.files, file);
    if (known == draft.files.end()) known = draft.files.emplace(known, file);
    return {static_cast<std::uint32_t>(known - draft.files.begin()), line};
  }
  return {};
}

Place source_place(Draft &draft, const ordered_json &item) {
  const auto attributes = item.find("attributes");
  if (attributes == item.end() || !attributes->is_object()) return {};
  const auto source = attributes->find("src");
  return source == attributes->end() || !source->is_string() ? Place{} : parse_place(draft, source->get<std::string>());
}

bool read_yosys_json(std::string_view text, Draft &draft, Remark &fault) {
  const ordered_json design = ordered_json::parse(text, nullptr, false);
  const ordered_json *module = find_top(design);
  fault = {{}, "no module of Yosys' JSON form"};
  if (module == nullptr) return false;
  try {
    for (const auto &[name, each] : design["modules"].items())
      if (&each == module) draft.module = name;
    return Reader(*module, draft, fault).read();
  } catch (const ordered_json::exception &) {
    return false; // something is missing, or of another type
  } catch (const std::out_of_range &) {
    return false;
  }
}

} // namespace cubekit
