// Runs a design given as text through reader, checker and netlist writers, in a directory of its own.
#pragma once

#include <string>
#include <vector>

#include "model/run_settings.h"

namespace cubenet {

struct Translation {
  std::string messages; // of all stages, as on the console
  std::string nxf, ddf, par;
  int nxf_status = -1, ddf_status = -1; // -1: the stage was not reached
};

// Expects of every netlist that each symbol pin is on the one net that names it, that each net has one
// source, and that instances are unique.
Translation translate(const std::string &text, const RunSettings &settings = {});

// The SYM blocks of an NXF text in print order, one line each: "INV q_BD A0=q_D ZN0=q_BD". PLA rows follow as
// " row".
std::vector<std::string> symbol_lines(const std::string &nxf);
// Those of instances that begin with the text.
std::vector<std::string> symbol_lines_of(const std::string &nxf, const std::string &instance);
// The XPIN and NET lines.
std::vector<std::string> net_lines(const std::string &nxf);

} // namespace cubenet
