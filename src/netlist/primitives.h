// The target library as the mapping uses it: its primitives and their pins.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace cubenet {

enum class Primitive : std::uint8_t {
  AND,
  NAND,
  OR,
  NOR, // the number of inputs is part of the printed name
  INV,
  BUF,
  LXOR2,
  FD11,
  FD11E,
  FD21,
  FD21E,
  FDC1,
  FDC1E,
  FDE1,
  FDE1E,
  FTI21,
  FTI31,
  FTI41,
  XDL1,
  XDL2,
  XDL3,
  XDL4,
  XTRI1,
  XBIDI1,
  IT11,
  PLA,
  ZDOT,
  MACRO, // a placed macro: printed under the macro's own name
};

inline constexpr std::array<std::string_view, 28> kPrimitiveNames{
    "AND",   "NAND", "OR",    "NOR",    "INV",   "BUF",   "LXOR2", "FD11",  "FD11E", "FD21",
    "FD21E", "FDC1", "FDC1E", "FDE1",   "FDE1E", "FTI21", "FTI31", "FTI41", "XDL1",  "XDL2",
    "XDL3",  "XDL4", "XTRI1", "XBIDI1", "IT11",  "PLA",   "ZDOT",  ""};
static_assert(kPrimitiveNames.size() == static_cast<std::size_t>(Primitive::MACRO) + 1);

constexpr std::string_view primitive_name(Primitive primitive) {
  return kPrimitiveNames[static_cast<std::size_t>(primitive)];
}
// Built from product terms.
constexpr bool is_block(Primitive primitive) { return primitive == Primitive::PLA || primitive == Primitive::ZDOT; }
constexpr bool has_width(Primitive primitive) { return primitive <= Primitive::NOR; }
// The output of an inverting gate is ZN0, that of any other gate Z0.
constexpr bool is_inverting(Primitive primitive) {
  return primitive == Primitive::NAND || primitive == Primitive::NOR || primitive == Primitive::INV;
}

enum class Direction : std::uint8_t { IN, OUT, BIDI };

enum class PinKind : std::uint8_t {
  A, // numbered: A0, A1, ...
  CD,
  SD,
  EN,
  CLK,
  G,
  D0,
  T0,
  OE,
  Z0,
  ZN0,
  Q0,
  O0,
  XO0,
  XB0,
  PORT_IN,
  PORT_OUT, // ports of a macro
};

struct PinRow {
  std::string_view name; // empty: the name is the macro's
  Direction direction;
};

// clang-format off
inline constexpr std::array<PinRow, 17> kPinRows{{
    {"A",   Direction::IN},
    {"CD",  Direction::IN},
    {"SD",  Direction::IN},
    {"EN",  Direction::IN},
    {"CLK", Direction::IN},
    {"G",   Direction::IN},
    {"D0",  Direction::IN},
    {"T0",  Direction::IN},
    {"OE",  Direction::IN},
    {"Z0",  Direction::OUT},
    {"ZN0", Direction::OUT},
    {"Q0",  Direction::OUT},
    {"O0",  Direction::OUT},
    {"XO0", Direction::OUT},
    {"XB0", Direction::BIDI},
    {"",    Direction::IN},
    {"",    Direction::OUT},
}};
// clang-format on
static_assert(kPinRows.size() == static_cast<std::size_t>(PinKind::PORT_OUT) + 1);

constexpr Direction pin_direction(PinKind kind) { return kPinRows[static_cast<std::size_t>(kind)].direction; }

} // namespace cubenet
