// The toolkit's theme, put off until something of it is drawn: to parse one takes longer than the rest of a start, and
// boards need none.
#pragma once

#include <string>

#include <gtk/gtk.h>

namespace desktop {

class Theme {
 public:
  /// Before the toolkit begins and before there is a second thread: the toolkit is told by the environment (GTK_THEME)
  /// to begin with a theme of nothing. What the environment said before counts from here on. The processes that this
  /// one starts inherit the variable.
  Theme();
  ~Theme();
  Theme(const Theme&) = delete;
  Theme& operator=(const Theme&) = delete;

  /// Puts the person's theme in effect and follows it when settings change. To be called before menus and other windows
  /// of the toolkit are made; further calls do nothing.
  void use();

  /// Whether the person's theme is a dark one by itself, whatever is preferred: by its name where that is known to
  /// tell, else by its background, for which the theme is parsed.
  bool isDark() const;

 private:
  /// What a theme is found by: "Adwaita" and "dark".
  struct Name {
    std::string theme;
    std::string variant;
  };

  Name chosen() const;
  static GtkStyleProvider* parsed(const Name& name);
  static bool hasDarkBackground(const Name& name);
  void apply();
  void settingChanged(GParamSpec* property);

  std::string named_;  ///< as the environment had it, "Adwaita:dark"; empty where it names none
  GtkStyleProvider* applied_ = nullptr;
};

}  // namespace desktop
