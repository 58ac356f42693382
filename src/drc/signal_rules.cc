// Rules for the combination of a signal's equations and readers: which register they describe, whether its
// inputs are complete and free of conflict, and what is legal only on a register, a pin or some device
// series. Each rule is a row; every row that applies to a signal is reported, in table order.
#include "drc/signal_rules.h"

#include <array>
#include <string>

#include "model/run_settings.h"
#include "report/console.h"
#include "report/messages.h"

namespace cubenet {

namespace {

// The data inputs that a latch may have.
constexpr std::uint32_t kDStyle = F_D | F_REG | F_DX1 | F_GX1 | F_DX2 | F_GX2;
constexpr std::uint32_t kOtherData = F_T | F_J | F_S | F_TX1 | F_K | F_R | F_TX2;
constexpr std::uint32_t kDX = F_DX1 | F_DX2;
constexpr std::uint32_t kGX = F_GX1 | F_GX2;
constexpr std::uint32_t kTX = F_TX1 | F_TX2;
constexpr std::uint32_t kX = F_X1 | F_X2;
constexpr std::uint32_t kJKRS = F_J | F_K | F_R | F_S;

struct DataInput {
  RoleFlag flag;
  const char *extension;
};
// In the order in which conflicts are reported.
constexpr std::array<DataInput, 14> kSecondaries{{{F_DX1, ".D.X1"},
                                                  {F_DX2, ".D.X2"},
                                                  {F_T, ".T"},
                                                  {F_TX1, ".T.X1"},
                                                  {F_TX2, ".T.X2"},
                                                  {F_REG, ".REG"},
                                                  {F_GX1, ".REG.X1"},
                                                  {F_GX2, ".REG.X2"},
                                                  {F_J, ".J"},
                                                  {F_K, ".K"},
                                                  {F_R, ".R"},
                                                  {F_S, ".S"},
                                                  {F_X1, ".X1"},
                                                  {F_X2, ".X2"}}};

// The first row whose primary is present determines the kind of register; only the rows of that primary are
// checked.
struct ConflictRow {
  RoleFlag primary;
  const char *extension;
  int number;
  std::uint32_t secondaries;
};
// clang-format off
constexpr std::array<ConflictRow, 14> kConflicts{{
    {F_D,   ".D",      31280,  kDX | F_T | kTX | F_REG | kGX | kJKRS | kX},
    {F_T,   ".T",      31281,  kDX | kTX | F_REG | kGX | kJKRS | kX},
    {F_REG, ".REG",    31282,  kDX | kTX | kGX | kJKRS | kX},
    {F_J,   ".J",      31283,  kDX | kTX | kGX | F_R | F_S | kX},
    {F_K,   ".K",      31284,  kDX | kTX | kGX | F_R | F_S | kX},
    {F_R,   ".R",      31292,  kDX | kTX | kGX | kX},
    {F_S,   ".S",      31293,  kDX | kTX | kGX | kX},
    {F_DX1, ".D.X1",   31285,  kTX | kGX | kX},
    {F_DX2, ".D.X2",   31286,  kTX | kGX | kX},
    {F_TX1, ".T.X1",   31287,  kGX | kX},
    {F_TX2, ".T.X2",   31288,  kGX | kX},
    {F_GX1, ".REG.X1", 31289,  kX},
    {F_GX2, ".REG.X2", 312290, F_X1}, // tools know the number by this spelling; not 31290
    {F_GX2, ".REG.X2", 31290,  F_X2},
}};
// clang-format on

// Conditions of rules beyond single flags.
enum Situation : std::uint32_t {
  ALWAYS = 0,
  REGISTERED = 1U << 0,
  COMBINATIONAL = 1U << 1,
  D_STYLE = 1U << 2,     // some data input that a latch may have
  OTHER_STYLE = 1U << 3, // registered, and none of those
  PIN = 1U << 4,
  NODE = 1U << 5,
  LATCH = 1U << 6,
  PRESET_AND_RESET = 1U << 7,
  SMALL_SERIES = 1U << 8, // has no registers with both preset and reset
  PLAIN_NODES = 1U << 9,  // the series has no internal tristate buffers
  VERBOSE = 1U << 10,
  INVERTED = 1U << 11,
  GATE = 1U << 12, // a node, or a pin with an equation
  // At most one of these: the kind of register, for its feedback.
  D_REGISTER = 1U << 13,
  GENERIC_REGISTER = 1U << 14,
  JK_REGISTER = 1U << 15,
  SR_REGISTER = 1U << 16,
  T_REGISTER = 1U << 17,
};

// Both flag words of a signal combined.
using Flags = std::uint64_t;
constexpr Flags use(std::uint32_t use_flags) { return Flags{use_flags} << 32; }

enum Severity : std::uint8_t { ERROR, WARNING };

// Applies if all situations in `when` hold, all flags of `all` are set and none of `none`. Each "%s" in the
// text is the signal's name.
struct Rule {
  std::uint32_t when;
  Flags all, none;
  int number;
  const char *text;
  Severity severity = ERROR;
};

constexpr Flags kGateInputs = F_C | F_LH | F_LE | F_OUT | F_X1 | F_X2;
constexpr Flags kMacroPorts = use(F_NODE_MIN | F_NODE_MOUT | F_PIN_MIN | F_PIN_MOUT);
constexpr int kNoInput = 31351;

// clang-format off
constexpr std::array kRules{
    // Incomplete pairs.
    Rule{ALWAYS, F_DX2, F_DX1, 31291, "Register '%s' has missing data input '%s.D.X1'"},
    Rule{ALWAYS, F_DX1, F_DX2, 31291, "Register '%s' has missing data input '%s.D.X2'"},
    Rule{ALWAYS, F_GX2, F_GX1, 31291, "Register '%s' has missing data input '%s.REG.X1'"},
    Rule{ALWAYS, F_GX1, F_GX2, 31291, "Register '%s' has missing data input '%s.REG.X2'"},
    Rule{ALWAYS, F_K, F_J, 31291, "Register '%s' has missing data input '%s.J'"},
    Rule{ALWAYS, F_J, F_K, 31291, "Register '%s' has missing data input '%s.K'"},
    Rule{ALWAYS, F_S, F_R, 31291, "Register '%s' has missing data input '%s.R'"},
    Rule{ALWAYS, F_R, F_S, 31291, "Register '%s' has missing data input '%s.S'"},
    Rule{ALWAYS, F_TX2, F_TX1, 31291, "Register '%s' has missing data input '%s.T.X1'"},
    Rule{ALWAYS, F_TX1, F_TX2, 31291, "Register '%s' has missing data input '%s.T.X2'"},
    Rule{ALWAYS, F_X2, F_X1, 31291, "XOR gate '%s' has missing input '%s.X1'"},
    Rule{ALWAYS, F_X1, F_X2, 31291, "XOR gate '%s' has missing input '%s.X2'"},

    // Clock, or latch gate.
    Rule{REGISTERED, F_C | F_LE, 0, 31300, "Register '%s' has conflicting clock signal, '%s.C' and '%s.LE'"},
    Rule{REGISTERED, F_C | F_LH, 0, 31300, "Register '%s' has conflicting clock signal, '%s.C' and '%s.LH'"},
    Rule{OTHER_STYLE, F_LE, F_C, 31302,
         "Register clock signal '%s.LE' is invalid; dot extension '.LE' is only valid for D register"},
    Rule{OTHER_STYLE, F_LH, F_C | F_LE, 31302,
         "Register clock signal '%s.LH' is invalid; dot extension '.LH' is only valid for D register"},
    Rule{D_STYLE, F_LE | F_CE, F_C, 31310,
         "Register '%s' has conflicting clock signal, '%s.CE' and '%s.LE'; dot extension '.CE' can only be used with "
         "dot extension '.CLK' or '.C'"},
    Rule{D_STYLE, F_LE | F_LH, F_C, 31300, "Register '%s' has conflicting clock signal, '%s.LH' and '%s.LE'"},
    Rule{D_STYLE, F_LH | F_CE, F_C | F_LE, 31310,
         "Register '%s' has conflicting clock signal, '%s.CE' and '%s.LH'; dot extension '.CE' can only be used with "
         "dot extension '.CLK' or '.C'"},
    Rule{REGISTERED, 0, F_C | F_LE | F_LH, 31301, "Register '%s' has missing clock signal"},

    // Registered signals.
    Rule{REGISTERED, F_OUT, 0, 31311, "Signal '%s' is used as register data input; dot extension is required"},
    Rule{REGISTERED, use(F_DIN | F_RIN), 0, 31321,
         "Register '%s' has conflicting feedbacks from data input, '%s.D' and '%s.REG'"},
    Rule{REGISTERED, use(F_DIN | F_TIN), 0, 31321,
         "Register '%s' has conflicting feedbacks from data input, '%s.D' and '%s.T'"},
    Rule{REGISTERED, use(F_RIN | F_TIN), use(F_DIN), 31321,
         "Register '%s' has conflicting feedbacks from data input, '%s.REG' and '%s.T'"},
    Rule{D_REGISTER, use(F_RIN), 0, 31322, "D register '%s' has conflicting feedback from data input, '%s.REG'"},
    Rule{D_REGISTER, use(F_TIN), 0, 31322, "D register '%s' has conflicting feedback from data input, '%s.T'"},
    Rule{GENERIC_REGISTER, use(F_TIN), 0, 31324,
         "Generic register '%s' has conflicting feedback from data input, '%s.T'"},
    Rule{JK_REGISTER, use(F_RIN), 0, 31325, "JK register '%s' has conflicting feedback from data input, '%s.REG'"},
    Rule{JK_REGISTER, use(F_TIN), 0, 31325, "JK register '%s' has conflicting feedback from data input, '%s.T'"},
    Rule{SR_REGISTER, use(F_RIN), 0, 31326, "SR register '%s' has conflicting feedback from data input, '%s.REG'"},
    Rule{SR_REGISTER, use(F_TIN), 0, 31326, "SR register '%s' has conflicting feedback from data input, '%s.T'"},
    Rule{T_REGISTER, use(F_RIN), 0, 31327, "T register '%s' has conflicting feedback from data input, '%s.REG'"},
    Rule{REGISTERED | PIN, F_PIN | use(F_IN), 0, 31331,
         "Register '%s' has conflicting pin feedbacks; '%s' and '%s.PIN' cannot be used in the same design"},
    Rule{REGISTERED | NODE, F_PIN, 0, 31329,
         "Dot extension '.PIN' is used on node '%s'; dot extension '.PIN' can only be applied to a pin"},
    Rule{REGISTERED | NODE | PLAIN_NODES, F_OE, 0, 31330,
         "Dot extension '.OE' is used on node '%s'; dot extension '.OE' can only be applied to a pin"},
    Rule{REGISTERED | NODE, 0, F_Q | F_FB | use(F_IN), 31551, "Register '%s' does not fan out", WARNING},
    Rule{REGISTERED, F_SR | F_SP, 0, 31554,
         "Both signals '%s.SP' and '%s.SR' are used, active '%s.SP' overrides active '%s.SR'", WARNING},
    Rule{REGISTERED | LATCH, F_SR, 0, 31333,
         "Latch '%s' has illegal synchronous reset signal; Dot extension '.SR' cannot be used with dot extension '.LH' "
         "or '.LE'"},
    Rule{REGISTERED | LATCH, F_SP, 0, 31334,
         "Latch '%s' has illegal synchronous preset signal; Dot extension '.SP' cannot be used with dot extension "
         "'.LH' or '.LE'"},
    Rule{REGISTERED, F_AR | F_RE, 0, 31332,
         "Register '%s' has conflicting reset signal; '%s.AR' and '%s.RE' cannot be used in the same design"},
    // The word "reset" is intended in the preset text too.
    Rule{REGISTERED, F_AP | F_PR, 0, 31332,
         "Register '%s' has conflicting reset signal; '%s.AP' and '%s.PR' cannot be used in the same design"},
    Rule{REGISTERED | PRESET_AND_RESET | SMALL_SERIES, 0, 0, 31335,
         "Register '%s' has both preset and reset signals; '%s.AP'('%s.PR') and '%s.AR'('%s.RE') cannot be used in the "
         "same design"},

    // Combinational signals.
    Rule{COMBINATIONAL, F_C, 0, 31305, "Register '%s' has missing data input signal"},
    Rule{COMBINATIONAL, F_LE, 0, 31305, "Register '%s' has missing data input signal"},
    Rule{COMBINATIONAL, F_LH, 0, 31305, "Register '%s' has missing data input signal"},
    Rule{COMBINATIONAL, F_Q, 0, 31341,
         "Dot extension '.Q' is used on combinational signal '%s'; dot extension '.Q' can only be used on registered "
         "signals"},
    Rule{COMBINATIONAL, F_FB, 0, 31342,
         "Dot extension '.FB' is used on combinational signal '%s'; dot extension '.FB' can only be used on registered "
         "signals"},
    Rule{COMBINATIONAL, use(F_RIN), 0, 31344,
         "Dot extension '.REG' is used on combinational signal '%s'; dot extension '.REG' can only be used on "
         "registered signals"},
    Rule{COMBINATIONAL, use(F_TIN), 0, 31345,
         "Dot extension '.T' is used on combinational signal '%s'; dot extension '.T' can only be used on registered "
         "signals"},
    Rule{COMBINATIONAL, F_SP, 0, 31346,
         "Dot extension '.SP' is used on combinational signal '%s'; dot extension '.SP' can only be used on registered "
         "signals"},
    Rule{COMBINATIONAL, F_SR, 0, 31347,
         "Dot extension '.SR' is used on combinational signal '%s'; dot extension '.SR' can only be used on registered "
         "signals"},
    Rule{COMBINATIONAL, F_AR, 0, 31348,
         "Dot extension '.AR' is used on combinational signal '%s'; dot extension '.AR' can only be used on registered "
         "signals"},
    Rule{COMBINATIONAL, F_RE, 0, 31348,
         "Dot extension '.RE' is used on combinational signal '%s'; dot extension '.RE' can only be used on registered "
         "signals"},
    // The second half of the two preset texts names the reset extensions; tools rely on these texts.
    Rule{COMBINATIONAL, F_AP, 0, 31349,
         "Dot extension '.AP' is used on combinational signal '%s'; dot extension '.AR' can only be used on registered "
         "signals"},
    Rule{COMBINATIONAL, F_PR, 0, 31349,
         "Dot extension '.PR' is used on combinational signal '%s'; dot extension '.RE' can only be used on registered "
         "signals"},
    Rule{COMBINATIONAL, F_CE, 0, 31350,
         "Dot extension '.CE' is used on combinational signal '%s'; dot extension '.CE' can only be used on registered "
         "signals"},
    Rule{COMBINATIONAL, F_OUT | F_X1, 0, 31337,
         "Both signals '%s' and '%s.X1' occur in left hand side of equations; signals '%s' and '%s.X1' cannot be both "
         "used in left hand side of equations"},
    Rule{COMBINATIONAL, F_OUT | F_X2, 0, 31338,
         "Both signals '%s' and '%s.X2' occur in left hand side of equations; signals '%s' and '%s.X2' cannot be both "
         "used in left hand side of equations"},
    Rule{COMBINATIONAL | GATE, 0, kGateInputs | kMacroPorts, kNoInput, "Gate '%s' has no input"},
    Rule{COMBINATIONAL | NODE, F_PIN, 0, 31329,
         "Dot extension '.PIN' is used on node '%s'; dot extension '.PIN' can only be applied to a pin"},
    Rule{COMBINATIONAL | NODE | VERBOSE, 0, use(F_IN), 31550, "Signal '%s' does not fan out", WARNING},
    Rule{COMBINATIONAL | NODE | PLAIN_NODES, F_OE, 0, 31330,
         "Dot extension '.OE' is used on node '%s'; dot extension '.OE' can only be applied to a pin"},
    Rule{COMBINATIONAL | PIN, F_PIN | use(F_IO | F_IN), 0, 31331,
         "Signal '%s' has conflicting pin feedbacks; '%s' and '%s.PIN' cannot be used in the same design"},
    Rule{COMBINATIONAL, F_PIN, use(F_IO), 31339, // nodes get it in addition to 31329
         "Dot extension '.PIN' is used on input pin '%s'; dot extension '.PIN' can only be used as feedback from "
         "output pin"},
    Rule{COMBINATIONAL | INVERTED, 0, 0, 31355,
         "Using attribute 'invert' with combinational signal '%s' is invalid; attribute 'invert' can only be used with "
         "registered pin"},
};
// clang-format on

std::uint32_t register_kind(std::uint32_t roles) {
  if ((roles & (F_D | kDX)) != 0) return D_REGISTER;
  if ((roles & (F_REG | kGX)) != 0) return GENERIC_REGISTER;
  if ((roles & (F_J | F_K)) != 0) return JK_REGISTER;
  if ((roles & (F_R | F_S)) != 0) return SR_REGISTER;
  return (roles & (F_T | kTX)) != 0 ? T_REGISTER : ALWAYS;
}

std::uint32_t situation_of(const SignalFlags &flags, bool inverted, int series) {
  const std::uint32_t roles = flags.role_flags;
  const bool is_pin = (flags.use_flags & F_NOD) != 0;
  std::uint32_t situation = register_kind(roles);
  situation |= (flags.use_flags & F_FF) != 0 ? REGISTERED : COMBINATIONAL;
  if ((roles & kDStyle) != 0)
    situation |= D_STYLE;
  else if ((roles & kOtherData) != 0)
    situation |= OTHER_STYLE;
  situation |= is_pin ? PIN : NODE;
  if ((roles & (F_LH | F_LE)) != 0) situation |= LATCH;
  if ((roles & (F_AP | F_PR)) != 0 && (roles & (F_AR | F_RE)) != 0) situation |= PRESET_AND_RESET;
  if (series < 2) situation |= SMALL_SERIES;
  if (series != 8) situation |= PLAIN_NODES;
  if (run_settings.debug_level >= 1) situation |= VERBOSE;
  if (inverted) situation |= INVERTED;
  if (!is_pin || (flags.use_flags & F_IO) != 0) situation |= GATE;
  return situation;
}

int report_conflicts(std::uint32_t roles, const std::string &name) {
  int failed = 0;
  std::uint32_t primary = 0;
  for (const ConflictRow &row : kConflicts) {
    if (primary == 0) primary = roles & row.primary;
    if (row.primary != primary) continue;
    for (const DataInput &secondary : kSecondaries) {
      if ((roles & row.secondaries & secondary.flag) == 0) continue;
      report_error(row.number, "Data input of register '%s' has conflicting dot extensions, '%s' and '%s'",
                   name.c_str(), row.extension, secondary.extension);
      failed = 1;
    }
  }
  return failed;
}

std::string fill_name(std::string_view text, std::string_view name) {
  std::string filled;
  for (std::size_t at; (at = text.find("%s")) != std::string_view::npos; text.remove_prefix(at + 2))
    filled.append(text.substr(0, at)).append(name);
  return filled.append(text);
}

int report_rule(const Rule &rule, const std::string &name) {
  const std::string text = fill_name(rule.text, name);
  if (rule.severity == WARNING) {
    report_warning(rule.number, "%s", text.c_str());
    return 0;
  }
  report_error(rule.number, "%s", text.c_str());
  // Also printed as a plain console line.
  if (rule.number == kNoInput) console_printf("Gate '%s' has no input\n", name.c_str());
  return 1;
}

} // namespace

int check_signal_rules(SignalFlags &flags, bool inverted, std::string_view name, int series) {
  if ((flags.role_flags & (kDStyle | kOtherData)) != 0) flags.use_flags |= F_FF;
  const std::string base(name);
  int failed = report_conflicts(flags.role_flags, base);
  const std::uint32_t situation = situation_of(flags, inverted, series);
  const Flags present = flags.role_flags | use(flags.use_flags);
  for (const Rule &rule : kRules)
    if ((rule.when & ~situation) == 0 && (rule.all & ~present) == 0 && (rule.none & present) == 0)
      failed |= report_rule(rule, base);
  return failed;
}

} // namespace cubenet
