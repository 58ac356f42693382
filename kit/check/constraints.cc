// The form of a constraints file: known sections, each once and in order, and lines of the section's kind.
#include <array>
#include <string>

#include "kit/check/check.h"

namespace cubekit {

namespace {

struct SectionRow {
  std::string_view header;
  std::string_view keys; // what its lines may begin with, separated by '|'; empty: any key and '='; "*": any text
};

// clang-format off
constexpr auto kSections = std::to_array<SectionRow>({
    {"[GLOBAL CONSTRAINTS]",      ""},
    {"[Power]",                   "Low = |High = "},
    {"[OUTDELAY]",                "On=|Off="},
    {"[SLEWRATE]",                "SLOW=|FAST="},
    {"[PULLUP]",                  "UP=|OFF=|DOWN=|HOLD="},
    {"[OSM ByPass]",              "Bypass="},
    {"[IO TYPES]",                "*"},
    {"[RESOURCE RESERVATIONS]",   "Layer=off;|Pin="},
    {"[LOCATION ASSIGNMENTS]",    "*"},
    {"[symbol/MODULE attribute]", ""},
    {"[PTSABYPASS]",              "BYPASS="},
    {"[4PTs Bypass]",             "BYPASS="}, // in place of the one before
    {"[CLK]",                     "CLK0=|CLK1=|CLK2=|IOCLK0=|IOCLK1=|FASTCLK=|SLOWCLK="},
    {"[PRESERVE]",                "PRESERVE="},
    {"[GROUP ASSIGNMENTS]",       ""},
});
// clang-format on

bool begins_with_key(std::string_view line, std::string_view keys) {
  if (keys.empty()) return line.find('=') != std::string_view::npos && line.front() != '=';
  for (;;) {
    const std::size_t bar = keys.find('|');
    if (line.starts_with(keys.substr(0, bar))) return true;
    if (bar == std::string_view::npos) return false;
    keys.remove_prefix(bar + 1);
  }
}

// A slew rate that is no on or off leaves its line open.
bool is_line_of(std::string_view line, const SectionRow &section) {
  if (section.keys == "*") return true;
  return begins_with_key(line, section.keys) && (line.ends_with(';') || line == "SLEWRATE=");
}

std::size_t find_section(std::string_view line) {
  std::size_t found = 0;
  while (found < kSections.size() && kSections[found].header != line) found++;
  return found;
}

} // namespace

std::vector<Finding> check_constraints(std::string_view text) {
  std::vector<Finding> findings;
  std::size_t section = kSections.size(), next_section = 0, number = 0;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    const std::string_view line = text.substr(0, end);
    number++;
    if (end == std::string_view::npos) findings.push_back({number, "the last line has no end"});
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    if (line.empty()) continue;
    if (const std::size_t found = find_section(line); found < kSections.size()) {
      if (found < next_section) findings.push_back({number, "the section is out of order"});
      section = found;
      next_section = found + 1;
    } else if (section == kSections.size()) {
      findings.push_back({number, "the line stands in no section"});
    } else if (!is_line_of(line, kSections[section])) {
      findings.push_back({number, "the line is none of section " + std::string(kSections[section].header)});
    }
  }
  return findings;
}

} // namespace cubekit
