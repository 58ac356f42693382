// Judges the attribute records one by one: the checks that all of them share, then what its family does.
// What stands is stored on the pin, the node or the list entry that the attribute is for; a record whose work is done
// is dropped, and so is one that draws a finding. Locations, reservations and what waits for the paths keep their
// record.
#include "drc/entry_attributes.h"
#include "drc/passes.h"
#include "model/run_settings.h"
#include "report/messages.h"

namespace cubenet {

namespace {

void lock_pin(AttributeCase &given) {
  std::string &location = given.design.xpins[static_cast<std::size_t>(given.signal)].xpin_num.writable();
  const std::string &wanted = given.property.attribute_value;
  if (location.empty()) location = wanted;
  if (equal_ignoring_case(location, wanted)) return;
  report_error(31235, "Pin '%s' is locked to two different numbers '%s' and '%s'", given.name.c_str(), location.c_str(),
               wanted.c_str());
  given.failed = true;
  drop_attribute(given.property);
}

void set_pin_field(AttributeCase &given, std::uint8_t XPin::*field) {
  given.design.xpins[static_cast<std::size_t>(given.signal)].*field =
      static_cast<std::uint8_t>(given.property.attr_name);
  drop_attribute(given.property);
}

void apply_attribute(AttributeCase &given) {
  switch (given.attribute.family) {
  case AttributeFamily::OPENDRAIN: return set_pin_field(given, &XPin::opendrain);
  case AttributeFamily::SLEW: return set_pin_field(given, &XPin::slowslew);
  case AttributeFamily::PULL: return set_pin_field(given, &XPin::pullup);
  case AttributeFamily::OUTDELAY: return set_pin_field(given, &XPin::outdelay);
  case AttributeFamily::VOLTAGE: return set_pin_field(given, &XPin::voltage);
  case AttributeFamily::CRIT: return set_pin_field(given, &XPin::crit);
  case AttributeFamily::LOCK: return lock_pin(given);
  case AttributeFamily::LXOR2: return attach_xor_mark(given);
  case AttributeFamily::PRESERVE: return attach_mark(given, &SignalAttributes::PRESERVE);
  case AttributeFamily::PROTECT: return attach_mark(given, &SignalAttributes::PROTECT);
  case AttributeFamily::ZDOT: return attach_mark(given, &SignalAttributes::ZDOT);
  case AttributeFamily::REGTYPE: return set_register_type(given);
  case AttributeFamily::CLOCK: return attach_clock(given);
  case AttributeFamily::PATH_START: return bind_path_start(given);
  case AttributeFamily::PATH_END: return bind_path_end(given);
  case AttributeFamily::GROUP: return join_group(given);
  case AttributeFamily::RESERVATION: given.design.reserve_pins = true; return;
  }
}

void report_undeclared(const Property &property, const Attribute &row) {
  const std::string name = attribute_name(row);
  const char *attribute = name.c_str();
  const std::string shown = display_name(property.pin_node_name, property.pi_node_ext);
  report_warning(31543, "Signal '%s' in attribute '%s %s' is not declared; \t\t\tattribute '%s %s' is ignored",
                 shown.c_str(), attribute, shown.c_str(), attribute, shown.c_str());
}

// An attribute of a pin as a whole. True when a finding was reported.
bool is_misplaced(const AttributeCase &given) {
  const char *attribute = given.attribute_name.c_str();
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
  const char *attribute = given.attribute_name.c_str();
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

void judge_attribute(AttributeCase &given) {
  if (is_of_pins(given.attribute) ? is_misplaced(given) : has_bad_extension(given))
    drop_attribute(given.property);
  else
    apply_attribute(given);
}

void drop_unread_attributes(Design &design) {
  for (Property &property : design.properties) {
    if (property.attr_name == 0 || property.ilb_idx < 0) continue;
    const auto input = static_cast<std::size_t>(property.ilb_idx);
    if (design.fan_out.fans_out[input] != 0) continue;
    const std::string shown = display_name(design.ILB[input], property.pi_node_ext);
    const std::string name = attribute_name(*find_attribute(property.attr_name));
    report_warning(31610,
                   "Signal '%s' does not fanout; \t\t\t\tattribute '%s %s %s' associated with signal '%s' is ignored",
                   shown.c_str(), name.c_str(), shown.c_str(), property.attribute_value.c_str(), shown.c_str());
    drop_attribute(property);
  }
}

} // namespace

int check_attributes(Design &design) {
  if (design.properties.empty()) return 0;
  int failed = 0;
  const TextIndex names = index_signals(design, run_settings.case_sensitive);
  const EntryIndex outputs = index_entries(design.olb_signals, design.OB_EXT);
  const EntryIndex inputs = index_entries(design.ilb_signals, design.IB_EXT);
  for (Property &property : design.properties) {
    const Attribute *row = find_attribute(property.attr_name);
    if (row == nullptr) continue;
    const SignalIndex signal = find_text(names, property.pin_node_name);
    if (signal == kNoSignal) {
      report_undeclared(property, *row);
      drop_attribute(property);
      continue;
    }
    const std::string &name = signal_name(design, signal);
    AttributeCase given{.design = design,
                        .outputs = outputs,
                        .inputs = inputs,
                        .property = property,
                        .attribute = *row,
                        .attribute_name = attribute_name(*row),
                        .signal = signal,
                        .extension = extension_code(property.pi_node_ext),
                        .name = name,
                        .shown = display_name(name, property.pi_node_ext)};
    judge_attribute(given);
    if (given.failed) failed = 1;
  }
  drop_unread_attributes(design);
  return failed;
}

} // namespace cubenet
