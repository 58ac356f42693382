// What constraints may name. Their names are those of the ddf netlist, but for the pins of statements that are passed
// on as they were written. A truth table tells of every name whether something asks for it where it stands; without
// one, a name that the netlist doesn't have may be wrong, or a pin that nothing reads.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "kit/check/ddf_parser.h"
#include "model/design.h"
#include "util/text_hash.h"

namespace cubekit {

enum class Answer : std::uint8_t { NO, YES, UNKNOWN };

// Whose names a list holds, in the order of the design's lists.
enum class NameList : std::uint8_t { PINS, INPUTS, OUTPUTS, INPUTS_FIRST, OUTPUTS_FIRST };

// An attribute of the truth table, by its code.
struct Asked {
  int code = 0;
  std::string_view value{}; // in upper case, that of a group as written; empty: any
};

// Where each name stands in a list.
struct Places {
  NameIndex names;                   // numbered as they are met
  std::vector<std::uint32_t> starts; // per name, and one more: into `places`
  std::vector<std::uint32_t> places; // ascending for each name
};

struct Signals {
  const cubenet::Design *table = nullptr;
  NameIndex netlist{};                        // what nets, symbols and ports are called, with their suffix and without
  NameIndex unread{};                         // pins of the table that the netlist doesn't have
  Places pins{};                              // declared ones or, without a table, those of the netlist
  Places inputs{}, outputs{};                 // of the table
  cubenet::TextSet<std::string> statements{}; // of the table
};

// `table` may be null. It and the text of the ddf must outlive the result.
Signals gather_signals(const DdfReading &ddf, const cubenet::Design *table);

// Goes along a design's list as one list of constraints names its members.
struct Walk {
  NameList list;
  std::uint32_t at = 0; // the place from which on the next one is looked for
};

// Whether the name may come next, and the table has all that is asked for it.
Answer take_next(const Signals &signals, Walk &walk, std::string_view name, std::span<const Asked> asked);

// Whether a statement was passed on whose signal and value are written so.
Answer find_statement(const Signals &signals, int code, std::string_view name, std::string_view value);

// Texts that the table gives for copying under that name, and that begin so.
std::vector<std::string_view> copied_texts(const Signals &signals, std::string_view name, std::string_view begin);

} // namespace cubekit
