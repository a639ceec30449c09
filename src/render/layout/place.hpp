// The second pass of layout: from sizes to positions, as a flat list of items to paint.
#pragma once

#include <vector>

#include "render/layout/layout.hpp"
#include "render/layout/measure.hpp"

namespace render {

/// The items of `measured` with its top left corner at the origin. A background precedes the items on it.
std::vector<Placed> place(const Measured& measured);

}  // namespace render
