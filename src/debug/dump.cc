// Lists the whole design database, the checker's flag records and the head of the cube table, one labelled value a line
// under the database's own field names. Comparing two listings is how a change of the database is looked at, so labels,
// widths and separators stay as they are, uneven ones included. A text that is not set is listed as empty.

#include "debug/dump.h"

#include <string_view>

#include "model/run_settings.h"

namespace cubenet {

namespace {

constexpr std::string_view kSeparator = "===========================\n";
constexpr std::string_view kItemSeparator = "------------------------\n";

struct Signed {
  std::int64_t value;
};
char *append(char *at, Signed number) {
  if (number.value < 0) *at++ = '-';
  return append(at, Decimal{static_cast<std::uint64_t>(number.value < 0 ? -number.value : number.value)});
}
std::size_t longest(Signed) { return 1 + longest(Decimal{}); }

void put_value(OutputFile &file, std::int64_t value) { put_all(file, Signed{value}); }
void put_value(OutputFile &file, std::string_view value) { put(file, value); }
void put_value(OutputFile &file, const Rare<std::string> &value) { put(file, *value); }

// One line of a label, as it stands, and a value.
template <typename Value> void put_line(OutputFile &file, std::string_view label, const Value &value) {
  put(file, label);
  put_value(file, value);
  put(file, '\n');
}

// "label<index>tail<value>"
template <typename Value>
void put_indexed(OutputFile &file, std::string_view label, std::size_t index, std::string_view tail,
                 const Value &value) {
  put_all(file, label, Decimal{index});
  put_line(file, tail, value);
}

template <typename Record, typename Value> struct Field {
  std::string_view label;
  Value Record::*value;
};

template <typename Record, typename Value, std::size_t N>
void put_fields(OutputFile &file, const Record &record, const Field<Record, Value> (&fields)[N]) {
  for (const auto &field : fields) put_line(file, field.label, record.*field.value);
}

constexpr Field<XPin, Rare<std::string>> kXPinTexts[] = {
    {"xpin_num = ", &XPin::xpin_num},
    {"grp = ", &XPin::grp},
};
constexpr Field<XPin, std::uint8_t> kXPinCodes[] = {
    {"crit= ", &XPin::crit},        {"pullup = ", &XPin::pullup},     {"outdelay = ", &XPin::outdelay},
    {"voltage = ", &XPin::voltage}, {"slowslew = ", &XPin::slowslew}, {"opendrain = ", &XPin::opendrain},
};
constexpr Field<SignalAttributes, Mark> kMarks[] = {
    {"LXOR2    = ", &SignalAttributes::LXOR2},   {"PRESERVE = ", &SignalAttributes::PRESERVE},
    {"PROTECT  = ", &SignalAttributes::PROTECT}, {"ZDOT     = ", &SignalAttributes::ZDOT},
    {"SLOWCLK  = ", &SignalAttributes::SLOWCLK}, {"FASTCLK  = ", &SignalAttributes::FASTCLK},
    {"CLK0     = ", &SignalAttributes::CLK0},    {"CLK1     = ", &SignalAttributes::CLK1},
    {"CLK2     = ", &SignalAttributes::CLK2},    {"ICLK0     = ", &SignalAttributes::ICLK0},
    {"ICLK1     = ", &SignalAttributes::ICLK1},  {"A0     = ", &SignalAttributes::A0},
    {"A1     = ", &SignalAttributes::A1},
};
constexpr Field<SignalNames, std::string> kPathSlots[] = {
    {"SCP    = ", &SignalNames::SCP}, {"SAP    = ", &SignalNames::SAP}, {"SNP    = ", &SignalNames::SNP},
    {"SLP    = ", &SignalNames::SLP}, {"STP    = ", &SignalNames::STP}, {"ECP    = ", &SignalNames::ECP},
    {"EAP    = ", &SignalNames::EAP}, {"ENP    = ", &SignalNames::ENP}, {"ELP    = ", &SignalNames::ELP},
    {"ETP    = ", &SignalNames::ETP}, {"GRP    = ", &SignalNames::GRP},
};

struct FlagLine {
  std::string_view label;
  std::uint32_t mask;
};
constexpr FlagLine kRoleFlags[] = {
    {"F_OUT = ", F_OUT}, {"F_X1  = ", F_X1},  {"F_X2  = ", F_X2},  {"F_DX1 = ", F_DX1}, {"F_DX2 = ", F_DX2},
    {"F_GX1 = ", F_GX1}, {"F_GX2 = ", F_GX2}, {"F_TX1 = ", F_TX1}, {"F_TX2 = ", F_TX2}, {"F_D   = ", F_D},
    {"F_REG = ", F_REG}, {"F_T   = ", F_T},   {"F_J   = ", F_J},   {"F_K   = ", F_K},   {"F_R   = ", F_R},
    {"F_S   = ", F_S},   {"F_C   = ", F_C},   {"F_LH  = ", F_LH},  {"F_LE  = ", F_LE},  {"F_CE  = ", F_CE},
    {"F_SP  = ", F_SP},  {"F_SR  = ", F_SR},  {"F_AR  = ", F_AR},  {"F_RE  = ", F_RE},  {"F_AP  = ", F_AP},
    {"F_PR  = ", F_PR},  {"F_Q   = ", F_Q},   {"F_FB  = ", F_FB},  {"F_OE  = ", F_OE},  {"F_PIN = ", F_PIN},
};
constexpr FlagLine kUseFlags[] = {
    {"F_IN  = ", F_IN}, {"F_DIN = ", F_DIN}, {"F_TIN = ", F_TIN}, {"F_RIN = ", F_RIN},
    {"F_IO  = ", F_IO}, {"F_NOD = ", F_NOD}, {"F_FF  = ", F_FF},  {"F_ILB = ", F_ILB},
    {"F_OB  = ", F_OB}, {"F_NS  = ", F_NS},  {"F_NR  = ", F_NR},
};

// A set flag is listed with its value in the word, not as 1.
template <std::size_t N> void put_flags(OutputFile &file, std::uint32_t word, const FlagLine (&lines)[N]) {
  for (const FlagLine &line : lines)
    if ((word & line.mask) != 0) put_line(file, line.label, std::int64_t{word & line.mask});
}

template <typename Texts> void dump_texts(OutputFile &file, std::string_view label, const Texts &texts) {
  for (std::size_t i = 0; i < texts.size(); i++) put_indexed(file, label, i, "] = ", texts[i]);
}

void dump_header(OutputFile &file, const Design &design) {
  put(file, kSeparator);
  put_line(file, "design: ", design.header.design);
  put_line(file, "desc  : ", design.header.desc);
  put_line(file, "family: ", design.header.family);
  put_line(file, "part  : ", design.header.part);
  put_line(file, "part_name: ", run_settings.part_name.value_or(""));
  put_line(file, "part_flag = ", run_settings.part_flag);
  dump_texts(file, "option[", design.header.option);
  dump_texts(file, "par[", design.par);
}

void dump_properties(OutputFile &file, const Design &design) {
  put_all(file, kSeparator, "num_property = ", Decimal{design.properties.size()}, '\n');
  for (std::size_t i = 0; i < design.properties.size(); i++) {
    const Property &property = design.properties[i];
    put_all(file, kItemSeparator, "###property ", Decimal{i}, '\n');
    put_line(file, "attr_name = ", property.attr_name);
    put_line(file, "pin_node_name = ", property.pin_node_name);
    put_line(file, "pi_node_ext = ", property.pi_node_ext);
    put_line(file, "attribute_value = ", property.attribute_value);
    put_line(file, "ilb_idx = ", property.ilb_idx);
    put_line(file, "ob_idx = ", property.ob_idx);
  }
}

void dump_pins(OutputFile &file, const Design &design) {
  const std::size_t count = design.pin_names.size();
  put_all(file, kSeparator, "NUM_PIN = ", Decimal{count}, '\n');
  for (std::size_t i = 0; i < count; i++) put_indexed(file, "PIN ", i, ": ", design.pin_names[i]);
  put_all(file, kSeparator, "NUM_XPIN = ", Decimal{count}, '\n');
  for (std::size_t i = 0; i < count; i++) {
    put_all(file, kItemSeparator, "###xpin ", Decimal{i}, '\n');
    put_fields(file, design.xpins[i], kXPinTexts);
    put_fields(file, design.xpins[i], kXPinCodes);
  }
}

void dump_nodes(OutputFile &file, const Design &design) {
  const std::size_t count = design.node_names.size();
  put_all(file, kSeparator, "NUM_NODE = ", Decimal{count}, '\n');
  for (std::size_t i = 0; i < count; i++)
    put_all(file, "NODE ", Decimal{i}, ": ", design.node_names[i], " GRP=", design.node_groups[i], '\n');
  put(file, kSeparator);
  for (std::size_t i = 0; i < count; i++) put_indexed(file, "GRP ", i, ": ", design.node_groups[i]);
}

struct SignalList {
  std::string_view name_label, extension_label;
  const std::vector<std::string> &names, &extensions;
  const std::vector<SignalAttributes> &attributes;
};

void dump_signals(OutputFile &file, const SignalList &list) {
  put(file, kSeparator);
  for (std::size_t i = 0; i < list.names.size(); i++) {
    put(file, kItemSeparator);
    put_indexed(file, list.name_label, i, ": ", list.names[i]);
    put_line(file, list.extension_label, list.extensions[i]);
    put_fields(file, list.attributes[i], kMarks);
    put_fields(file, *list.attributes[i].names, kPathSlots);
  }
}

// The register types are listed by node index, those of the pins too: a pin beyond the node count is not shown.
void dump_placement(OutputFile &file, const Design &design) {
  put(file, kSeparator);
  for (std::size_t i = 0; i < design.node_names.size(); i++) {
    put(file, kItemSeparator);
    put_line(file, "pin_glb  = ", int{test_bit(design.pin_glb, i)});
    put_line(file, "pin_ioc  = ", int{test_bit(design.pin_ioc, i)});
    put_line(file, "node_glb = ", int{test_bit(design.node_glb, i)});
    put_line(file, "node_ioc = ", int{test_bit(design.node_ioc, i)});
  }
}

void dump_point(OutputFile &file, std::string_view label, const PathPoint &point) {
  put_all(file, label, point.signal, ", type = ", Signed{point.kind}, '\n');
}

void dump_paths(OutputFile &file, const Design &design) {
  put_all(file, kSeparator, "NUM_PATH = ", Decimal{design.paths.size()}, '\n');
  for (const Path &path : design.paths) {
    put_all(file, kItemSeparator, "PATH: ", path.name, '\n');
    dump_point(file, "start: ", path.start);
    dump_point(file, "end:   ", path.end);
  }
}

// As many words of the row storage as there are rows: a fingerprint of the table, not its contents.
void dump_cubes(OutputFile &file, const CubeTable &cubes) {
  put_all(file, kSeparator, "NUM_CUBES = ", Decimal{cubes.NUM_CUBES}, '\n', kItemSeparator);
  for (std::size_t i = 0; i < cubes.NUM_CUBES; i++)
    put_line(file, "", std::int64_t{static_cast<std::int32_t>(cubes.rows[i])});
}

void dump_flags(OutputFile &file, std::string_view label, const std::vector<std::string> &names,
                const std::vector<SignalFlags> &flags) {
  for (std::size_t i = 0; i < names.size(); i++) {
    put_all(file, label, names[i], "\n-----------------\n");
    if (i >= flags.size()) continue; // the design has not been checked
    put_flags(file, flags[i].role_flags, kRoleFlags);
    put_flags(file, flags[i].use_flags, kUseFlags);
  }
}

} // namespace

void put_listing(OutputFile &file, const Design &design, const CubeTable &cubes) {
  dump_header(file, design);
  dump_properties(file, design);
  dump_pins(file, design);
  dump_nodes(file, design);
  dump_signals(file, {"ILB ", "IB_EXT = ", design.ILB, design.IB_EXT, design.ilb_attributes});
  dump_signals(file, {"OLB ", "OB_EXT = ", design.OLB, design.OB_EXT, design.olb_attributes});
  dump_placement(file, design);
  dump_paths(file, design);
  dump_cubes(file, cubes);
  put(file, "=========================\n"); // two shorter than the others
  dump_flags(file, "\nPIN = ", design.pin_names, design.pin_flags);
  dump_flags(file, "NODE = ", design.node_names, design.node_flags);
}

int dump_design(const std::string &file_name, const Design &design, const CubeTable &cubes) {
  OutputFile file;
  if (!open_output(file, file_name)) return 2;
  put_listing(file, design, cubes);
  return close_output(file) ? 0 : 2;
}

} // namespace cubenet
