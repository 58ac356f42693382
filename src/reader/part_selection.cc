// Part selection. A part is named in one of two styles: it begins with the family's name, or it is a
// device-style name such as "i7710K100" (family letter, four digits, package letter, speed).
#include "reader/part_selection.h"

#include <cstdint>
#include <optional>

#include "model/names.h"
#include "reader/tokens.h"
#include "report/messages.h"

namespace cubenet {

namespace {

struct Family {
  char letter; // of device-style names, lower case
  std::string_view name, default_part;
};
constexpr Family kTarvex{'i', "Tarvex", "Tarvex7710K-100XQ64"};
constexpr Family kMirn{'p', "Mirn", "Mirn7710K-100XQ64"};

const Family &other_family(const Family &family) { return &family == &kTarvex ? kMirn : kTarvex; }

bool is_family_name(std::string_view text, const Family &family) { return equal_ignoring_case(text, family.name); }

struct Part {
  const Family *family;
  std::string name;
};

// A part that begins with a family's name, in any case, gets the family's spelling; the rest becomes upper
// case.
std::optional<Part> parse_family_part(std::string_view text, const Family &family) {
  if (!is_family_name(text.substr(0, family.name.size()), family)) return std::nullopt;
  return Part{&family, std::string(family.name) + upper_case(text.substr(family.name.size()))};
}

std::optional<Part> parse_family_part(std::string_view text) {
  std::optional<Part> part = parse_family_part(text, kMirn);
  return part ? part : parse_family_part(text, kTarvex);
}

const Family *find_family(char letter) {
  for (const Family *family : {&kTarvex, &kMirn})
    if (equal_ignoring_case({&letter, 1}, {&family->letter, 1})) return family;
  return nullptr;
}

// A device-style name: family letter, four digits, package letter, then the speed's digits (0 if missing) up
// to the end or a ',' or ';'. At least 8 characters; the speed times ten must fit the part name's number.
std::optional<Part> parse_device_style(std::string_view text) {
  const Family *family = text.size() >= 8 ? find_family(text.front()) : nullptr;
  if (family == nullptr) return std::nullopt;
  const std::string_view model = text.substr(1, 4);
  std::string_view speed = text.substr(6);
  speed = speed.substr(0, speed.find_first_of(",;"));
  if ((std::string(model).append(speed)).find_first_not_of("0123456789") != std::string::npos) return std::nullopt;
  const std::optional<int> value = speed.empty() ? 0 : scan_decimal(speed);
  if (!value) return std::nullopt;
  std::string name(family->name);
  name.append(model).append("-").append(std::to_string(std::int64_t{*value} * 10)).append("L");
  return Part{family, name + upper_case(text.substr(5, 1))};
}

void settle(DesignHeader &header, const Family &family, std::string_view part) {
  header.family = family.name;
  header.part = part;
}

bool refuse_part(std::string_view part) {
  report_error(31361, "Part '%s' is not recognized", std::string(part.substr(0, kTextLimit)).c_str());
  return false;
}

bool select_by_part(const PartRequest &request, DesignHeader &header) {
  std::optional<Part> part = parse_family_part(request.part);
  if (!part && request.is_from_command_line) part = Part{&kTarvex, request.part}; // not checked
  if (!part) part = parse_device_style(request.part);
  if (!part) return refuse_part(request.part);
  settle(header, *part->family, part->name);
  return true;
}

void select_by_device(const std::string &device, DesignHeader &header) {
  if (is_family_name(device, kMirn)) {
    settle(header, kMirn, kMirn.default_part);
    report_warning(31633, "Device is declared as '%s', part '%s' is used", kMirn.name.data(), header.part.c_str());
  } else if (is_family_name(device, kTarvex)) {
    settle(header, kTarvex, kTarvex.default_part);
    report_warning(31634, "Device is declared as '%s', part '%s' is used", kTarvex.name.data(), header.part.c_str());
  } else if (const std::optional<Part> part = parse_device_style(device)) {
    settle(header, *part->family, part->name);
  } else {
    settle(header, kTarvex, kTarvex.default_part);
    report_warning(31632, "Device '%s' is not recognized, part '%s' is used", shown(device).c_str(),
                   header.part.c_str());
  }
}

// Compares the device with the selected part, which is kept in any case.
void check_device(const std::string &device, const Part &part) {
  const Family &other = other_family(*part.family);
  if (is_family_name(device, *part.family)) return;
  const std::optional<Part> derived = parse_device_style(device);
  if (derived && derived->family == part.family && part.name.starts_with(derived->name)) return;
  if (derived || is_family_name(device, other))
    report_warning(31631, "Part '%s' and device '%s' do not match; part '%s' is used", part.name.c_str(),
                   derived ? shown(device).c_str() : other.name.data(), part.name.c_str());
  else
    report_warning(31632, "Device '%s' is not recognized, part '%s' is used", shown(device).c_str(), part.name.c_str());
}

bool select_by_both(const PartRequest &request, DesignHeader &header) {
  std::optional<Part> part = parse_family_part(request.part);
  if (!part) part = parse_device_style(request.part);
  if (!part) return refuse_part(request.part);
  settle(header, *part->family, part->name);
  check_device(request.device, *part);
  return true;
}

} // namespace

bool select_part(const PartRequest &request, DesignHeader &header) {
  const bool has_device = !request.device.empty();
  if (request.has_part && request.part.size() >= kTextLimit) return refuse_part(request.part);
  if (request.has_part && (request.is_from_command_line || !has_device)) return select_by_part(request, header);
  if (request.has_part) return select_by_both(request, header);
  if (has_device)
    select_by_device(request.device, header);
  else
    settle(header, kTarvex, kTarvex.default_part);
  return true;
}

} // namespace cubenet
