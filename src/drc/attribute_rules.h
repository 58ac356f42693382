// The attribute codes as the checker sees them, and the rules for attributes of list entries.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "model/attribute_codes.h"
#include "model/design.h"
#include "model/names.h"

namespace cubenet {

// The accepted entries of one list by signal and extension.
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

// One attribute statement of a declared signal while it is judged.
struct AttributeCase {
  Design &design;
  const EntryIndex &outputs, &inputs;
  Property &property;
  const char *attribute; // its name
  SignalIndex signal;
  ExtensionCode extension; // as written
  std::string name;        // of the signal, as declared
  std::string shown;       // the same with the extension, when it was written with one
};

inline bool has_role(const AttributeCase &given, ExtensionCode code) {
  return (signal_flags(given.design, given.signal).role_flags >> code & 1U) != 0;
}
inline bool has_use(const AttributeCase &given, UseFlag flag) {
  return (signal_flags(given.design, given.signal).use_flags & flag) != 0;
}
inline bool is_registered(const AttributeCase &given) { return has_use(given, F_FF); }

// An attribute that is ignored, or that has done all it is for.
inline void drop_attribute(Property &property) {
  property.attr_name = 0;
  property.ilb_idx = -1;
}

const char *attribute_name(int code);

// The marks of output-list entries, by field of their record.
void attach_mark(AttributeCase &given, Mark SignalAttributes::*mark);
void attach_xor_mark(AttributeCase &given);
void attach_clock(AttributeCase &given);
void bind_path_start(AttributeCase &given);
void bind_path_end(AttributeCase &given);
void join_group(AttributeCase &given);
void set_register_type(AttributeCase &given);

constexpr bool is_path_code(int code) { return code >= CODE_FIRST_PATH && code <= CODE_LAST_PATH; }

} // namespace cubenet
