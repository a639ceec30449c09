// View trees such as nobody would write: deep, wide, with lengths and texts at their extremes. The same seed gives the
// same tree.
#pragma once

#include <cstdint>

#include "protocol/view_tree/node.hpp"

namespace render::testing {

protocol::Node randomTree(std::uint64_t seed);

}  // namespace render::testing
