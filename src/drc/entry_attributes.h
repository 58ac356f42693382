// The rules for attributes of list entries.
#pragma once

#include <string>

#include "drc/entry_index.h"
#include "model/attributes.h"
#include "model/design.h"
#include "model/names.h"

namespace cubenet {

// An attribute statement of a declared signal while it is checked.
struct AttributeCase {
  Design &design;
  const EntryIndex &outputs, &inputs;
  Property &property;
  const Attribute &attribute;
  std::string attribute_name;
  SignalIndex signal;
  ExtensionCode extension; // as written
  std::string name;        // of the signal, as declared
  std::string shown;       // the same with the extension, if written with one
  bool failed = false;     // an ERROR was reported
};

inline bool has_role(const AttributeCase &given, ExtensionCode code) {
  return (signal_flags(given.design, given.signal).role_flags >> code & 1U) != 0;
}
inline bool has_use(const AttributeCase &given, UseFlag flag) {
  return (signal_flags(given.design, given.signal).use_flags & flag) != 0;
}
inline bool is_registered(const AttributeCase &given) { return has_use(given, F_FF); }

// Drops an attribute that is ignored or completely processed.
inline void drop_attribute(Property &property) {
  property.attr_name = CODE_NONE;
  property.ilb_idx = -1;
}

// The marks of output-list entries, by field of their record.
void attach_mark(AttributeCase &given, Mark SignalAttributes::*mark);
void attach_xor_mark(AttributeCase &given);
void attach_clock(AttributeCase &given);
void bind_path_start(AttributeCase &given);
void bind_path_end(AttributeCase &given);
void join_group(AttributeCase &given);
void set_register_type(AttributeCase &given);

} // namespace cubenet
