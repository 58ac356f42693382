// `cubekit dump`: the design database as a text.
#pragma once

#include <functional>

namespace CLI {
class App;
}

namespace cubekit {

std::function<int()> setup_dump(CLI::App &command);

} // namespace cubekit
