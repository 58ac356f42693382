// The accepted entries of one list by signal and extension.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "model/design.h"
#include "model/names.h"

namespace cubenet {

struct EntryIndex {
  struct Entry {
    SignalIndex signal;
    ExtensionCode code;
    std::int32_t position;
  };
  std::vector<Entry> entries; // sorted by signal, then code, then position
};

EntryIndex index_entries(const std::vector<SignalIndex> &signals, const std::vector<std::string> &extensions);
// The first entry of that signal and extension, -1 for none.
std::int32_t find_entry(const EntryIndex &index, SignalIndex signal, ExtensionCode code);

} // namespace cubenet
