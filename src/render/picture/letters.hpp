// The shapes of a line's letters, for painters that draw them themselves.
#pragma once

#include "render/type/owned.hpp"

namespace render {

/// Whether letters of the line are pictures in colour without an outline: emoji, mostly.
bool hasColourGlyphs(PangoLayoutLine* line);

}  // namespace render
