// One table: a row for each sub-command. A new one takes a folder with one header, and a row here.
#include "kit/commands.h"

#include <array>

#include "kit/check/check.h"
#include "kit/draw/graph.h"
#include "kit/dump/dump.h"
#include "kit/explain/explain.h"
#include "kit/export/export.h"
#include "kit/import/import.h"
#include "kit/minimize/minimize.h"
#include "kit/page/page.h"
#include "kit/prove/prove.h"
#include "kit/random/random_design.h"
#include "kit/sim/sim.h"
#include "kit/stat/stat.h"

namespace cubekit {

namespace {

// clang-format off
constexpr auto kCommands = std::to_array<Command>({
    {"import",   "write a PLA, a BLIF netlist or a Verilog module as a truth table",         setup_import},
    {"minimize", "write DESIGN.tt2 with fewer terms that say the same",                      setup_minimize},
    {"check",    "read DESIGN.nxf, .ddf, .tvx and .par back and judge form and consistency",  setup_check},
    {"prove",    "prove that DESIGN.nxf computes what the truth table DESIGN.tt2 says",      setup_prove},
    {"graph",    "draw DESIGN.nxf for Graphviz, or as SVG",                                  setup_graph},
    {"export",   "write DESIGN.nxf as BLIF, Verilog or JSON",                                setup_export},
    {"sim",      "step DESIGN.nxf over input vectors",                                       setup_sim},
    {"page",     "write a page about the design that a browser shows: DESIGN.html",          setup_page},
    {"stat",     "count what is in DESIGN.nxf",                                              setup_stat},
    {"dump",     "list the design database of DESIGN.tt2",                                   setup_dump},
    {"explain",  "tell what a message number means, why it comes and what to do",            setup_explain},
    {"random",   "write a random, legal design, the same one for the same seed",             setup_random},
});
// clang-format on

} // namespace

std::span<const Command> commands() { return kCommands; }

} // namespace cubekit
