#include "desktop/windows/board_menu.hpp"

#include <functional>
#include <memory>
#include <set>
#include <utility>

#include <absl/strings/str_cat.h>
#include <absl/time/clock.h>

#include "desktop/glib/gobject.hpp"

namespace desktop {
namespace {

using Action = std::function<void()>;

void append(GtkWidget* menu, GtkWidget* item) { gtk_menu_shell_append(GTK_MENU_SHELL(menu), item); }

/// The action lives as long as the item.
void onActivate(GtkWidget* item, Action action) {
  const auto call = +[](GtkMenuItem* /*item*/, gpointer kept) noexcept { (*static_cast<Action*>(kept))(); };
  const auto drop = +[](gpointer kept, GClosure* /*closure*/) noexcept { delete static_cast<Action*>(kept); };
  g_signal_connect_data(item, "activate", G_CALLBACK(call), std::make_unique<Action>(std::move(action)).release(), drop,
                        GConnectFlags{});
}

/// A key that does the same in a board. The menu only shows it; the board handles it.
struct Shortcut {
  guint key = 0;
  GdkModifierType modifiers = {};
};

void showShortcut(GtkWidget* item, const Shortcut& shortcut) {
  if (shortcut.key == 0) return;
  gtk_accel_label_set_accel(GTK_ACCEL_LABEL(gtk_bin_get_child(GTK_BIN(item))), shortcut.key, shortcut.modifiers);
}

GtkWidget* item(const char* label, const Shortcut& shortcut, Action action) {
  GtkWidget* const item = gtk_menu_item_new_with_mnemonic(label);
  showShortcut(item, shortcut);
  onActivate(item, std::move(action));
  return item;
}

GtkWidget* check(const char* label, const Shortcut& shortcut, bool on, Action action) {
  GtkWidget* const item = gtk_check_menu_item_new_with_mnemonic(label);
  showShortcut(item, shortcut);
  gtk_check_menu_item_set_active(GTK_CHECK_MENU_ITEM(item), on ? TRUE : FALSE);
  onActivate(item, std::move(action));
  return item;
}

GtkWidget* submenu(const char* label, GtkWidget* menu) {
  GtkWidget* const item = gtk_menu_item_new_with_mnemonic(label);
  gtk_menu_item_set_submenu(GTK_MENU_ITEM(item), menu);
  return item;
}

GtkWidget* remark(const std::string& text) {
  GtkWidget* const item = gtk_menu_item_new_with_label(text.c_str());
  gtk_widget_set_sensitive(item, FALSE);
  return item;
}

/// Items of which one is chosen.
class Choice {
 public:
  explicit Choice(GtkWidget* menu) : menu_(menu) {}

  GtkWidget* add(const char* label, const Shortcut& shortcut, bool chosen, Action action) {
    GtkWidget* const item = gtk_radio_menu_item_new_with_mnemonic(group_, label);
    group_ = gtk_radio_menu_item_get_group(GTK_RADIO_MENU_ITEM(item));
    showShortcut(item, shortcut);
    gtk_check_menu_item_set_active(GTK_CHECK_MENU_ITEM(item), chosen ? TRUE : FALSE);
    // The signal is also emitted for the item that is no longer chosen.
    onActivate(item, [item, action = std::move(action)] {
      if (gtk_check_menu_item_get_active(GTK_CHECK_MENU_ITEM(item)) != FALSE) action();
    });
    append(menu_, item);
    return item;
  }

 private:
  GtkWidget* menu_;
  GSList* group_ = nullptr;
};

/// Items for the menu of one board.
struct Items {
  GtkWidget* board;
  int id;
  const MenuState& state;
  BoardCommands& commands;
  const Texts& texts;

  GtkWidget* sizes() const {
    GtkWidget* const menu = gtk_menu_new();
    Choice choice(menu);
    const auto size = [&](const char* label, guint key, protocol::WidgetFamily family) {
      choice.add(label, {key}, state.family == family,
                 [&commands = commands, id = id, family] { commands.resize(id, family); });
    };
    size(texts.small, GDK_KEY_1, protocol::WidgetFamily::systemSmall);
    size(texts.medium, GDK_KEY_2, protocol::WidgetFamily::systemMedium);
    size(texts.large, GDK_KEY_3, protocol::WidgetFamily::systemLarge);
    return menu;
  }

  GtkWidget* zooms() const {
    GtkWidget* const menu = gtk_menu_new();
    Choice choice(menu);
    // The placements file may hold another zoom than those offered.
    std::set<int> offered(zoomSteps.begin(), zoomSteps.end());
    offered.insert(state.zoom);
    for (const int percent : offered) {
      // Ctrl++ and Ctrl+- go to the next step. Only 100 % has a key of its own to show.
      const Shortcut shortcut = percent == 100 ? Shortcut{GDK_KEY_0, GDK_CONTROL_MASK} : Shortcut{};
      choice.add(absl::StrCat(percent, " %").c_str(), shortcut, state.zoom == percent,
                 [&commands = commands, id = id, percent] { commands.zoom(id, percent); });
    }
    return menu;
  }

