#include "desktop/windows/toolkit_look.hpp"

#include <algorithm>

#include <gtk/gtk.h>

namespace desktop {
namespace {

/// As the person or the theme set it; `useAppearance` changes the setting itself.
bool preferredDark() {
  static const bool atStart = [] {
    gboolean dark = FALSE;
    g_object_get(gtk_settings_get_default(), "gtk-application-prefer-dark-theme", &dark, nullptr);
    return dark != FALSE;
  }();
  return atStart;
}

bool themeIsDark() {
  gchar* name = nullptr;
  g_object_get(gtk_settings_get_default(), "gtk-theme-name", &name, nullptr);
  // The theme itself in its usual form, whatever form is in use now.
  GtkCssProvider* const theme = gtk_css_provider_get_named(name, nullptr);
  g_free(name);
  GtkStyleContext* const style = gtk_style_context_new();
  gtk_style_context_add_provider(style, GTK_STYLE_PROVIDER(theme), GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
  GdkRGBA background{};
  const bool known = gtk_style_context_lookup_color(style, "theme_bg_color", &background) != FALSE;
  g_object_unref(style);
  // Relative luminance without the curve: dark or light is all that is asked.
  return known && 0.2126 * background.red + 0.7152 * background.green + 0.0722 * background.blue < 0.5;
}

double textScale() {
  gint dpi = -1;
  g_object_get(gtk_settings_get_default(), "gtk-xft-dpi", &dpi, nullptr);
  constexpr double usual = 96.0 * 1024;
  constexpr double smallest = 0.5;
  constexpr double largest = 3;
  return dpi <= 0 ? 1 : std::clamp(dpi / usual, smallest, largest);
}

}  // namespace

ToolkitLook toolkitLook() {
  const bool dark = preferredDark() || themeIsDark();
  return {.appearance = dark ? render::Appearance::dark : render::Appearance::light, .textScale = textScale()};
}

void useAppearance(render::Appearance appearance) {
  preferredDark();
  g_object_set(gtk_settings_get_default(), "gtk-application-prefer-dark-theme",
               appearance == render::Appearance::dark ? TRUE : FALSE, nullptr);
}

void onToolkitLookChange(std::function<void()>& changed) {
  const auto call = +[](GObject* /*settings*/, GParamSpec* /*property*/, gpointer called) {
    (*static_cast<std::function<void()>*>(called))();
  };
  for (const char* signal : {"notify::gtk-theme-name", "notify::gtk-xft-dpi"}) {
    g_signal_connect(gtk_settings_get_default(), signal, G_CALLBACK(call), &changed);
  }
}

}  // namespace desktop
