// Attributes of list entries: which entry a statement about a signal is for, and what it leaves there.
#include "drc/entry_attributes.h"

#include <array>

#include "drc/passes.h"
#include "model/clock_types.h"
#include "report/messages.h"

namespace cubenet {

namespace {

// The entry that stands for a signal written without an extension: the first of these that drives it.
constexpr std::array<ExtensionCode, 12> kDataInputs{EXT_NONE, EXT_X1,  EXT_D, EXT_DX1, EXT_REG, EXT_GX1,
                                                    EXT_T,    EXT_TX1, EXT_J, EXT_K,   EXT_S,   EXT_R};

std::int32_t find_driven_entry(const AttributeCase &given) {
  if (given.extension != EXT_NONE) return find_entry(given.outputs, given.signal, given.extension);
  for (const ExtensionCode code : kDataInputs)
    if (has_role(given, code)) return find_entry(given.outputs, given.signal, code);
  return -1;
}

std::int32_t find_read_entry(const AttributeCase &given) {
  if (!has_use(given, F_ILB)) return -1;
  const bool reads_pin = given.extension == EXT_NONE && has_role(given, EXT_PIN);
  return find_entry(given.inputs, given.signal, reads_pin ? EXT_PIN : given.extension);
}

SignalAttributes &output_attributes(const AttributeCase &given, std::int32_t entry) {
  return given.design.olb_attributes[static_cast<std::size_t>(entry)];
}
SignalAttributes &input_attributes(const AttributeCase &given, std::int32_t entry) {
  return given.design.ilb_attributes[static_cast<std::size_t>(entry)];
}

void refuse_undriven(AttributeCase &given) {
  report_warning(31560,
                 "Signal '%s' does not occur on left hand side of equation(s) and is used in attribute '%s %s'; "
                 "attribute '%s %s' is ignored",
                 given.shown.c_str(), given.attribute_name.c_str(), given.shown.c_str(), given.attribute_name.c_str(),
                 given.shown.c_str());
  drop_attribute(given.property);
}

void refuse_unread(AttributeCase &given) {
  report_warning(31564,
                 "Signal '%s' does not occur on right hand side of equation(s) and is used in attribute '%s %s'; "
                 "attribute '%s %s' is ignored",
                 given.shown.c_str(), given.attribute_name.c_str(), given.shown.c_str(), given.attribute_name.c_str(),
                 given.shown.c_str());
  drop_attribute(given.property);
}

void mark_clock(SignalAttributes &attributes, std::string_view type) {
  if (const ClockType *row = find_clock_type(type)) attributes.*row->mark = 1;
}

// A group names a whole register input: the pair behind an XOR gate goes by its first half.
ExtensionCode group_extension(const AttributeCase &given) {
  struct Pair {
    ExtensionCode whole, first_half;
  };
  constexpr std::array<Pair, 4> pairs{{{EXT_NONE, EXT_X1}, {EXT_D, EXT_DX1}, {EXT_REG, EXT_GX1}, {EXT_T, EXT_TX1}}};
  for (const Pair &pair : pairs)
    if (given.extension == pair.whole && has_role(given, pair.first_half)) return pair.first_half;
  return given.extension;
}

bool refuse_register_type(const AttributeCase &given, bool to_io_cell) {
  const char *attribute = given.attribute_name.c_str();
  const char *name = given.name.c_str();
  const char *value = given.property.attribute_value.c_str();
  struct ResetRow {
    ExtensionCode code;
    const char *extension;
  };
  constexpr std::array<ResetRow, 4> resets{{{EXT_RE, "RE"}, {EXT_AR, "AR"}, {EXT_AP, "AP"}, {EXT_PR, "PR"}}};
  for (const ResetRow &reset : resets) {
    if (!to_io_cell || !has_role(given, reset.code)) continue;
    report_warning(31572,
                   "Signal '%s.%s' has asynchronous reset '.%s' and is used in attribute '%s %s %s'; attribute '%s %s "
                   "%s' is ignored",
                   name, reset.extension, reset.extension, attribute, name, value, attribute, name, value);
    return true;
  }
  if (is_registered(given)) return false;
  report_warning(31567, "Signal '%s' is combinational and is used in attribute '%s %s'; attribute '%s %s' is ignored",
                 given.shown.c_str(), attribute, given.shown.c_str(), attribute, given.shown.c_str());
  return true;
}

// A register lies in a logic block or in an I/O cell; the first statement decides.
void place_register(const AttributeCase &given, bool to_io_cell) {
  Design &design = given.design;
  const bool pin = is_pin(design, given.signal);
  const std::size_t at = static_cast<std::size_t>(given.signal) - (pin ? 0 : design.pin_names.size());
  BitSet &logic = pin ? design.pin_glb : design.node_glb;
  BitSet &io_cell = pin ? design.pin_ioc : design.node_ioc;
  if (!test_bit(to_io_cell ? logic : io_cell, at)) {
    set_bit(to_io_cell ? io_cell : logic, at);
  } else if (to_io_cell) {
    report_warning(31574, "Register '%s' is declared as 'GLB' register; attribute '%s %s IOC' is ignored",
                   given.name.c_str(), given.attribute_name.c_str(), given.shown.c_str());
  } else {
    report_warning(31574, "Register '%s' is declared as 'IOC' register; attribute '%s %s GLB' is ignored",
                   given.name.c_str(), given.attribute_name.c_str(), given.shown.c_str());
  }
}

} // namespace

void attach_mark(AttributeCase &given, Mark SignalAttributes::*mark) {
  if (!has_use(given, F_OB)) {
    const char *shown = given.shown.c_str();
    report_warning(31560,
                   "Signal '%s' does not occur on left hand side of equation(s) \t\t\t\tand is used in attribute '%s "
                   "%s'; attribute '%s %s' is ignored",
                   shown, given.attribute_name.c_str(), shown, given.attribute_name.c_str(), shown);
    drop_attribute(given.property);
    return;
  }
  given.property.ob_idx = find_driven_entry(given);
  if (given.property.ob_idx < 0)
    refuse_undriven(given);
  else
    output_attributes(given, given.property.ob_idx).*mark = 1;
}

void attach_xor_mark(AttributeCase &given) {
  if (given.extension != EXT_NONE || !is_registered(given)) {
    attach_mark(given, &SignalAttributes::LXOR2);
    return;
  }
  const char *shown = given.shown.c_str();
  report_warning(31568,
                 "Signal '%s' is registered and is used in attribute '%s %s'; \t\t\tattribute '%s %s' is ignored",
                 shown, given.attribute_name.c_str(), shown, given.attribute_name.c_str(), shown);
  drop_attribute(given.property);
}

void attach_clock(AttributeCase &given) {
  if (given.extension == EXT_C && has_role(given, EXT_C)) {
    given.property.ob_idx = find_entry(given.outputs, given.signal, EXT_C);
    mark_clock(output_attributes(given, given.property.ob_idx), given.property.attribute_value);
    return;
  }
  const std::int32_t entry = find_read_entry(given);
  if (entry < 0)
    refuse_unread(given);
  else
    mark_clock(input_attributes(given, entry), given.property.attribute_value);
}

void bind_path_start(AttributeCase &given) {
  given.property.ilb_idx = find_read_entry(given);
  if (given.property.ilb_idx < 0) refuse_unread(given);
}

// The equation that ends the path, and the entry that reads the signal. Where there is an equation, a reader that leads
// nowhere is no reason to ignore the attribute.
void bind_path_end(AttributeCase &given) {
  Property &property = given.property;
  property.ob_idx = find_driven_entry(given);
  (property.ob_idx < 0 ? property.ilb_idx : property.end_reader_idx) = find_read_entry(given);
  if (property.ob_idx < 0 && property.ilb_idx < 0) refuse_undriven(given);
}

void join_group(AttributeCase &given) {
  const std::string &group = given.property.attribute_value;
  const auto at = static_cast<std::size_t>(given.signal);
  if (is_registered(given) && given.extension == EXT_NONE) {
    if (is_pin(given.design, given.signal))
      append_word(given.design.xpins[at].grp.writable(), group);
    else
      append_word(given.design.node_groups[at - given.design.pin_names.size()], group);
  } else {
    const ExtensionCode code = group_extension(given);
    const std::int32_t output = find_entry(given.outputs, given.signal, code);
    const std::int32_t input = find_entry(given.inputs, given.signal, code);
    if (output >= 0)
      output_attributes(given, output).names.writable().GRP = group;
    else if (input >= 0)
      input_attributes(given, input).names.writable().GRP = group;
    else
      report_warning(31561, "Signal '%s' is not used; attribute '%s %s' is ignored", given.shown.c_str(),
                     given.attribute_name.c_str(), given.shown.c_str());
  }
  drop_attribute(given.property);
}

void set_register_type(AttributeCase &given) {
  const std::string &value = given.property.attribute_value;
  const bool to_io_cell = equal_ignoring_case(value, "IOC");
  if (!to_io_cell && !equal_ignoring_case(value, "GLB")) {
    report_warning(31571,
                   "Attribute value '%s' is not recognized; valid value is 'GLB' or 'IOC'; attribute '%s %s %s' is "
                   "ignored",
                   value.c_str(), given.attribute_name.c_str(), given.shown.c_str(), value.c_str());
  } else if (!refuse_register_type(given, to_io_cell)) {
    if (!given.property.pi_node_ext.empty())
      report_warning(31573, "Attribute '%s %s' is assumed to be associated with register '%s'",
                     given.attribute_name.c_str(), given.shown.c_str(), given.name.c_str());
    place_register(given, to_io_cell);
  }
  drop_attribute(given.property);
}

} // namespace cubenet
