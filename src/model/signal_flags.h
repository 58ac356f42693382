// The flag record that the design rule checker keeps per declared pin and node. The bit positions are fixed:
// every reader tests these exact bits. (F_Q, F_FB, F_OE and F_PIN are between F_RE and F_AP on purpose.)
#pragma once

#include <cstdint>

namespace cubenet {

// role_flags: which equations drive the signal (output list), and which feedbacks read it (F_Q, F_FB, F_PIN).
enum RoleFlag : std::uint32_t {
  F_OUT = 1U << 0,
  F_X1 = 1U << 1,
  F_X2 = 1U << 2,
  F_DX1 = 1U << 3,
  F_DX2 = 1U << 4,
  F_GX1 = 1U << 5,
  F_GX2 = 1U << 6,
  F_TX1 = 1U << 7,
  F_TX2 = 1U << 8,
  F_D = 1U << 9,
  F_REG = 1U << 10,
  F_T = 1U << 11,
  F_J = 1U << 12,
  F_K = 1U << 13,
  F_R = 1U << 14,
  F_S = 1U << 15,
  F_C = 1U << 16,
  F_LH = 1U << 17,
  F_LE = 1U << 18,
  F_CE = 1U << 19,
  F_SP = 1U << 20,
  F_SR = 1U << 21,
  F_AR = 1U << 22,
  F_RE = 1U << 23,
  F_Q = 1U << 24,
  F_FB = 1U << 25,
  F_OE = 1U << 26,
  F_PIN = 1U << 27,
  F_AP = 1U << 28,
  F_PR = 1U << 29,
};

// use_flags: how the signal is read, and where it occurs.
enum UseFlag : std::uint32_t {
  F_IN = 1U << 1,         // plain name on the input list
  F_DIN = 1U << 2,        // .D on the input list
  F_TIN = 1U << 3,        // .T on the input list
  F_RIN = 1U << 4,        // .REG on the input list
  F_IO = 1U << 8,         // a pin's output-list entry was accepted
  F_NOD = 1U << 9,        // the record is a pin's (unset: a node's, despite the name)
  F_FF = 1U << 10,        // registered
  F_ILB = 1U << 11,       // an input-list entry was accepted
  F_OB = 1U << 12,        // an output-list entry was accepted
  F_NODE_MIN = 1U << 18,  // node read by a macro (an input connection of an INSTANCE statement)
  F_NODE_MOUT = 1U << 19, // node driven by a macro
  F_PIN_MIN = 1U << 20,   // pin read by a macro
  F_PIN_MOUT = 1U << 21,  // pin driven by a macro
  F_NS = 1U << 29,        // carried and listed, set by no rule
  F_NR = 1U << 30,        // carried and listed, set by no rule
};

struct SignalFlags {
  bool present = false; // the signal is used: it has a record
  std::uint32_t role_flags = 0;
  std::uint32_t use_flags = 0;
};

} // namespace cubenet
