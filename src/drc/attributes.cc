// Judges the attribute records one by one: the checks that all of them share, then the handler of the attribute's row.
// What stands is stored on the pin, the node or the list entry that the attribute is for; a record whose work is done
// is dropped, and so is one that draws a finding. Locations, reservations and what waits for the paths keep their
// record.
#include <algorithm>
#include <array>
#include <tuple>
#include <utility>

#include "drc/attribute_rules.h"
#include "drc/passes.h"
#include "model/run_settings.h"
#include "report/messages.h"

namespace cubenet {

namespace {

// Returns 1 when it reported an ERROR.
int lock_pin(AttributeCase &given) {
  std::string &location = given.design.xpins[static_cast<std::size_t>(given.signal)].xpin_num;
  const std::string &wanted = given.property.attribute_value;
  if (location.empty()) {
    location = wanted;
  } else if (!equal_ignoring_case(location, wanted)) {
    report_error(31235, "Pin '%s' is locked to two different numbers '%s' and '%s'", given.name.c_str(),
                 location.c_str(), wanted.c_str());
    drop_attribute(given.property);
    return 1;
  }
  return 0;
}

template <int XPin::*field> int set_pin_field(AttributeCase &given) {
  given.design.xpins[static_cast<std::size_t>(given.signal)].*field = given.property.attr_name;
  drop_attribute(given.property);
  return 0;
}

template <Mark SignalAttributes::*mark> int set_mark(AttributeCase &given) {
  attach_mark(given, mark);
  return 0;
}

template <void (*rule)(AttributeCase &)> int judge_by(AttributeCase &given) {
  rule(given);
  return 0;
}

int keep_reservation(AttributeCase &given) {
  given.design.reserve_pins = true;
  return 0;
}

enum class Family : std::uint8_t { PIN, SIGNAL };

struct AttributeRow {
  int code;
  const char *name;
  Family family;
  int (*handler)(AttributeCase &given);
};

// clang-format off
constexpr std::array<AttributeRow, 39> kAttributes{{
    {1,  "OPENDRAIN",     Family::PIN,    set_pin_field<&XPin::opendrain>},
    {2,  "SLOWSLEW",      Family::PIN,    set_pin_field<&XPin::slowslew>},
    {3,  "PULLUP",        Family::PIN,    set_pin_field<&XPin::pullup>},
    {4,  "PULL",          Family::PIN,    set_pin_field<&XPin::pullup>},
    {5,  "OUTDELAY",      Family::PIN,    set_pin_field<&XPin::outdelay>},
    {20, "VOLTAGE",       Family::PIN,    set_pin_field<&XPin::voltage>},
    {21, "OPENDRAIN=ON",  Family::PIN,    set_pin_field<&XPin::opendrain>},
    {22, "OPENDRAIN=OFF", Family::PIN,    set_pin_field<&XPin::opendrain>},
    {23, "SLOWSLEW=ON",   Family::PIN,    set_pin_field<&XPin::slowslew>},
    {24, "SLOWSLEW=OFF",  Family::PIN,    set_pin_field<&XPin::slowslew>},
    {25, "PULLUP=ON",     Family::PIN,    set_pin_field<&XPin::pullup>},
    {26, "PULLUP=OFF",    Family::PIN,    set_pin_field<&XPin::pullup>},
    {27, "PULL=UP",       Family::PIN,    set_pin_field<&XPin::pullup>},
    {28, "PULL=OFF",      Family::PIN,    set_pin_field<&XPin::pullup>},
    {29, "PULL=HOLD",     Family::PIN,    set_pin_field<&XPin::pullup>},
    {30, "OUTDELAY=ON",   Family::PIN,    set_pin_field<&XPin::outdelay>},
    {31, "OUTDELAY=OFF",  Family::PIN,    set_pin_field<&XPin::outdelay>},
    {32, "VOLTAGE=VVCIO", Family::PIN,    set_pin_field<&XPin::voltage>},
    {33, "VOLTAGE=VCC",   Family::PIN,    set_pin_field<&XPin::voltage>},
    {34, "CRIT",          Family::PIN,    set_pin_field<&XPin::crit>},
    {35, "LXOR2",         Family::SIGNAL, judge_by<attach_xor_mark>},
    {36, "PRESERVE",      Family::SIGNAL, set_mark<&SignalAttributes::PRESERVE>},
    {37, "PROTECT",       Family::SIGNAL, set_mark<&SignalAttributes::PROTECT>},
    {38, "REGTYPE",       Family::SIGNAL, judge_by<set_register_type>},
    {39, "CLK",           Family::SIGNAL, judge_by<attach_clock>},
    {40, "SCP",           Family::SIGNAL, judge_by<bind_path_start>},
    {41, "SAP",           Family::SIGNAL, judge_by<bind_path_start>},
    {42, "SLP",           Family::SIGNAL, judge_by<bind_path_start>},
    {43, "STP",           Family::SIGNAL, judge_by<bind_path_start>},
    {44, "SNP",           Family::SIGNAL, judge_by<bind_path_start>},
    {45, "ECP",           Family::SIGNAL, judge_by<bind_path_end>},
    {46, "EAP",           Family::SIGNAL, judge_by<bind_path_end>},
    {47, "ELP",           Family::SIGNAL, judge_by<bind_path_end>},
    {48, "ETP",           Family::SIGNAL, judge_by<bind_path_end>},
    {49, "ENP",           Family::SIGNAL, judge_by<bind_path_end>},
    {50, "GROUP",         Family::SIGNAL, judge_by<join_group>},
    {CODE_LOCK, "LOCK",   Family::PIN,    lock_pin},
    {52, "ZDOT",          Family::SIGNAL, set_mark<&SignalAttributes::ZDOT>},
    {CODE_RESERVE_PIN, "RESERVE_PIN", Family::SIGNAL, keep_reservation},
}};
// clang-format on

const AttributeRow *find_attribute(int code) {
  const auto *row =
      std::find_if(kAttributes.begin(), kAttributes.end(), [&](const AttributeRow &each) { return each.code == code; });
  return row == kAttributes.end() ? nullptr : row;
}

void report_undeclared(const Property &property, const char *attribute) {
  const std::string shown = display_name(property.pin_node_name, property.pi_node_ext);
  report_warning(31543, "Signal '%s' in attribute '%s %s' is not declared; \t\t\tattribute '%s %s' is ignored",
                 shown.c_str(), attribute, shown.c_str(), attribute, shown.c_str());
}

// An attribute of a pin as a whole. True when a finding was reported.
bool is_misplaced(const AttributeCase &given) {
  const char *attribute = given.attribute;
  const char *shown = given.shown.c_str();
  if (!is_pin(given.design, given.signal)) {
    if (given.property.attr_name == CODE_LOCK)
      report_warning(31541,
                     "Signal '%s' is declared as node and locked to package pin \t\t\t\tin '%s %s'; attribute '%s %s' "
                     "is ignored",
                     shown, attribute, shown, attribute, shown);
    else
      report_warning(31542,
                     "Signal '%s' is declared as node and is used in pin \t\t\t\tattribute '%s %s'; attribute '%s %s' "
                     "is ignored",
                     shown, attribute, shown, attribute, shown);
    return true;
  }
  if (given.property.pi_node_ext.empty()) return false;
  report_warning(31565, "Signal '%s' in attribute '%s %s' is not a pin name; \t\t\tattribute '%s %s' is ignored", shown,
                 attribute, shown, attribute, shown);
  return true;
}

// Where the text names the extension by itself, the signal stands alone.
bool has_bad_extension(const AttributeCase &given) {
  const char *attribute = given.attribute;
  const char *name = given.name.c_str();
  const char *extension = given.property.pi_node_ext.c_str();
  if (!is_registered(given) && given.extension >= EXT_DX1 && given.extension <= EXT_FB)
    report_warning(31566,
                   "Signal '%s' is combinational; dot extension '.%s' should be \t\t\tassigned to a registered signal; "
                   "attribute '%s %s' is ignored",
                   name, extension, attribute, name);
  else if (given.extension >= EXT_X1 && given.extension <= EXT_TX2)
    report_warning(31569,
                   "Signal '%s' with dot extension '.%s' is invalid in attribute \t\t\tspecification; attribute '%s "
                   "%s' is ignored",
                   name, extension, attribute, name);
  else if (given.extension == EXT_UNSUPPORTED)
    report_warning(31562,
                   "Dot extension '.%s' is not supported, signal '%s' is invalid; \t\t\tattribute '%s %s' is ignored",
                   extension, name, attribute, name);
  else if (given.extension == EXT_UNKNOWN)
    report_warning(31563,
                   "Dot extension '.%s' is not recognized, signal '%s' is invalid; \t\t\tattribute '%s %s' is ignored",
                   extension, name, attribute, name);
  else
    return false;
  return true;
}

int judge_attribute(const AttributeRow &row, AttributeCase &given) {
  if (row.family == Family::PIN ? is_misplaced(given) : has_bad_extension(given)) {
    drop_attribute(given.property);
    return 0;
  }
  return row.handler(given);
}

void drop_unread_attributes(Design &design) {
  for (Property &property : design.properties) {
    if (property.attr_name == 0 || property.ilb_idx < 0) continue;
    const auto input = static_cast<std::size_t>(property.ilb_idx);
    if (design.fan_out.fans_out[input] != 0) continue;
    const std::string shown = display_name(design.ILB[input], property.pi_node_ext);
    report_warning(31610,
                   "Signal '%s' does not fanout; \t\t\t\tattribute '%s %s %s' associated with signal '%s' is ignored",
                   shown.c_str(), attribute_name(property.attr_name), shown.c_str(), property.attribute_value.c_str(),
                   shown.c_str());
    drop_attribute(property);
  }
}

} // namespace

const char *attribute_name(int code) {
  const AttributeRow *row = find_attribute(code);
  return row != nullptr ? row->name : "";
}

EntryIndex index_entries(const std::vector<SignalIndex> &signals, const std::vector<std::string> &extensions) {
  EntryIndex index;
  index.entries.reserve(signals.size());
  for (std::size_t i = 0; i < signals.size(); i++)
    if (signals[i] != kNoSignal)
      index.entries.push_back({signals[i], extension_code(extensions[i]), static_cast<std::int32_t>(i)});
  std::sort(index.entries.begin(), index.entries.end(), [](const EntryIndex::Entry &a, const EntryIndex::Entry &b) {
    return std::tie(a.signal, a.code, a.position) < std::tie(b.signal, b.code, b.position);
  });
  return index;
}

std::int32_t find_entry(const EntryIndex &index, SignalIndex signal, ExtensionCode code) {
  const auto at =
      std::lower_bound(index.entries.begin(), index.entries.end(), std::pair(signal, code),
                       [](const EntryIndex::Entry &entry, const std::pair<SignalIndex, ExtensionCode> &key) {
                         return std::pair(entry.signal, entry.code) < key;
                       });
  return at != index.entries.end() && at->signal == signal && at->code == code ? at->position : -1;
}

int check_attributes(Design &design) {
  if (design.properties.empty()) return 0;
  int failed = 0;
  const TextIndex names = index_signals(design, run_settings.case_sensitive);
  const EntryIndex outputs = index_entries(design.olb_signals, design.OB_EXT);
  const EntryIndex inputs = index_entries(design.ilb_signals, design.IB_EXT);
  for (Property &property : design.properties) {
    const AttributeRow *row = find_attribute(property.attr_name);
    if (row == nullptr) continue;
    const SignalIndex signal = find_text(names, property.pin_node_name);
    if (signal == kNoSignal) {
      report_undeclared(property, row->name);
      drop_attribute(property);
      continue;
    }
    const std::string &name = signal_name(design, signal);
    AttributeCase given{design,
                        outputs,
                        inputs,
                        property,
                        row->name,
                        signal,
                        extension_code(property.pi_node_ext),
                        name,
                        display_name(name, property.pi_node_ext)};
    failed |= judge_attribute(*row, given);
  }
  drop_unread_attributes(design);
  return failed;
}

} // namespace cubenet
