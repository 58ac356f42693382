// What the product terms drive and read: constant and undriven outputs, inputs that no useful term has a literal of,
// and the outputs that merely pass tristate nodes on. The rows are walked in place; nothing is kept per term.
#include <algorithm>
#include <bit>

#include "drc/passes.h"
#include "model/run_settings.h"
#include "report/messages.h"

namespace cubenet {

namespace {

// May hold the bits of the last inputs, too.
constexpr std::size_t first_output_word(const CubeTable &cubes) { return 1 + 2 * cubes.inputs / 32; }

bool has_literal(const CubeTable &cubes, const std::uint32_t *row) {
  std::uint32_t literals = 0;
  for (std::size_t w = 0; w < input_words(cubes); w++) literals |= literal_mask(row[1 + w], input_word_mask(cubes, w));
  return literals != 0;
}

void count_terms(FanOut &fan_out, const CubeTable &cubes) {
  for (std::size_t i = 0; i < cubes.NUM_CUBES; i++) {
    const std::uint32_t *row = cube(cubes, i);
    for_each_output(cubes, row, [&](std::size_t output) { fan_out.cubes[output]++; });
    if (has_literal(cubes, row)) continue;
    for_each_output(cubes, row, [&](std::size_t output) { fan_out.status[output] = OUTPUT_CONSTANT; });
  }
}

// Inputs count as read by the terms that drive an output which is neither constant nor empty.
void mark_read_inputs(FanOut &fan_out, const CubeTable &cubes) {
  std::vector<std::uint32_t> live(cubes.words_per_row, 0); // in the layout of a row
  for (std::size_t output = 0; output < cubes.outputs; output++) {
    const std::size_t bit = 2 * cubes.inputs + output;
    if (fan_out.status[output] == OUTPUT_LOGIC) live[1 + bit / 32] |= 1U << (bit % 32);
  }
  std::vector<std::uint32_t> reads(input_words(cubes), 0);
  for (std::size_t i = 0; i < cubes.NUM_CUBES; i++) {
    const std::uint32_t *row = cube(cubes, i);
    std::uint32_t driven = 0;
    for (std::size_t w = first_output_word(cubes); w < cubes.words_per_row; w++) driven |= row[w] & live[w];
    if (driven == 0) continue;
    for (std::size_t w = 0; w < reads.size(); w++) reads[w] |= literal_mask(row[1 + w], input_word_mask(cubes, w));
  }
  for (std::size_t input = 0; input < cubes.inputs; input++)
    fan_out.fans_out[input] = reads[input / 16] >> (2 * (input % 16)) & 1U;
}

void report_unread_inputs(const Design &design) {
  for (std::size_t input = 0; input < design.ILB.size(); input++) {
    if (design.fan_out.fans_out[input] != 0) continue;
    const SignalIndex signal = design.ilb_signals[input];
    const char *name = design.ILB[input].c_str();
    const char *extension = design.IB_EXT[input].c_str();
    if (signal != kNoSignal && is_pin(design, signal) && (signal_flags(design, signal).use_flags & F_IO) == 0)
      report_warning(31552, "Pin '%s' does not fan out; pin '%s' is removed", name, name);
    else if (run_settings.debug_level >= 1 && *extension != '\0')
      report_warning(31550, "Signal '%s.%s' does not fan out", name, extension);
    else if (run_settings.debug_level >= 1)
      report_warning(31550, "Signal '%s' does not fan out", name);
  }
}

bool is_tristate_node(const Design &design, SignalIndex signal) {
  return signal != kNoSignal && !is_pin(design, signal) && (signal_flags(design, signal).role_flags & F_OE) != 0;
}

// The number of inputs when the row has no literal.
std::size_t first_literal(const CubeTable &cubes, const std::uint32_t *row) {
  for (std::size_t w = 0; w < input_words(cubes); w++)
    if (const std::uint32_t found = literal_mask(row[1 + w], input_word_mask(cubes, w)); found != 0)
      return w * 16 + static_cast<std::size_t>(std::countr_zero(found)) / 2;
  return cubes.inputs;
}

} // namespace

void analyze_fan_out(Design &design, const CubeTable &cubes) {
  FanOut &fan_out = design.fan_out;
  design.terms = {}; // listed anew from these counts
  fan_out.status.assign(design.OLB.size(), OUTPUT_LOGIC);
  fan_out.cubes.assign(design.OLB.size(), 0);
  fan_out.fans_out.assign(design.ILB.size(), 0);
  count_terms(fan_out, cubes);
  for (std::size_t output = 0; output < design.OLB.size(); output++)
    if (fan_out.cubes[output] == 0) fan_out.status[output] = OUTPUT_EMPTY;
  mark_read_inputs(fan_out, cubes);
  report_unread_inputs(design);
}

// An output carries the mark when each of its terms has one literal and any term of the table, also one that drives
// other outputs or none, has a tristate node for its first literal.
void mark_output_enable_feed(Design &design, const CubeTable &cubes) {
  FanOut &fan_out = design.fan_out;
  fan_out.oe_feed.assign(design.OLB.size(), 0);
  std::vector<std::uint8_t> is_tristate(design.ILB.size() + 1, 0); // the last one stands for "no literal"
  for (std::size_t input = 0; input < design.ILB.size(); input++)
    is_tristate[input] = is_tristate_node(design, design.ilb_signals[input]);
  if (std::find(is_tristate.begin(), is_tristate.end(), 1) == is_tristate.end()) return;

  bool is_fed = false;
  std::vector<std::uint8_t> is_gate(design.OLB.size(), 0); // some term of the output has more than one literal
  for (std::size_t i = 0; i < cubes.NUM_CUBES; i++) {
    const std::uint32_t *row = cube(cubes, i);
    is_fed = is_fed || is_tristate[first_literal(cubes, row)] != 0;
    if (count_literals(cubes, row) != 1) for_each_output(cubes, row, [&](std::size_t output) { is_gate[output] = 1; });
  }
  for (std::size_t output = 0; output < design.OLB.size(); output++)
    fan_out.oe_feed[output] = is_fed && is_gate[output] == 0 && fan_out.status[output] == OUTPUT_LOGIC &&
                              !is_tristate_node(design, design.olb_signals[output]);
}

} // namespace cubenet
