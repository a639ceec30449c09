#include "desktop/windows/display_way.hpp"

#include <cstdlib>
#include <memory>

#include <X11/Xlib.h>
#include <gdk/gdkwayland.h>
#include <wayland-client.h>

namespace desktop {
namespace {

struct Disconnect {
  void operator()(wl_display* display) const { wl_display_disconnect(display); }
};

struct DestroyRegistry {
  void operator()(wl_registry* registry) const { wl_registry_destroy(registry); }
};

bool isSet(const char* name) {
  const char* const value = std::getenv(name);
  return value != nullptr && *value != '\0';
}

enum class Compositor { absent, withLayers, withoutLayers };

void lookForLayers(void* found, wl_registry* /*registry*/, std::uint32_t /*name*/, const char* interface,
                   std::uint32_t /*version*/) noexcept {
  if (std::string_view(interface) == "zwlr_layer_shell_v1") *static_cast<bool*>(found) = true;
}

void forget(void* /*found*/, wl_registry* /*registry*/, std::uint32_t /*name*/) noexcept {}

Compositor askCompositor() {
  if (!isSet("WAYLAND_DISPLAY")) return Compositor::absent;
  const std::unique_ptr<wl_display, Disconnect> display(wl_display_connect(nullptr));
  if (!display) return Compositor::absent;
  bool layers = false;
  const std::unique_ptr<wl_registry, DestroyRegistry> registry(wl_display_get_registry(display.get()));
  static constexpr wl_registry_listener listener{.global = &lookForLayers, .global_remove = &forget};
  wl_registry_add_listener(registry.get(), &listener, &layers);
  if (wl_display_roundtrip(display.get()) < 0) return Compositor::absent;
  return layers ? Compositor::withLayers : Compositor::withoutLayers;
}

}  // namespace

DisplayWay chooseDisplayWay() {
  // GDK_BACKEND=x11 is respected. Any other value is replaced by `useDisplayWay`.
  const char* const forced = std::getenv("GDK_BACKEND");
  const bool xForced = forced != nullptr && std::string_view(forced) == "x11";
  const auto compositor = xForced ? Compositor::absent : askCompositor();
  if (compositor == Compositor::withLayers) return DisplayWay::layerShell;
  if (isSet("DISPLAY")) return DisplayWay::x11;
  return compositor == Compositor::withoutLayers ? DisplayWay::plain : DisplayWay::none;
}

void useDisplayWay(DisplayWay way) {
  if (way != DisplayWay::none) setenv("GDK_BACKEND", way == DisplayWay::x11 ? "x11" : "wayland", 1);
  // Boards need no GL. The first program that probes GLX on a fresh X server needs three times the memory and twice the
  // time to start.
  setenv("GDK_GL", "disable", 0);
}

void onXServerLost(DisplayWay way, void (*handler)()) {
  if (way != DisplayWay::x11) return;
  static void (*const kept)() = handler;
  XSetIOErrorHandler([](Display* /*display*/) noexcept {
    kept();
    return 0;
  });
}

bool compositorIsKwin() {
  static const bool isKwin =
      gdk_wayland_display_query_registry(gdk_display_get_default(), "org_kde_plasma_shell") != FALSE;
  return isKwin;
}

std::string_view describe(DisplayWay way) {
  switch (way) {
    case DisplayWay::layerShell:
      return "Wayland, on the bottom layer";
    case DisplayWay::x11:
      return "X11, below other windows";
    case DisplayWay::plain:
      return "Wayland without layers: place and stacking are the compositor's";
    case DisplayWay::none:
      break;
  }
  return "no display";
}

}  // namespace desktop
