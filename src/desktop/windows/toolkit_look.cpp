#include "desktop/windows/toolkit_look.hpp"

#include <algorithm>
#include <utility>

#include <gtk/gtk.h>

#include "desktop/glib/gobject.hpp"

namespace desktop {
namespace {

constexpr const char* preferDark = "gtk-application-prefer-dark-theme";

bool prefersDark() {
  gboolean dark = FALSE;
  g_object_get(gtk_settings_get_default(), preferDark, &dark, nullptr);
  return dark != FALSE;
}

/// The person's own setting, read before `useAppearance` changes it for the first time.
bool preferredDarkAtStart() {
  static const bool atStart = prefersDark();
  return atStart;
}

/// Sets the property only if it differs, since the toolkit announces a change in any case.
void preferTheme(bool dark) {
  if (prefersDark() != dark) g_object_set(gtk_settings_get_default(), preferDark, dark ? TRUE : FALSE, nullptr);
}

/// Whether the theme in use has a dark background.
bool hasDarkBackground() {
  GtkStyleContext* const style = gtk_style_context_new();
  GdkRGBA background{};
  const bool known = gtk_style_context_lookup_color(style, "theme_bg_color", &background) != FALSE;
  g_object_unref(style);
  // Relative luminance without gamma, which is accurate enough to tell dark from light.
  return known && 0.2126 * background.red + 0.7152 * background.green + 0.0722 * background.blue < 0.5;
}

double textScale() {
  // The screen's resolution includes the settings and GDK_DPI_SCALE.
  const double resolution = gdk_screen_get_resolution(gdk_screen_get_default());
  constexpr double usual = 96;
  constexpr double smallest = 0.5;
  constexpr double largest = 3;
  return resolution <= 0 ? 1 : std::clamp(resolution / usual, smallest, largest);
}

}  // namespace

ToolkitLook toolkitLook() {
  preferTheme(preferredDarkAtStart());
  const bool dark = preferredDarkAtStart() || hasDarkBackground();
  return {.appearance = dark ? render::Appearance::dark : render::Appearance::light, .textScale = textScale()};
}

void useAppearance(render::Appearance appearance) {
  preferredDarkAtStart();
  preferTheme(appearance == render::Appearance::dark);
}

ToolkitLookChanges::ToolkitLookChanges(std::function<void()> changed) : changed_(std::move(changed)) {
  connect<&ToolkitLookChanges::settingChanged>(gtk_settings_get_default(), "notify::gtk-theme-name", this);
  connect<&ToolkitLookChanges::settingChanged>(gdk_screen_get_default(), "notify::resolution", this);
}

ToolkitLookChanges::~ToolkitLookChanges() {
  g_signal_handlers_disconnect_by_data(gtk_settings_get_default(), this);
  g_signal_handlers_disconnect_by_data(gdk_screen_get_default(), this);
}

}  // namespace desktop
