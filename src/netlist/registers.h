// The mapping of one registered signal.
#pragma once

#include "netlist/signal_mapper.h"

namespace cubenet {

// Adds the storage element of a registered signal with its helper gates, feedbacks and pad.
ReadNets map_register(SignalMapper &mapper);

} // namespace cubenet
