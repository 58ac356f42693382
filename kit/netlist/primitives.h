// The vocabulary of the target library: every primitive with its pins in the order in which a netlist lists
// them, what it computes, and the device series that have it.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace cubekit {

enum class Direction : std::uint8_t { IN, OUT, BIDI };

enum class Function : std::uint8_t {
  AND,
  OR,
  XOR,       // Z0 is the XOR of A0 and A1, ZN0 the XNOR
  BUFFER,    // one input: BUF, INV
  TABLE,     // an OR of product terms: PLA (rows in the netlist), ZDOT (rows only in the truth table)
  FLIP_FLOP, // at a rising CLK, if EN: Q0 = D0, or Q0 = Q0 xor T0; at any time CD clears, else SD sets
  LATCH,     // Q0 = D0 while G; at any time CD clears, else SD sets
  PAD,       // XTRI1, XBIDI1: an output buffer, enabled by OE
  TRISTATE,  // IT11: a tristate buffer inside the device
  MACRO,     // a placed macro; its ports are its own
};

struct PinRow {
  std::string_view name; // empty: no further pin
  Direction direction = Direction::IN;
  bool optional = false;
};

struct PrimitiveRow {
  std::string_view name;
  Function function;
  bool inverted;                       // the value comes out inverted (on ZN0)
  bool numbered;                       // begins with input pins A0, A1, ...; `pins` lists only the rest
  bool width_in_name;                  // the number of those inputs follows the name: AND3
  std::uint8_t min_series, max_series; // device series that have it: 0, 1, 5, 8
  std::array<PinRow, 7> pins;
};

namespace pin {
inline constexpr PinRow A0{"A0"}, A1{"A1"}, D0{"D0"}, T0{"T0"}, CD{"CD"}, SD{"SD"}, EN{"EN"}, CLK{"CLK"}, G{"G"};
inline constexpr PinRow OE{"OE"}, MAY_OE{"OE", Direction::IN, true};
inline constexpr PinRow Z0{"Z0", Direction::OUT}, ZN0{"ZN0", Direction::OUT}, Q0{"Q0", Direction::OUT};
inline constexpr PinRow MAY_Z0{"Z0", Direction::OUT, true}, MAY_ZN0{"ZN0", Direction::OUT, true};
inline constexpr PinRow O0{"O0", Direction::OUT}, XO0{"XO0", Direction::OUT}, XB0{"XB0", Direction::BIDI};
} // namespace pin

// clang-format off
inline constexpr std::array kPrimitives{std::to_array<PrimitiveRow>({
    // name    function            inverted numbered width  series  pins
    {"AND",    Function::AND,       false,   true,   true,  0, 8, {pin::Z0}},
    {"NAND",   Function::AND,       true,    true,   true,  0, 8, {pin::ZN0}},
    {"OR",     Function::OR,        false,   true,   true,  0, 8, {pin::Z0}},
    {"NOR",    Function::OR,        true,    true,   true,  0, 8, {pin::ZN0}},
    {"INV",    Function::BUFFER,    true,    false,  false, 0, 8, {pin::A0, pin::ZN0}},
    {"BUF",    Function::BUFFER,    false,   false,  false, 0, 8, {pin::A0, pin::Z0}},
    {"LXOR2",  Function::XOR,       false,   false,  false, 0, 8, {pin::A0, pin::A1, pin::MAY_Z0, pin::MAY_ZN0}},
    {"PLA",    Function::TABLE,     false,   true,   false, 0, 8, {pin::Z0}},
    {"ZDOT",   Function::TABLE,     false,   true,   false, 0, 8, {pin::Z0}},
    {"FD11",   Function::FLIP_FLOP, false,   false,  false, 0, 8, {pin::D0, pin::CLK, pin::Q0}},
    {"FD21",   Function::FLIP_FLOP, false,   false,  false, 0, 8, {pin::D0, pin::CD, pin::CLK, pin::Q0}},
    {"FD11E",  Function::FLIP_FLOP, false,   false,  false, 5, 8, {pin::D0, pin::EN, pin::CLK, pin::Q0}},
    {"FD21E",  Function::FLIP_FLOP, false,   false,  false, 5, 8, {pin::D0, pin::CD, pin::EN, pin::CLK, pin::Q0}},
    {"FDC1",   Function::FLIP_FLOP, false,   false,  false, 5, 8, {pin::D0, pin::SD, pin::CLK, pin::Q0}},
    {"FDC1E",  Function::FLIP_FLOP, false,   false,  false, 5, 8, {pin::D0, pin::SD, pin::EN, pin::CLK, pin::Q0}},
    {"FDE1",   Function::FLIP_FLOP, false,   false,  false, 5, 8, {pin::D0, pin::CD, pin::SD, pin::CLK, pin::Q0}},
    {"FDE1E",  Function::FLIP_FLOP, false,   false,  false, 5, 8, {pin::D0, pin::CD, pin::SD, pin::EN, pin::CLK, pin::Q0}},
    {"FTI21",  Function::FLIP_FLOP, false,   false,  false, 5, 5, {pin::T0, pin::CD, pin::CLK, pin::Q0}},
    {"FTI31",  Function::FLIP_FLOP, false,   false,  false, 5, 5, {pin::T0, pin::SD, pin::CLK, pin::Q0}},
    {"FTI41",  Function::FLIP_FLOP, false,   false,  false, 5, 5, {pin::T0, pin::CD, pin::SD, pin::CLK, pin::Q0}},
    {"XDL1",   Function::LATCH,     false,   false,  false, 0, 8, {pin::G, pin::D0, pin::Q0}},
    {"XDL2",   Function::LATCH,     false,   false,  false, 5, 8, {pin::CD, pin::G, pin::D0, pin::Q0}},
    {"XDL3",   Function::LATCH,     false,   false,  false, 5, 8, {pin::SD, pin::G, pin::D0, pin::Q0}},
    {"XDL4",   Function::LATCH,     false,   false,  false, 5, 8, {pin::CD, pin::SD, pin::G, pin::D0, pin::Q0}},
    {"XTRI1",  Function::PAD,       false,   false,  false, 0, 8, {pin::A0, pin::MAY_OE, pin::XO0}},
    {"XBIDI1", Function::PAD,       false,   false,  false, 0, 8, {pin::A0, pin::OE, pin::XB0, pin::Z0}},
    {"IT11",   Function::TRISTATE,  false,   false,  false, 8, 8, {pin::A0, pin::OE, pin::O0}},
    {"",       Function::MACRO,     false,   false,  false, 0, 8, {}},
})};
// clang-format on

using PrimitiveIndex = std::uint8_t; // into kPrimitives
constexpr PrimitiveIndex kMacro = kPrimitives.size() - 1;

// The row of a primitive name without its width; kMacro when the library has none of that name.
constexpr PrimitiveIndex find_primitive(std::string_view name) {
  for (PrimitiveIndex i = 0; i < kMacro; i++)
    if (kPrimitives[i].name == name) return i;
  return kMacro;
}

constexpr bool is_storage(Function function) { return function == Function::FLIP_FLOP || function == Function::LATCH; }

} // namespace cubekit
