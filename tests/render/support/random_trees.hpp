// Random view trees: deep, wide, with extreme lengths and texts. The same seed gives the same tree.
#pragma once

#include <cstdint>

#include "protocol/view_tree/node.hpp"

namespace render::testing {

protocol::Node randomTree(std::uint64_t seed);

}  // namespace render::testing
