// The sub-commands of cubekit.
#pragma once

#include <span>

#include "kit/command/command.h"

namespace cubekit {

std::span<const Command> commands();

} // namespace cubekit
