#include "desktop/windows/wayland_outputs.hpp"

#include <algorithm>
#include <memory>
#include <string_view>

#include <wayland-client.h>

namespace desktop {
namespace {

template <auto release>
struct Release {
  template <typename Object>
  void operator()(Object* object) const {
    release(object);
  }
};

using OwnedQueue = std::unique_ptr<wl_event_queue, Release<&wl_event_queue_destroy>>;
using OwnedRegistry = std::unique_ptr<wl_registry, Release<&wl_registry_destroy>>;

/// Releases the output in the compositor too, which is possible since version 3 of the interface.
struct ReleaseOutput {
  void operator()(wl_output* output) const {
    if (wl_output_get_version(output) >= WL_OUTPUT_RELEASE_SINCE_VERSION) {
      wl_output_release(output);
    } else {
      wl_output_destroy(output);
    }
  }
};
using OwnedOutput = std::unique_ptr<wl_output, ReleaseOutput>;

struct Bound {
  OwnedOutput proxy;
  WaylandOutput told;
};

// The library keeps the addresses of these objects, so they must not move.
using AllBound = std::vector<std::unique_ptr<Bound>>;

constexpr wl_output_listener outputListener{
    .geometry =
        [](void* output, wl_output* /*proxy*/, std::int32_t /*x*/, std::int32_t /*y*/, std::int32_t /*width*/,
           std::int32_t /*height*/, std::int32_t /*subpixel*/, const char* make, const char* model,
           std::int32_t /*transform*/) noexcept {
          auto& told = *static_cast<WaylandOutput*>(output);
          told.make = make;
          told.model = model;
        },
    .mode = [](void*, wl_output*, std::uint32_t, std::int32_t, std::int32_t, std::int32_t) noexcept {},
    .done = [](void*, wl_output*) noexcept {},
    .scale = [](void*, wl_output*, std::int32_t) noexcept {},
    .name = [](void* output, wl_output* /*proxy*/,
               const char* name) noexcept { static_cast<WaylandOutput*>(output)->name = name; },
    .description = [](void* output, wl_output* /*proxy*/,
                      const char* text) noexcept { static_cast<WaylandOutput*>(output)->description = text; },
};

constexpr wl_registry_listener registryListener{
    .global =
        [](void* all, wl_registry* registry, std::uint32_t name, const char* interface,
           std::uint32_t version) noexcept {
          if (std::string_view(interface) != wl_output_interface.name) return;
          constexpr std::uint32_t withNames = 4;
          auto& bound = *static_cast<AllBound*>(all)->emplace_back(std::make_unique<Bound>());
          bound.proxy.reset(static_cast<wl_output*>(
              wl_registry_bind(registry, name, &wl_output_interface, std::min(version, withNames))));
          wl_output_add_listener(bound.proxy.get(), &outputListener, &bound.told);
        },
    .global_remove = [](void*, wl_registry*, std::uint32_t) noexcept {},
};

}  // namespace

std::vector<WaylandOutput> waylandOutputs(wl_display* display) {
  const OwnedQueue queue(wl_display_create_queue(display));
  // Objects created through the wrapper use this queue, so the toolkit's own queue never gets their events.
  const std::unique_ptr<void, Release<&wl_proxy_wrapper_destroy>> wrapper(wl_proxy_create_wrapper(display));
  wl_proxy_set_queue(static_cast<wl_proxy*>(wrapper.get()), queue.get());
  AllBound bound;
  const OwnedRegistry registry(wl_display_get_registry(static_cast<wl_display*>(wrapper.get())));
  wl_registry_add_listener(registry.get(), &registryListener, &bound);
  // The first round trip announces the outputs, the second delivers their properties.
  for (int i = 0; i < 2; ++i) {
    if (wl_display_roundtrip_queue(display, queue.get()) < 0) return {};
  }
  std::vector<WaylandOutput> outputs;
  for (auto& each : bound) outputs.push_back(std::move(each->told));
  return outputs;
}

std::string serialOf(const WaylandOutput& output) {
  std::string_view rest = output.description;
  const std::string connector = " (" + output.name + ")";
  if (output.name.empty() || !rest.ends_with(connector)) return {};
  rest.remove_suffix(connector.size());
  const std::string before = output.make + " " + output.model + " ";
  if (!rest.starts_with(before)) return {};
  rest.remove_prefix(before.size());
  // Compositors based on wlroots write these where there is no serial number.
  return rest == "Unknown" || rest == "(null)" ? std::string() : std::string(rest);
}

}  // namespace desktop
