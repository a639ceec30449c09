#include "desktop/program/shown_desktop.hpp"

#include <utility>

namespace desktop {

ShownDesktop::ShownDesktop(const std::string& busAddress, std::function<void(bool)> changed)
    : changed_(std::move(changed)), bus_(busAddress, [this] { listen(); }) {}

void ShownDesktop::listen() {
  constexpr const char* name = "org.kde.KWin";
  bus_.subscribe({name, "/KWin", name, "showingDesktopChanged"}, &ShownDesktop::told, this);
}

void ShownDesktop::told(GDBusConnection* /*bus*/, const char* /*sender*/, const char* /*path*/,
                        const char* /*interface*/, const char* /*signal*/, GVariant* parameters,
                        gpointer self) noexcept {
  if (g_variant_is_of_type(parameters, G_VARIANT_TYPE("(b)")) == FALSE) return;
  gboolean shown = FALSE;
  g_variant_get(parameters, "(b)", &shown);
  static_cast<ShownDesktop*>(self)->changed_(shown != FALSE);
}

}  // namespace desktop
