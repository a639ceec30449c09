// The second pass of layout: from sizes to positions, as the flat list of what is painted.
#pragma once

#include <vector>

#include "render/layout/layout.hpp"
#include "render/layout/measure.hpp"

namespace render {

/// What `measured` paints with its top left corner at the origin, backgrounds before what stands on them.
std::vector<Placed> place(const Measured& measured);

}  // namespace render
