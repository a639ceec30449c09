#include "desktop/windows/board_menu.hpp"

#include <functional>
#include <memory>
#include <utility>

#include "desktop/windows/gobject.hpp"

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

GtkWidget* item(const char* label, Action action) {
  GtkWidget* const item = gtk_menu_item_new_with_mnemonic(label);
  onActivate(item, std::move(action));
  return item;
}

GtkWidget* sizes(const MenuSubject& subject, BoardCommands& commands, const Texts& texts) {
  GtkWidget* const menu = gtk_menu_new();
  GSList* group = nullptr;
  const auto size = [&](const char* label, protocol::WidgetFamily family) {
    GtkWidget* const choice = gtk_radio_menu_item_new_with_mnemonic(group, label);
    group = gtk_radio_menu_item_get_group(GTK_RADIO_MENU_ITEM(choice));
    gtk_check_menu_item_set_active(GTK_CHECK_MENU_ITEM(choice), family == subject.family ? TRUE : FALSE);
    // Told of the choice that is taken back as well.
    onActivate(choice, [choice, id = subject.id, family, &commands] {
      if (gtk_check_menu_item_get_active(GTK_CHECK_MENU_ITEM(choice)) != FALSE) commands.resize(id, family);
    });
    append(menu, choice);
  };
  size(texts.small, protocol::WidgetFamily::systemSmall);
  size(texts.medium, protocol::WidgetFamily::systemMedium);
  size(texts.large, protocol::WidgetFamily::systemLarge);
  return menu;
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

void popUpBoardMenu(GtkWidget* board, const MenuSubject& subject, BoardCommands& commands, const Texts& texts,
                    const GdkEvent* event) {
  const int id = subject.id;
  GtkWidget* const menu = gtk_menu_new();
  append(menu, submenu(texts.size, sizes(subject, commands, texts)));
  append(menu, item(texts.add, [&commands] { commands.openGallery(); }));
  append(menu, item(texts.remove, [&commands, id] { commands.remove(id); }));
  append(menu, gtk_separator_menu_item_new());
  append(menu, remark(nextReloadLine(texts, commands.nextReload())));
  append(menu, item(texts.reloadNow, [&commands] { commands.reload(); }));
  append(menu, gtk_separator_menu_item_new());
  append(menu, item(texts.quit, [&commands] { commands.quit(); }));
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
