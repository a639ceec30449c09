#include "desktop/windows/theme.hpp"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>

#include "desktop/windows/gobject.hpp"

/// Of the compiled bare_theme.gresource.xml.
extern "C" void bareTheme_register_resource();

namespace desktop {
namespace {

constexpr const char* variableOfTheme = "GTK_THEME";
constexpr const char* bareTheme = "VambaBare";
constexpr const char* usualTheme = "Adwaita";

}  // namespace

Theme::Theme() {
  if (const char* const value = std::getenv(variableOfTheme)) named_ = value;
  bareTheme_register_resource();
  setenv(variableOfTheme, bareTheme, 1);
}

Theme::~Theme() {
  if (applied_ != nullptr) g_signal_handlers_disconnect_by_data(gtk_settings_get_default(), this);
}

void Theme::use() {
  if (applied_ != nullptr) return;
  apply();
  for (const char* signal : {"notify::gtk-theme-name", "notify::gtk-application-prefer-dark-theme"}) {
    connect<&Theme::settingChanged>(gtk_settings_get_default(), signal, this);
  }
}

bool Theme::isDark() const {
  Name name = chosen();
  // A preference is no property of the theme; a variant that the environment names is.
  if (named_.empty()) name.variant.clear();
  constexpr std::array<std::string_view, 2> lightThemes = {usualTheme, "HighContrast"};
  if (name.variant.empty() && std::ranges::find(lightThemes, name.theme) != lightThemes.end()) return false;
  return name.variant == "dark" || name.theme.ends_with("-dark") || hasDarkBackground(name);
}

Theme::Name Theme::chosen() const {
  if (!named_.empty()) {
    const auto colon = named_.find(':');
    return {named_.substr(0, colon), colon == std::string::npos ? std::string() : named_.substr(colon + 1)};
  }
  gchar* theme = nullptr;
  gboolean dark = FALSE;
  g_object_get(gtk_settings_get_default(), "gtk-theme-name", &theme, "gtk-application-prefer-dark-theme", &dark,
               nullptr);
  Name name{theme == nullptr || *theme == '\0' ? usualTheme : theme, dark == FALSE ? "" : "dark"};
  g_free(theme);
  return name;
}

/// Parsed at its first use and kept by the toolkit, which takes its usual theme for one that is not found.
GtkStyleProvider* Theme::parsed(const Name& name) {
  const char* const variant = name.variant.empty() ? nullptr : name.variant.c_str();
  return GTK_STYLE_PROVIDER(gtk_css_provider_get_named(name.theme.c_str(), variant));
}

bool Theme::hasDarkBackground(const Name& name) {
  GtkStyleContext* const style = gtk_style_context_new();
  gtk_style_context_add_provider(style, parsed(name), GTK_STYLE_PROVIDER_PRIORITY_THEME);
  GdkRGBA background{};
  const bool known = gtk_style_context_lookup_color(style, "theme_bg_color", &background) != FALSE;
  g_object_unref(style);
  // Relative luminance without the curve: dark or light is all that is asked.
  return known && 0.2126 * background.red + 0.7152 * background.green + 0.0722 * background.blue < 0.5;
}

void Theme::apply() {
  GtkStyleProvider* const wanted = parsed(chosen());
  if (wanted == applied_) return;
  GdkScreen* const screen = gdk_screen_get_default();
  if (applied_ != nullptr) gtk_style_context_remove_provider_for_screen(screen, applied_);
  applied_ = wanted;
  gtk_style_context_add_provider_for_screen(screen, wanted, GTK_STYLE_PROVIDER_PRIORITY_THEME);
}

void Theme::settingChanged(GParamSpec* /*property*/) { apply(); }

}  // namespace desktop
