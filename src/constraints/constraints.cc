// Writes the constraints file: a fixed sequence of bracketed sections, each a few "key=names;" lists over the pins, the
// input list or the output list. A section without members leaves nothing, not even its header. The fitter's reader of
// this file grew with it, so spellings, blanks and blank lines are exactly what it expects, also where they look wrong.

#include "constraints/constraints.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "model/attributes.h"
#include "model/clock_types.h"
#include "model/names.h"
#include "report/console.h"
#include "util/output_file.h"
#include "util/text_hash.h"

namespace cubenet {

bool show_constraints_progress = false;

namespace {

// A section's header stands before its first line.
struct Section {
  OutputFile &file;
  std::string_view header;
  bool started = false;
};

OutputFile &start_line(Section &section) {
  if (!section.started) put(section.file, section.header);
  section.started = true;
  return section.file;
}

// One "key=name,name,...;" line.
struct List {
  Section &section;
  std::string_view key; // with its '='
  std::string_view separator = ",";
  bool open = false;
};

void add_member(List &list, std::string_view name) {
  put_all(start_line(list.section), list.open ? list.separator : list.key, name);
  list.open = true;
}

void end_list(const List &list, std::string_view end) {
  if (list.open) put(list.section.file, end);
}

void add_pins(List &list, const Design &design, std::uint8_t XPin::*field, int code) {
  for (std::size_t i = 0; i < design.pin_names.size(); i++)
    if (design.xpins[i].*field == code) add_member(list, design.pin_names[i]);
}

bool is_set(const SignalAttributes &attributes, Mark SignalAttributes::*mark) { return attributes.*mark != 0; }
bool is_set(const SignalAttributes &attributes, std::string SignalNames::*text) {
  return !((*attributes.names).*text).empty();
}

template <typename Field>
void add_entries(List &list, const std::vector<std::string> &names, const std::vector<SignalAttributes> &attributes,
                 Field field) {
  for (std::size_t i = 0; i < names.size(); i++)
    if (is_set(attributes[i], field)) add_member(list, names[i]);
}
template <typename Field> void add_inputs(List &list, const Design &design, Field field) {
  add_entries(list, design.ILB, design.ilb_attributes, field);
}
template <typename Field> void add_outputs(List &list, const Design &design, Field field) {
  add_entries(list, design.OLB, design.olb_attributes, field);
}

// Statements of the older family carry their lists ready made: "SLOW=a,b;". A value without '=' names nothing.
void add_values(List &list, const Design &design, std::string_view name, std::string_view setting) {
  for (const auto &[entry, text] : design.name_values) {
    if (entry != name || !text.starts_with(setting)) continue;
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos) continue;
    const std::string_view members = std::string_view(text).substr(equals + 1);
    add_member(list, members.substr(0, members.find(';')));
  }
}

void put_values(Section &section, const Design &design, std::string_view name) {
  for (const auto &[entry, text] : design.name_values)
    if (entry == name) put_all(start_line(section), text, '\n');
}

std::string_view take_word(std::string_view &text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
  const std::string_view word = text.substr(0, text.find_first_of(" \t"));
  text.remove_prefix(word.size());
  return word;
}

bool is_either(std::string_view word, std::string_view a, std::string_view b) {
  return equal_ignoring_case(word, a) || equal_ignoring_case(word, b);
}

void write_option(Section &section, std::string_view option) {
  OutputFile &file = start_line(section);
  const std::string_view key = take_word(option);
  std::string_view value = take_word(option);
  if (is_either(key, "SLOWSLEW", "SLEWRATE")) {
    put(file, "SLEWRATE=");
    if (is_either(value, "ON", "FAST")) put(file, "FAST;\n");
    // "Slow" is the fitter's default and stays without its name. Any other word leaves the line open: the next line of
    // the file joins it, and the fitter skips both.
    if (is_either(value, "OFF", "SLOW")) put(file, ";\n");
    return;
  }
  const bool is_voltage = equal_ignoring_case(key, "VOLTAGE");
  if (is_voltage) value = take_word(option); // the level; which kind of pin it is for is not told
  put_all(file, is_voltage ? "VOLTAGE" : key, '=', value, ";\n");
}

void write_parameter(Section &section, std::string_view parameter) {
  static constexpr std::string_view kRenamed[][2] = {
      // keyword, key
      {"MAX_GLB_IN", "Max_GLB_Inputs"},
      {"MAX_GLB_OUT", "GLB_Outputs"},
      {"TIMING_ANALYZER", "Timing_Analysis"},
  };
  std::string_view key = take_word(parameter);
  for (const auto &[keyword, renamed] : kRenamed)
    if (equal_ignoring_case(key, keyword)) key = renamed;
  put_all(start_line(section), "Tarvex_", key, '=', take_word(parameter), ";\n");
}

void write_global_constraints(OutputFile &file, const Design &design) {
  Section section{file, "[GLOBAL CONSTRAINTS]\n"};
  for (const std::string &option : design.header.option)
    if (!option.empty()) write_option(section, option);
  for (const std::string &parameter : design.par)
    if (!parameter.empty()) write_parameter(section, parameter);
  if (section.started) put(file, '\n');
}

void write_power(OutputFile &file, const Design &design) {
  // Power marks live in path slots: ELP is low power, ETP high power. No blank line follows this section.
  Section section{file, "[Power]\n"};
  List low{section, "Low = ", ", "};
  add_inputs(low, design, &SignalNames::ELP);
  end_list(low, ";\n");
  List high{section, "High = ", ", "};
  add_inputs(high, design, &SignalNames::ETP);
  end_list(high, ";\n");
}

// Lists over pins: by an attribute's code, then from the older family's statements. Only the last list of such a
// section is followed by a blank line; a section that ends with another list runs into the next one.
struct PinList {
  std::string_view key;
  int code;
  std::string_view setting;
};

template <std::size_t N>
void write_pin_lists(Section section, const Design &design, std::uint8_t XPin::*field, std::string_view name,
                     const PinList (&lists)[N]) {
  for (const PinList &row : lists) {
    List list{section, row.key};
    add_pins(list, design, field, row.code);
    if (!name.empty()) add_values(list, design, name, row.setting);
    end_list(list, &row == &lists[N - 1] ? ";\n\n" : ";\n");
  }
}

void write_outdelay(OutputFile &file, const Design &design) {
  static constexpr PinList kLists[] = {{"On=", CODE_OUTDELAY_ON, ""}, {"Off=", CODE_OUTDELAY_OFF, ""}};
  write_pin_lists({file, "[OUTDELAY]\n"}, design, &XPin::outdelay, "", kLists);
}

void write_slewrate(OutputFile &file, const Design &design) {
  static constexpr PinList kLists[] = {{"SLOW=", CODE_SLEW_SLOW, "SLOW"}, {"FAST=", CODE_SLEW_FAST, "FAST"}};
  write_pin_lists({file, "[SLEWRATE]\n"}, design, &XPin::slowslew, "SLEW", kLists);
}

void write_pullup(OutputFile &file, const Design &design) {
  static constexpr PinList kLists[] = {
      {"UP=", CODE_PULL_UP, "UP"},
      {"OFF=", CODE_PULL_OFF, "OFF"},
      {"DOWN=", CODE_PULL_DOWN, "DOWN"},
      {"HOLD=", CODE_PULL_HOLD, "HOLD"},
  };
  write_pin_lists({file, "[PULLUP]\n"}, design, &XPin::pullup, "PULL", kLists);
}

void write_osm_bypass(OutputFile &file, const Design &design) {
  Section section{file, "[OSM ByPass]\n"};
  List list{section, "Bypass="};
  for (std::size_t i = 0; i < design.pin_names.size(); i++)
    if (design.xpins[i].crit != 0) add_member(list, design.pin_names[i]);
  end_list(list, ";\n\n");
}

void write_io_types(OutputFile &file, const Design &design) {
  static constexpr struct {
    int opendrain, voltage;
    std::string_view type;
  } kTypes[] = {
      {CODE_OPENDRAIN_OFF, CODE_VOLTAGE_VCC, "LVCMOS33"},
      {CODE_OPENDRAIN_OFF, CODE_VOLTAGE_VVCIO, "LVCMOS25"},
      {CODE_OPENDRAIN_ON, CODE_VOLTAGE_VCC, "LVCMOS33_OD"},
      {CODE_OPENDRAIN_ON, CODE_VOLTAGE_VVCIO, "LVCMOS25_OD"},
  };
  Section section{file, "[IO TYPES]\n"};
  for (std::size_t i = 0; i < design.pin_names.size(); i++)
    for (const auto &row : kTypes)
      if (design.xpins[i].opendrain == row.opendrain && design.xpins[i].voltage == row.voltage)
        put_all(start_line(section), design.pin_names[i], '=', row.type, ",PIN,-,-;\n");
  put_values(section, design, "IO_TYPES");
  if (section.started) put(file, '\n');
}

void write_reservations(OutputFile &file, const Design &design) {
  Section section{file, "[RESOURCE RESERVATIONS]\nLayer=off;\n"};
  for (const Property &property : design.properties)
    if (property.attr_name == CODE_RESERVE_PIN)
      put_all(start_line(section), "Pin=", property.pin_node_name, ",bi_Z;\n");
  if (section.started) put(file, '\n');
}

void write_locations(OutputFile &file, const Design &design) {
  Section section{file, "[LOCATION ASSIGNMENTS]\n"};
  for (const Property &property : design.properties)
    if (property.attr_name == CODE_LOCK)
      put_all(start_line(section), property.pin_node_name, "=pin,", property.attribute_value, ",-,-;\n");
  put_values(section, design, "LOC");
  if (section.started) put(file, '\n');
}

// Register type ("GLB", "IOC") by name, of the signals that have one; a pin's type goes before a node's.
using RegisterTypes = TextMap<std::string_view, std::string_view>;

void add_types(RegisterTypes &types, const std::vector<std::string> &names, const BitSet &glb, const BitSet &ioc) {
  for (std::size_t i = 0; i < names.size(); i++)
    if (test_bit(glb, i) || test_bit(ioc, i)) types.try_emplace(names[i], test_bit(glb, i) ? "GLB" : "IOC");
}

void write_symbol_attributes(OutputFile &file, const Design &design) {
  RegisterTypes types;
  add_types(types, design.pin_names, design.pin_glb, design.pin_ioc);
  add_types(types, design.node_names, design.node_glb, design.node_ioc);
  Section section{file, "[symbol/MODULE attribute]\n"};
  const auto write_entries = [&](const auto &names, const auto &attributes) {
    for (std::size_t i = 0; i < names.size(); i++) {
      // The output list is judged by the input list's extensions too: fitter scripts rely on the types that come of it.
      const bool is_plain = i >= design.IB_EXT.size() || design.IB_EXT[i].empty();
      const auto type = is_plain ? types.find(names[i]) : types.end();
      const bool is_protected = attributes[i].PROTECT != 0;
      if (!is_protected && type == types.end()) continue;
      put_all(start_line(section), names[i], is_protected ? "=ON," : "=OFF,", type == types.end() ? "-" : type->second,
              ";\n");
    }
  };
  write_entries(design.ILB, design.ilb_attributes);
  write_entries(design.OLB, design.olb_attributes);
  if (section.started) put(file, '\n');
}

void write_ptsa_bypass(OutputFile &file, const Design &design) {
  // PTSABYPASS marks share the slot of ECP path ends.
  Section section{file, "[PTSABYPASS]\n"};
  List list{section, "BYPASS="};
  add_inputs(list, design, &SignalNames::ECP);
  // Outputs alone stand under the section's old name.
  if (!section.started) section.header = "[4PTs Bypass]\n";
  add_outputs(list, design, &SignalNames::ECP);
  end_list(list, ";\n\n");
}

void write_clocks(OutputFile &file, const Design &design) {
  Section section{file, "[CLK]\n"};
  for (const ClockType &type : kClockTypes) {
    const std::string key = std::string(type.name) + "=";
    List list{section, key};
    add_outputs(list, design, type.mark);
    add_inputs(list, design, type.mark);
    end_list(list, ";\n");
  }
  if (section.started) put(file, '\n');
}

void write_preserve(OutputFile &file, const Design &design) {
  Section section{file, "[PRESERVE]\n"};
  List list{section, "PRESERVE="};
  add_inputs(list, design, &SignalAttributes::PRESERVE);
  add_outputs(list, design, &SignalAttributes::PRESERVE);
  end_list(list, ";\n\n");
}

// Groups in first-met order, each with its members, gathered in one walk over the lists.
struct Group {
  std::string_view name;
  std::vector<std::string_view> members;
};

std::vector<Group> collect_groups(const Design &design) {
  std::vector<Group> groups;
  TextMap<std::string_view, std::size_t> index;
  const auto collect = [&](const auto &names, const auto &attributes) {
    for (std::size_t i = 0; i < names.size(); i++) {
      const std::string &group = attributes[i].names->GRP;
      if (group.empty()) continue;
      const auto [at, is_new] = index.try_emplace(group, groups.size());
      if (is_new) groups.push_back({group, {}});
      groups[at->second].members.emplace_back(names[i]);
    }
  };
  collect(design.ILB, design.ilb_attributes);
  collect(design.OLB, design.olb_attributes);
  return groups;
}

void write_groups(OutputFile &file, const Design &design) {
  Section section{file, "[GROUP ASSIGNMENTS]\n"};
  for (const Group &group : collect_groups(design)) {
    put_all(start_line(section), group.name, "=-,*");
    for (const std::string_view member : group.members) put_all(file, ',', member);
    put(file, ";\n");
  }
}

struct SectionStep {
  const char *progress;
  void (*write)(OutputFile &file, const Design &design); // nullptr: nothing stands here
};

constexpr SectionStep kSteps[] = {
    {nullptr, write_global_constraints},
    {"power\n", write_power},
    {"outdelay\n", write_outdelay},
    {"slewrate\n", write_slewrate},
    {"pullup\n", write_pullup},
    {"osm_bypass\n", write_osm_bypass},
    {"io_types\n", write_io_types},
    {"resource reservations\n", write_reservations},
    {"location assignments\n", write_locations},
    {"symbol attributes\n", write_symbol_attributes},
    {"ptsa bypass\n", write_ptsa_bypass},
    {"clk\n", write_clocks},
    {"preserve\n", write_preserve},
    {"keep xor\n", nullptr},
    {"group assignemnts\n", nullptr}, // named twice, and spelled like this, in the progress logs that exist
    {"group assignemnts\n", write_groups},
};

// A netlist is worth having without its constraints, but those of an earlier run would pass for them.
void remove_former(const std::string &file_name) {
  FileStatus status;
  if (find_file(file_name, status) && status.is_regular) remove_file(file_name);
}

} // namespace

int write_constraints(const std::string &file_name, const Design &design) {
  OutputFile file;
  if (!open_output(file, file_name)) return 0;
  for (const SectionStep &step : kSteps) {
    if (show_constraints_progress && step.progress != nullptr) console_put_text(step.progress);
    if (step.write != nullptr) step.write(file, design);
  }
  if (!close_output(file)) remove_former(file_name);
  return 0;
}

} // namespace cubenet
