// Names of the netlist's symbols and nets.
#pragma once

#include <string>
#include <string_view>

#include "util/output_file.h"

namespace cubenet {

// A name is printed as base, then suffix. The base refers to the design and the suffix to fixed text, so
// signals must not be renamed while a Netlist exists.
struct Name {
  std::string_view base, suffix;
};
inline bool operator==(const Name &a, const Name &b) { return a.base == b.base && a.suffix == b.suffix; }
inline std::string name_text(const Name &name) { return std::string(name.base).append(name.suffix); }

inline char *append(char *at, const Name &name) { return append(append(at, name.base), name.suffix); }
inline std::size_t longest(const Name &name) { return name.base.size() + name.suffix.size(); }
inline void put(OutputFile &file, const Name &name) { put_all(file, name); }

} // namespace cubenet
