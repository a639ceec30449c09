// Owners of the graphics library's C handles.
#pragma once

#include <cairo.h>

#include "render/type/owned.hpp"

namespace render {

using OwnedSurface = Owned<cairo_surface_t, cairo_surface_destroy>;
using OwnedCairo = Owned<cairo_t, cairo_destroy>;

}  // namespace render