  GtkWidget* appearance() const {
    GtkWidget* const menu = gtk_menu_new();
    Choice schemes(menu);
    const auto scheme = [&](const char* label, Scheme value) {
      DesktopSettings chosen = state.settings;
      chosen.scheme = value;
      schemes.add(label, {}, state.settings.scheme == value,
                  [&commands = commands, chosen] { commands.choose(chosen); });
    };
    scheme(texts.systemScheme, Scheme::system);
    scheme(texts.light, Scheme::light);
    scheme(texts.dark, Scheme::dark);
    append(menu, gtk_separator_menu_item_new());
    Choice backgrounds(menu);
    const bool composited = gdk_screen_is_composited(gtk_widget_get_screen(board)) != FALSE;
    const auto background = [&](const char* label, Background value) {
      DesktopSettings chosen = state.settings;
      chosen.background = value;
      GtkWidget* const item = backgrounds.add(label, {}, state.settings.background == value,
                                              [&commands = commands, chosen] { commands.choose(chosen); });
      if (value != Background::solid && !composited) gtk_widget_set_sensitive(item, FALSE);
    };
    background(texts.solid, Background::solid);
    background(texts.translucent, Background::translucent);
    background(texts.noBackground, Background::none);
    if (!composited) append(menu, remark(texts.noCompositing));
    return menu;
  }

  void addAll(GtkWidget* menu) const {
    GtkWidget* const open =
        item(texts.open, {GDK_KEY_Return}, [&commands = commands] { commands.open(gtk_get_current_event_time()); });
    gtk_widget_set_sensitive(open, state.canOpen ? TRUE : FALSE);
    append(menu, open);
    append(menu, gtk_separator_menu_item_new());
    const bool reloading = !state.reloads.next;
    GtkWidget* const reload = item(reloading ? texts.reloading : texts.reloadNow, {GDK_KEY_F5},
                                   [&commands = commands] { commands.reload(); });
    gtk_widget_set_sensitive(reload, reloading ? FALSE : TRUE);
    append(menu, reload);
    for (const auto& line : reloadLines(texts, state.reloads, absl::Now())) append(menu, remark(line));
    append(menu, gtk_separator_menu_item_new());
    append(menu, submenu(texts.size, sizes()));
    append(menu, submenu(texts.zoom, zooms()));
    append(menu, submenu(texts.appearance, appearance()));
    DesktopSettings toggled = state.settings;
    toggled.locked = !toggled.locked;
    append(menu, check(texts.lock, {GDK_KEY_l, GDK_CONTROL_MASK}, state.settings.locked,
                       [&commands = commands, toggled] { commands.choose(toggled); }));
    const bool startsAtLogin = commands.startsAtLogin();
    append(menu, check(texts.startAtLogin, {}, startsAtLogin,
                       [&commands = commands, startsAtLogin] { commands.startAtLogin(!startsAtLogin); }));
    append(menu, gtk_separator_menu_item_new());
    append(menu, item(texts.add, {GDK_KEY_Insert}, [&commands = commands] { commands.openGallery(); }));
    append(menu, item(texts.remove, {GDK_KEY_Delete}, [&commands = commands, id = id] { commands.remove(id); }));
    if (state.canUndoRemoval) {
      append(menu, item(texts.undoRemoval, {GDK_KEY_z, GDK_CONTROL_MASK},
                        [&commands = commands] { commands.undoRemoval(); }));
    }
    append(menu, gtk_separator_menu_item_new());
    append(menu, item(texts.quit, {GDK_KEY_q, GDK_CONTROL_MASK}, [&commands = commands] { commands.quit(); }));
  }
};

/// Once it is closed and what was chosen has been done.
void destroyWhenClosed(GtkWidget* menu) {
  const auto later = +[](GtkWidget* closed, gpointer /*data*/) noexcept {
    const auto destroy = +[](gpointer held) noexcept -> gboolean {
      gtk_widget_destroy(GTK_WIDGET(held));
      return G_SOURCE_REMOVE;
    };
    g_idle_add_full(G_PRIORITY_DEFAULT_IDLE, destroy, g_object_ref(closed), &g_object_unref);
  };
  g_signal_connect(menu, "selection-done", G_CALLBACK(later), nullptr);
}

}  // namespace

void popUpBoardMenu(GtkWidget* board, int id, BoardCommands& commands, const Texts& texts, const GdkEvent* event) {
  GtkWidget* const menu = gtk_menu_new();
  const MenuState state = commands.menuState(id);
  Items{.board = board, .id = id, .state = state, .commands = commands, .texts = texts}.addAll(menu);
  gtk_widget_show_all(menu);
  gtk_menu_attach_to_widget(GTK_MENU(menu), board, nullptr);
  destroyWhenClosed(menu);
  if (event != nullptr) {
    gtk_menu_popup_at_pointer(GTK_MENU(menu), event);
  } else {
    gtk_menu_popup_at_widget(GTK_MENU(menu), board, GDK_GRAVITY_CENTER, GDK_GRAVITY_NORTH_WEST, nullptr);
    gtk_menu_shell_select_first(GTK_MENU_SHELL(menu), FALSE);
  }
}

}  // namespace desktop
