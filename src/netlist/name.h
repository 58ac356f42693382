// How the netlist's symbols and nets are named.
#pragma once

#include <string>
#include <string_view>

#include "util/output_file.h"

namespace cubenet {

// A name is printed as its two pieces in a row. The base belongs to the design, the suffix is fixed text, so neither
// may be renamed while a Netlist stands.
struct Name {
  std::string_view base, suffix;
};
inline bool operator==(const Name &a, const Name &b) { return a.base == b.base && a.suffix == b.suffix; }
inline std::string name_text(const Name &name) { return std::string(name.base).append(name.suffix); }

inline char *append(char *at, const Name &name) { return append(append(at, name.base), name.suffix); }
inline std::size_t longest(const Name &name) { return name.base.size() + name.suffix.size(); }
inline void put(OutputFile &file, const Name &name) { put_all(file, name); }

} // namespace cubenet
