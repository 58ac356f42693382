// Lookups in the table of attributes.
#include "model/attributes.h"

#include <algorithm>

namespace cubenet {

namespace {

template <typename Predicate> const Attribute *find_row(Predicate is_it) {
  const auto *row = std::find_if(kAttributes.begin(), kAttributes.end(), is_it);
  return row == kAttributes.end() ? nullptr : row;
}

} // namespace

const Attribute *find_attribute(int code) {
  return find_row([&](const Attribute &each) { return each.code == code; });
}

const Attribute *find_attribute(std::string_view keyword, std::string_view setting) {
  return find_row([&](const Attribute &each) { return each.keyword == keyword && each.setting == setting; });
}

std::string attribute_name(const Attribute &attribute) {
  std::string name(attribute.keyword);
  if (!attribute.setting.empty()) name.append("=").append(attribute.setting);
  return name;
}

} // namespace cubenet
