// Names before and after a renaming.
#include "kit/check/renamed.h"

#include "model/names.h"

namespace cubekit {

namespace {

bool begins(std::string_view name, std::string_view with) {
  return cubenet::equal_ignoring_case(name.substr(0, with.size()), with);
}

bool is_guarded(std::string_view before, std::string_view after) {
  if (after == before) return true;
  const std::string_view guard = guard_of(before);
  return !guard.empty() && after.starts_with(guard) && after.substr(guard.size()) == before;
}

} // namespace

std::string_view guard_of(std::string_view name) {
  if (begins(name, "_PLA") || begins(name, "_RES_")) return "_RES";
  const bool is_rail = begins(name, "GND") || begins(name, "VCC");
  return is_rail && (name.size() == 3 || name[3] == '_') ? "_RES_" : "";
}

std::string_view without_number(std::string_view name) {
  if (!name.starts_with("_PLA")) return {};
  const std::size_t digits_end = name.find_first_not_of("0123456789", 4);
  if (digits_end == 4 || digits_end == std::string_view::npos || name[digits_end] != '_') return {};
  return name.substr(digits_end + 1);
}

bool may_become(std::string_view before, std::string_view after) {
  if (before.empty()) return false;
  return is_guarded(before, after) || is_guarded(before, without_number(after));
}

} // namespace cubekit
