// Waveforms of a simulation as a value change dump.
#pragma once

#include <iosfwd>
#include <vector>

#include "kit/sim/sim.h"

namespace cubekit {

// Ten time units per row. The pins are in the design's scope, all nets in its scope "nets". Nothing in the
// file depends on when it was written.
struct WaveWriter {
  std::ostream &stream;
  const Simulator &simulator;
  std::vector<Value> written{}; // per net
  std::size_t rows = 0;
};

void write_wave_header(WaveWriter &writer);
void write_wave_row(WaveWriter &writer);

} // namespace cubekit
