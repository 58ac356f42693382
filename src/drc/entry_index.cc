// A sorted list with binary search.
#include "drc/entry_index.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace cubenet {

EntryIndex index_entries(const std::vector<SignalIndex> &signals, const std::vector<std::string> &extensions) {
  EntryIndex index;
  index.entries.reserve(signals.size());
  for (std::size_t i = 0; i < signals.size(); i++)
    if (signals[i] != kNoSignal)
      index.entries.push_back({signals[i], extension_code(extensions[i]), static_cast<std::int32_t>(i)});
  std::sort(index.entries.begin(), index.entries.end(), [](const EntryIndex::Entry &a, const EntryIndex::Entry &b) {
    return std::tie(a.signal, a.code, a.position) < std::tie(b.signal, b.code, b.position);
  });
  return index;
}

std::int32_t find_entry(const EntryIndex &index, SignalIndex signal, ExtensionCode code) {
  const auto at =
      std::lower_bound(index.entries.begin(), index.entries.end(), std::pair(signal, code),
                       [](const EntryIndex::Entry &entry, const std::pair<SignalIndex, ExtensionCode> &key) {
                         return std::pair(entry.signal, entry.code) < key;
                       });
  return at != index.entries.end() && at->signal == signal && at->code == code ? at->position : -1;
}

} // namespace cubenet
