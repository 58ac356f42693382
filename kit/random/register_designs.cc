// Walks through all registers and latches that the design rules accept, in a fixed order, and packs them into
// designs. Each has its own equations, fed from eleven inputs in turn, so that no two of its controls are
// alike.
#include "kit/random/design_text.h"
#include "kit/random/random_design.h"

namespace cubekit {

namespace {

constexpr std::size_t kInputs = 11; // coprime to the number of equations of most registers
constexpr std::size_t kRegistersPerDesign = 100;

// Where the register is visible.
struct Place {
  bool pin, inverted, enabled;
};
constexpr auto kPlaces = std::to_array<Place>({{true, false, false},
                                               {true, true, false},
                                               {true, false, true},
                                               {true, true, true},
                                               {false, false, false},
                                               {false, false, true}});

// Which references read it.
struct Reads {
  bool q, fb, data, plain;
};
constexpr auto kReads = std::to_array<Reads>({
    {false, false, false, false},
    {true, false, false, false},
    {false, true, false, false},
    {false, false, false, true},
    {true, true, true, true},
});

struct Packer {
  int series;
  std::vector<std::string> texts{};
  DesignText design{};
  std::size_t registers = 0, next_input = 0;
};

void start_design(Packer &packer) {
  packer.design = {};
  for (std::size_t i = 0; i < kInputs; i++) {
    packer.design.pins.push_back("in" + std::to_string(i));
    packer.design.columns.push_back({packer.design.pins.back(), ""});
  }
  packer.registers = 0;
}

// Gives every output its terms, and every column a pin to show it on.
void finish_design(Packer &packer) {
  DesignText &design = packer.design;
  const auto input = [&] { return packer.next_input++ % kInputs; };
  for (std::size_t o = 0; o < design.outputs.size(); o++) {
    design.terms.push_back({{{input(), true}, {input(), false}}, {o}});
    if (o % 3 == 0) design.terms.push_back({{{input(), true}}, {o}});
    design.outputs[o].inverted = o % 4 == 1;
  }
  for (std::size_t c = kInputs; c < design.columns.size(); c++) {
    design.pins.push_back("seen" + std::to_string(c));
    design.terms.push_back({{{c, c % 3 != 0}}, {design.outputs.size()}});
    design.outputs.push_back({design.pins.back(), ""});
  }
  packer.texts.push_back(format_design(design));
  start_design(packer);
}

void add_register(Packer &packer, const SignalKind &kind, const Controls &controls, const Place &place,
                  const Reads &reads) {
  DesignText &design = packer.design;
  const std::string name = "r" + std::to_string(packer.registers);
  (place.pin ? design.pins : design.nodes).push_back(name + (place.inverted ? "-" : ""));
  // Where there is a choice, registers take turns.
  Controls spelled = controls;
  if (!controls.reset.empty() && packer.registers / 2 % 2 == 1) spelled.reset = "RE";
  if (!controls.preset.empty() && packer.registers / 4 % 2 == 1) spelled.preset = "PR";
  add_register_outputs(design, name, kind, spelled);
  if (place.enabled) design.outputs.push_back({name, "OE"});
  const auto add_column = [&](bool is_read, std::string_view extension) {
    if (is_read) design.columns.push_back({name, std::string(extension)});
  };
  const bool second = packer.registers % 2 == 1;
  add_column(reads.q, "Q");
  add_column(reads.fb, "FB");
  add_column(reads.data, kind.data_reads[second && !kind.data_reads[1].empty() ? 1 : 0]);
  add_column(reads.plain, place.pin && !second ? "PIN" : "");
  if (++packer.registers == kRegistersPerDesign) finish_design(packer);
}

template <typename Visit> void for_each_controls(const SignalKind &kind, int series, Visit visit) {
  for (const std::string_view clock : {"C", "LE", "LH"}) {
    if (clock != "C" && !kind.may_latch) continue;
    for (unsigned synchronous = 0; synchronous < (clock == "C" ? 8U : 1U); synchronous++)
      for (const std::string_view reset : {"", "AR"})
        for (const std::string_view preset : {"", "AP"})
          if (series >= 2 || reset.empty() || preset.empty())
            visit(
                Controls{clock, (synchronous & 1) != 0, (synchronous & 2) != 0, (synchronous & 4) != 0, reset, preset});
  }
}

} // namespace

std::vector<std::string> register_designs(int series) {
  Packer packer{series};
  start_design(packer);
  for (std::size_t k = kFirstRegister; k < kSignalKinds.size(); k++) {
    for_each_controls(kSignalKinds[k], series, [&](const Controls &controls) {
      for (const Place &place : kPlaces) {
        if (!place.pin && place.enabled && series != 8) continue;
        for (const Reads &reads : kReads) add_register(packer, kSignalKinds[k], controls, place, reads);
      }
    });
  }
  if (packer.registers > 0) finish_design(packer);
  return packer.texts;
}

} // namespace cubekit
