#include "kit/util/finding.h"

#include <ostream>

namespace cubekit {

std::string shortened(std::string_view name) {
  constexpr std::size_t kLongest = 100;
  return name.size() <= kLongest ? std::string(name) : std::string(name.substr(0, kLongest)) + "...";
}

std::string quoted(std::string_view name) { return "'" + shortened(name) + "'"; }

void print_finding(std::ostream &stream, const std::string &path, const Finding &finding) {
  stream << path;
  if (finding.line != 0) stream << ':' << finding.line;
  stream << ": " << finding.text << '\n';
}

} // namespace cubekit
