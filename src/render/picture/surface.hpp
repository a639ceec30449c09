// Owners of the graphics library's C handles, and writing its files to memory.
#pragma once

#include <string>

#include <cairo.h>

#include "render/type/owned.hpp"

namespace render {

using OwnedSurface = Owned<cairo_surface_t, cairo_surface_destroy>;
using OwnedCairo = Owned<cairo_t, cairo_destroy>;

/// Appends to the std::string that `file` points to.
inline cairo_status_t appendToFile(void* file, const unsigned char* bytes, unsigned count) noexcept {
  static_cast<std::string*>(file)->append(reinterpret_cast<const char*>(bytes), count);
  return CAIRO_STATUS_SUCCESS;
}

}  // namespace render
