// A truth table file being built, and the kinds of signals: what the generators of designs share.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace cubekit {

struct TableEntry {
  std::string name, extension; // extension empty: none
  bool inverted = false;       // outputs: written with '-'
};

struct TableTerm {
  std::vector<std::pair<std::size_t, bool>> literals; // column, and whether it is true
  std::vector<std::size_t> outputs;
};

struct DesignText {
  std::vector<std::string> pins; // with their '-'
  std::vector<std::string> nodes;
  std::vector<std::string> statements; // further attribute lines, without their marker
  std::vector<TableEntry> columns, outputs;
  std::vector<TableTerm> terms;
  std::string phase; // one digit per output; empty: none
};

std::string format_design(const DesignText &design);

// How a signal can be driven.
struct SignalKind {
  std::array<std::string_view, 2> data; // extensions of its data inputs; the second may be empty
  bool registered;
  bool may_latch;
  std::array<std::string_view, 2> data_reads; // extensions reading the data input; at most one in a design
};

// clang-format off
inline constexpr auto kSignalKinds = std::to_array<SignalKind>({
    // data                 registered latch  reads
    {{"", ""},              false,     false, {"D", ""}},
    {{"X1", "X2"},          false,     false, {"D", ""}},
    {{"D", ""},             true,      true,  {"D", ""}},
    {{"D.X1", "D.X2"},      true,      true,  {"D", ""}},
    {{"REG", ""},           true,      true,  {"D", "REG"}},
    {{"REG.X1", "REG.X2"},  true,      true,  {"D", "REG"}},
    {{"T", ""},             true,      false, {"D", "T"}},
    {{"T.X1", "T.X2"},      true,      false, {"D", "T"}},
    {{"J", "K"},            true,      false, {"D", ""}},
    {{"S", "R"},            true,      false, {"D", ""}},
});
// clang-format on
constexpr std::size_t kFirstRegister = 2; // kinds before it are combinational

// The controls of a register or latch.
struct Controls {
  std::string_view clock; // C, LE or LH
  bool CE = false, SP = false, SR = false;
  std::string_view reset;  // AR, RE or empty
  std::string_view preset; // AP, PR or empty
};
// Adds the outputs of a register: data, then controls.
void add_register_outputs(DesignText &design, const std::string &name, const SignalKind &kind,
                          const Controls &controls);

} // namespace cubekit
