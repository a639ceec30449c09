// Owners of the text library's C handles.
#pragma once

#include <memory>

#include <pango/pangocairo.h>

namespace render {

template <auto release>
struct Releaser {
  template <typename Handle>
  void operator()(Handle* handle) const {
    release(handle);
  }
};

template <typename Handle, auto release>
using Owned = std::unique_ptr<Handle, Releaser<release>>;

using OwnedContext = Owned<PangoContext, g_object_unref>;
using OwnedLayout = Owned<PangoLayout, g_object_unref>;
using OwnedFont = Owned<PangoFont, g_object_unref>;
using OwnedFontDescription = Owned<PangoFontDescription, pango_font_description_free>;
using OwnedAttributes = Owned<PangoAttrList, pango_attr_list_unref>;
using OwnedIterator = Owned<PangoLayoutIter, pango_layout_iter_free>;

/// The text library's unit is 1/1024 point.
inline double toPoints(int units) { return static_cast<double>(units) / PANGO_SCALE; }

}  // namespace render
