// Declared names against each other and against the lists: repeated declarations, undeclared signals, the flag records
// of the signals that are used, and the removal of those that are not.
#include <array>

#include "drc/list_rules.h"
#include "drc/passes.h"
#include "drc/signal_rules.h"
#include "model/names.h"
#include "model/run_settings.h"
#include "report/messages.h"

namespace cubenet {

namespace {

constexpr std::size_t kPullupOption = 3;
constexpr std::string_view kPullupKeyword = "PULLUP ";

enum MacroUse : std::uint8_t { READ_BY_MACRO = 1, DRIVEN_BY_MACRO = 2 };

struct MacroUseRow {
  MacroUse use;
  UseFlag pin_flag, node_flag;
};
constexpr std::array<MacroUseRow, 2> kMacroUses{{
    {READ_BY_MACRO, F_PIN_MIN, F_NODE_MIN},
    {DRIVEN_BY_MACRO, F_PIN_MOUT, F_NODE_MOUT},
}};

// Calls visit(a, b) for a name and each later one that equals it: a over `from`..`to`, b not below `others`.
template <typename Visit>
void for_each_equal_pair(const TextIndex &index, SignalIndex from, SignalIndex to, SignalIndex others, Visit visit) {
  for (SignalIndex a = from; a < to; a++)
    for (SignalIndex b = index.next[static_cast<std::size_t>(a)]; b != kNoPosition;
         b = index.next[static_cast<std::size_t>(b)])
      if (b >= others) visit(a, b);
}

int bind_list(const TextIndex &names, const std::vector<std::string> &bases, const std::vector<std::string> &extensions,
              std::vector<SignalIndex> &signals) {
  int failed = 0;
  signals.assign(bases.size(), kNoSignal);
  for (std::size_t i = 0; i < bases.size(); i++) {
    signals[i] = find_text(names, bases[i]);
    if (signals[i] != kNoSignal) continue;
    report_error(31236, "Signal '%s' is not declared", display_name(bases[i], extensions[i]).c_str());
    failed = 1;
  }
  return failed;
}

// The entries of each signal in list order, as chains.
struct EntryChains {
  std::vector<std::int32_t> head; // per signal
  std::vector<std::int32_t> next; // per entry
};

EntryChains chain_entries(const std::vector<SignalIndex> &signals, SignalIndex signal_count) {
  EntryChains chains;
  chains.head.assign(static_cast<std::size_t>(signal_count), kNoPosition);
  chains.next.assign(signals.size(), kNoPosition);
  for (std::size_t i = signals.size(); i-- > 0;) {
    if (signals[i] == kNoSignal) continue;
    std::int32_t &head = chains.head[static_cast<std::size_t>(signals[i])];
    chains.next[i] = head;
    head = static_cast<std::int32_t>(i);
  }
  return chains;
}

// Where the signals are used. A name that is declared twice is known by its first declaration.
struct SignalUses {
  EntryChains outputs, inputs;
  std::vector<std::uint8_t> macros; // per signal: MacroUse bits
};

SignalUses collect_uses(const Design &design) {
  SignalUses uses;
  uses.outputs = chain_entries(design.olb_signals, signal_count(design));
  uses.inputs = chain_entries(design.ilb_signals, signal_count(design));
  uses.macros.assign(static_cast<std::size_t>(signal_count(design)), 0);
  const auto mark = [&](const std::vector<Connection> &connections, MacroUse use) {
    for (const Connection &connection : connections)
      if (connection.signal != kNoSignal) uses.macros[static_cast<std::size_t>(connection.signal)] |= use;
  };
  for (const Instance &instance : design.instances) {
    mark(instance.inputs, READ_BY_MACRO);
    mark(instance.outputs, DRIVEN_BY_MACRO);
  }
  return uses;
}

using EntryRule = int (*)(SignalFlags &flags, std::string_view extension, std::string_view name);

// One declaration with the entries that name it.
struct Declaration {
  bool is_pin;
  const std::string &name;
  SignalFlags &flags;
};

int judge_entries(const Declaration &declared, const EntryChains &chains, std::size_t key,
                  const std::vector<std::string> &extensions, EntryRule rule, std::uint32_t accepted_pin_flag) {
  int failed = 0;
  for (std::int32_t at = chains.head[key]; at != kNoPosition; at = chains.next[static_cast<std::size_t>(at)]) {
    declared.flags.present = true;
    if (declared.is_pin) declared.flags.use_flags |= F_NOD;
    if (rule(declared.flags, extensions[static_cast<std::size_t>(at)], declared.name) != 0)
      failed = 1;
    else if (declared.is_pin)
      declared.flags.use_flags |= accepted_pin_flag;
  }
  return failed;
}

int judge_declaration(const Design &design, const SignalUses &uses, std::size_t key, const Declaration &declared) {
  for (const MacroUseRow &row : kMacroUses) {
    if ((uses.macros[key] & row.use) == 0) continue;
    declared.flags.present = true;
    declared.flags.use_flags |= declared.is_pin ? row.pin_flag | F_NOD : row.node_flag;
  }
  const int failed = judge_entries(declared, uses.outputs, key, design.OB_EXT, check_output_entry, F_IO);
  return judge_entries(declared, uses.inputs, key, design.IB_EXT, check_input_entry, 0) | failed;
}

void remove_signal(Design &design, SignalIndex signal) {
  if (is_pin(design, signal)) {
    const auto pin = static_cast<std::size_t>(signal);
    std::string &name = design.pin_names[pin];
    report_warning(31544, "Pin '%s' is declared but not used; pin '%s' is removed", name.c_str(), name.c_str());
    name.clear();
    design.xpins[pin].xpin_num = {};
    design.pin_locations[pin] = -1;
  } else {
    std::string &name = design.node_names[static_cast<std::size_t>(signal) - design.pin_names.size()];
    report_warning(31545, "Node '%s' is declared but not used; node '%s' is removed", name.c_str(), name.c_str());
    name.clear();
  }
}

} // namespace

int check_declarations(const Design &design) {
  int failed = 0;
  const TextIndex names = index_signals(design, run_settings.case_sensitive);
  const SignalIndex pins = pin_count(design);
  for_each_equal_pair(names, 0, pins, 0, [&](SignalIndex pin, SignalIndex other) {
    if (other >= pins) return;
    report_error(31231, "Pin declaration '%s' on pin list is repeated", signal_name(design, pin).c_str());
    failed = 1;
  });
  for_each_equal_pair(names, pins, signal_count(design), pins, [&](SignalIndex node, SignalIndex) {
    report_error(31232, "Node declaration '%s' on node list is repeated", signal_name(design, node).c_str());
    failed = 1;
  });
  for_each_equal_pair(names, 0, pins, pins, [&](SignalIndex pin, SignalIndex node) {
    report_error(31233, "Pin declaration '%s' and node declaration '%s' are identical",
                 signal_name(design, pin).c_str(), signal_name(design, node).c_str());
    failed = 1;
  });
  return failed;
}

int bind_list_entries(Design &design, const TextIndex &exact_names) {
  int failed = bind_list(exact_names, design.OLB, design.OB_EXT, design.olb_signals);
  failed |= bind_list(exact_names, design.ILB, design.IB_EXT, design.ilb_signals);
  for (Instance &instance : design.instances)
    for (std::vector<Connection> *connections : {&instance.inputs, &instance.outputs})
      for (Connection &connection : *connections) connection.signal = find_text(exact_names, connection.name);
  return failed;
}

int collect_signal_flags(Design &design, const TextIndex &exact_names) {
  int failed = 0;
  design.pin_flags.assign(design.pin_names.size(), {});
  design.node_flags.assign(design.node_names.size(), {});
  const SignalUses uses = collect_uses(design);
  for (SignalIndex signal = 0; signal < signal_count(design); signal++) {
    const std::int32_t key = exact_names.first[static_cast<std::size_t>(signal)];
    if (key == kNoPosition) continue;
    const Declaration declared{is_pin(design, signal), signal_name(design, signal), signal_flags(design, signal)};
    failed |= judge_declaration(design, uses, static_cast<std::size_t>(key), declared);
    if (!declared.flags.present) remove_signal(design, signal);
  }
  return failed;
}

// "PULLUP on" switches all pull-ups on, unless it is meant for a pin called "on".
void remove_ambiguous_pullup(Design &design) {
  std::string &option = design.header.option[kPullupOption];
  if (option.size() <= kPullupKeyword.size()) return;
  const std::string_view value = std::string_view(option).substr(kPullupKeyword.size());
  for (const std::string &pin : design.pin_names) {
    if (pin.empty() || !equal_names(pin, value, run_settings.case_sensitive)) continue;
    report_warning(31555, "'%s' is a pin name, attribute '%s' is ambiguous; attribute '%s' is removed", pin.c_str(),
                   option.c_str(), option.c_str());
    option.clear();
    return;
  }
}

int check_signals(Design &design) {
  int failed = 0;
  for (SignalIndex signal = 0; signal < signal_count(design); signal++) {
    SignalFlags &flags = signal_flags(design, signal);
    if (!flags.present) continue;
    const bool inverted = is_pin(design, signal) && test_bit(design.pin_inversion, static_cast<std::size_t>(signal));
    failed |= check_signal_rules(flags, inverted, signal_name(design, signal), design.device_series);
  }
  return failed;
}

void write_numeric_locations(Design &design) {
  for (std::size_t pin = 0; pin < design.pin_names.size(); pin++)
    if (design.pin_locations[pin] != -1)
      design.xpins[pin].xpin_num.writable() = std::to_string(design.pin_locations[pin]);
}

int check_pin_locks(Design &design) {
  int failed = 0;
  std::vector<std::string_view> locations;
  locations.reserve(design.xpins.size());
  for (const XPin &xpin : design.xpins) locations.push_back(*xpin.xpin_num);
  const TextIndex index = index_texts(std::move(locations), false);
  // Of equal locations the first pin keeps its own, so each later one is reported once.
  for (std::size_t pin = 0; pin < design.xpins.size(); pin++) {
    if (index.first[pin] != static_cast<std::int32_t>(pin)) continue;
    for (std::int32_t at = index.next[pin]; at != kNoPosition; at = index.next[static_cast<std::size_t>(at)]) {
      const auto other = static_cast<std::size_t>(at);
      report_error(31234, "Pins '%s' and '%s' are locked to the same package pin number '%s'",
                   design.pin_names[pin].c_str(), design.pin_names[other].c_str(), design.xpins[pin].xpin_num->c_str());
      design.xpins[other].xpin_num = {};
      failed = 1;
    }
  }
  return failed;
}

} // namespace cubenet
