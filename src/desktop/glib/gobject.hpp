// Owners for the objects of GLib and the toolkit, and connecting signals to member functions.
#pragma once

#include <memory>

#include <glib-object.h>

namespace desktop {

struct ObjectRelease {
  void operator()(gpointer object) const { g_object_unref(object); }
};

/// Holds one reference.
template <typename Object>
using OwnedObject = std::unique_ptr<Object, ObjectRelease>;

struct VariantRelease {
  void operator()(GVariant* variant) const { g_variant_unref(variant); }
};

/// Holds one reference.
using OwnedVariant = std::unique_ptr<GVariant, VariantRelease>;

struct ErrorRelease {
  void operator()(GError* error) const { g_error_free(error); }
};

using OwnedError = std::unique_ptr<GError, ErrorRelease>;

namespace detail {

template <auto method>
struct Slot;

template <typename Class, typename Result, typename... Arguments, Result (Class::*method)(Arguments...)>
struct Slot<method> {
  static Result call(gpointer /*emitter*/, Arguments... arguments, gpointer self) noexcept {
    return (static_cast<Class*>(self)->*method)(arguments...);
  }
};

}  // namespace detail

/// Calls `method` of `self` with the signal's arguments, without the emitter. `self` must outlive the emitter or
/// disconnect. Example: `connect<&BoardWindow::keyPressed>(widget, "key-press-event", this)`.
template <auto method, typename Class>
gulong connect(gpointer emitter, const char* signal, Class* self) {
  return g_signal_connect(emitter, signal, G_CALLBACK(&detail::Slot<method>::call), self);
}

}  // namespace desktop
