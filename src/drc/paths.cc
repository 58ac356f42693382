// Timing paths: each path attribute names paths that start or end at its signal. All points are gathered first; then
// each path is judged, and the names of those that stand go to the list entries of their points.
#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "drc/entry_attributes.h"
#include "drc/passes.h"
#include "model/characters.h"
#include "model/names.h"
#include "report/messages.h"
#include "util/text_hash.h"

namespace cubenet {

namespace {

// A path name in the value of an attribute record.
struct Mention {
  std::uint32_t property, path;
  bool is_extra; // the path has a point of this kind already
};

struct PathTable {
  std::vector<Path> paths;
  std::vector<Mention> mentions;
  TextMap<std::string_view, std::uint32_t> index; // by whole name
};

// By kind, in code order.
constexpr std::array<std::string SignalNames::*, 10> kSlots{
    &SignalNames::SCP, &SignalNames::SAP, &SignalNames::SLP, &SignalNames::STP, &SignalNames::SNP,
    &SignalNames::ECP, &SignalNames::EAP, &SignalNames::ELP, &SignalNames::ETP, &SignalNames::ENP};
static_assert(kSlots.size() == CODE_ENP - CODE_SCP + 1);

bool is_legal(char c) { return class_of(c) == CHAR_LEGAL || c == '+' || c == '-'; }

template <typename Visit> void for_each_word(std::string_view text, Visit visit) {
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(' '), text.size());
    if (end > 0) visit(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
}

std::string shown_signal(const Design &design, const Property &property) {
  const std::string &name = property.ilb_idx >= 0  ? design.ILB[static_cast<std::size_t>(property.ilb_idx)]
                            : property.ob_idx >= 0 ? design.OLB[static_cast<std::size_t>(property.ob_idx)]
                                                   : property.pin_node_name;
  return display_name(name, property.pi_node_ext);
}

bool refuse_name(const std::string &path, const Property &property, const std::string &shown) {
  const std::string name = attribute_name(*find_attribute(property.attr_name));
  const char *attribute = name.c_str();
  const char *value = property.attribute_value.c_str();
  const auto *illegal = std::find_if_not(path.begin(), path.end(), is_legal).base();
  if (path.find('.') != std::string::npos)
    report_warning(31588,
                   "Path name '%s' contains illegal character '.'; path name '%s' is invalid; attribute '%s %s %s' is "
                   "ignored",
                   path.c_str(), path.c_str(), attribute, shown.c_str(), value);
  else if (illegal != path.data() + path.size())
    report_warning(31588,
                   "Path name '%s' contains illegal character '%s'; path name '%s' is invalid; attribute '%s %s %s' is "
                   "ignored",
                   path.c_str(), show_character(*illegal).data(), path.c_str(), attribute, shown.c_str(), value);
  else if (is_digit(path.front()))
    report_warning(31588,
                   "The first character of path name '%s' is a digit; path name '%s' is invalid; attribute '%s %s %s' "
                   "is ignored",
                   path.c_str(), path.c_str(), attribute, shown.c_str(), value);
  else
    return false;
  return true;
}

// The first fault ignores the attribute with all its names.
bool has_bad_name(const Property &property, const std::string &shown) {
  bool is_bad = false;
  for_each_word(property.attribute_value,
                [&](std::string_view path) { is_bad = is_bad || refuse_name(std::string(path), property, shown); });
  return is_bad;
}

std::uint32_t path_of(PathTable &table, std::string_view name) {
  const auto [at, is_new] = table.index.try_emplace(name, static_cast<std::uint32_t>(table.paths.size()));
  if (is_new) table.paths.emplace_back().name = name;
  return at->second;
}

// False when the path has such a point already.
bool take_point(Path &path, int kind, const std::string &shown) {
  const bool is_start = is_path_start(kind);
  PathPoint &point = is_start ? path.start : path.end;
  if (point.kind == 0) {
    point = {shown, kind};
    return true;
  }
  const char *name = path.name.c_str();
  if (is_start)
    report_warning(31582,
                   "Starting point of path '%s' is declared as '%s' and re-declared as '%s'; extra starting point, "
                   "'%s', of path '%s' is ignored",
                   name, point.signal.c_str(), shown.c_str(), shown.c_str(), name);
  else
    report_warning(31584,
                   "Ending point of path '%s' is declared as '%s' and re-declared as '%s'; extra ending point, '%s', "
                   "of path '%s' is ignored",
                   name, point.signal.c_str(), shown.c_str(), shown.c_str(), name);
  return false;
}

void gather_points(Design &design, PathTable &table) {
  for (std::size_t i = 0; i < design.properties.size(); i++) {
    Property &property = design.properties[i];
    if (!is_path_code(property.attr_name)) continue;
    const std::string shown = shown_signal(design, property);
    if (has_bad_name(property, shown)) {
      drop_attribute(property);
      continue;
    }
    for_each_word(property.attribute_value, [&](std::string_view name) {
      const std::uint32_t path = path_of(table, name);
      const bool is_extra = !take_point(table.paths[path], property.attr_name, shown);
      table.mentions.push_back({static_cast<std::uint32_t>(i), path, is_extra});
    });
  }
}

// Reports what makes the path useless; its name is cleared then. A path that has only an end is kept.
void judge_path(Path &path) {
  if (path.name.size() > kTextLimit) {
    path.name.resize(kTextLimit);
    report_warning(31581, "Path name '%s' is longer than 255 characters; path '%s' is ignored", path.name.c_str(),
                   path.name.c_str());
  } else if (path.start.kind != 0 && path.end.kind == 0) {
    report_warning(31585, "Ending point of path '%s' is not specified; path '%s' is ignored", path.name.c_str(),
                   path.name.c_str());
  } else if (path.start.kind != 0 && path.end.kind != end_of_path(path.start.kind)) {
    report_warning(31587,
                   "Starting point, '%s', and ending point, '%s', of path '%s' relate to different path types; path "
                   "'%s' is ignored",
                   path.start.signal.c_str(), path.end.signal.c_str(), path.name.c_str(), path.name.c_str());
  } else {
    return;
  }
  path.name.clear();
}

// What is left of the names stays in the records, and goes to the slot of the attribute's kind.
void attach_points(Design &design, const PathTable &table) {
  for (Property &property : design.properties)
    if (is_path_code(property.attr_name)) property.attribute_value.clear();
  for (const Mention &mention : table.mentions) {
    const std::string &name = table.paths[mention.path].name;
    if (name.empty() || mention.is_extra) continue;
    Property &property = design.properties[mention.property];
    std::string SignalNames::*slot = kSlots[static_cast<std::size_t>(property.attr_name - CODE_SCP)];
    append_word(property.attribute_value, name);
    for (const int input : {property.ilb_idx, property.end_reader_idx})
      if (input >= 0) append_word(design.ilb_attributes[static_cast<std::size_t>(input)].names.writable().*slot, name);
    if (property.ob_idx >= 0)
      append_word(design.olb_attributes[static_cast<std::size_t>(property.ob_idx)].names.writable().*slot, name);
  }
}

} // namespace

void check_paths(Design &design) {
  PathTable table;
  gather_points(design, table);
  for (Path &path : table.paths) judge_path(path);
  attach_points(design, table);
  design.paths = std::move(table.paths);
}

} // namespace cubenet
