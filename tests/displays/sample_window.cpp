// A window of 300 x 200 in one colour that writes what happens to it, a line each, to its standard output: "shown",
// "press BUTTON X Y", "release BUTTON X Y", "key NAME", "monitors COUNT" when one has come or gone. F2 renames it for
// those who cannot see it, F3 ends it. Arguments: a title, a colour as #rrggbb, and "below" to be kept below others,
// "panel" to be a panel along the right edge of a Wayland output, "icons" to be a file manager's desktop of 1280 x 800,
// "large" for 1000 x 700, or "maximized".
#include <cmath>
#include <cstdio>
#include <cstring>
#include <initializer_list>

#include <gtk-layer-shell.h>
#include <gtk/gtk.h>

namespace {

GdkRGBA colour;

void tell(const char* line) {
  std::puts(line);
  std::fflush(stdout);
}

gboolean draw(GtkWidget*, cairo_t* cairo, gpointer) {
  gdk_cairo_set_source_rgba(cairo, &colour);
  cairo_paint(cairo);
  return FALSE;
}

gboolean button(GtkWidget*, GdkEventButton* event, gpointer) {
  char line[80];
  std::snprintf(line, sizeof line, "%s %u %.0f %.0f", event->type == GDK_BUTTON_RELEASE ? "release" : "press",
                event->button, event->x, event->y);
  if (event->type == GDK_BUTTON_PRESS || event->type == GDK_BUTTON_RELEASE) tell(line);
  return TRUE;
}

gboolean key(GtkWidget* window, GdkEventKey* event, gpointer) {
  char line[80];
  std::snprintf(line, sizeof line, "key %s%s", (event->state & GDK_CONTROL_MASK) != 0 ? "Control+" : "",
                gdk_keyval_name(event->keyval));
  tell(line);
  if (event->keyval == GDK_KEY_F2) atk_object_set_name(gtk_widget_get_accessible(window), "Renamed");
  if (event->keyval == GDK_KEY_F3) gtk_main_quit();
  return FALSE;
}

void monitorsChanged(GdkDisplay* display, GdkMonitor*, gpointer) {
  char line[80];
  std::snprintf(line, sizeof line, "monitors %d", gdk_display_get_n_monitors(display));
  tell(line);
}

/// Of its default width and the output's height, which windows and layers keep clear of.
void makePanel(GtkWindow* window) {
  gtk_layer_init_for_window(window);
  for (const auto edge : {GTK_LAYER_SHELL_EDGE_TOP, GTK_LAYER_SHELL_EDGE_RIGHT, GTK_LAYER_SHELL_EDGE_BOTTOM}) {
    gtk_layer_set_anchor(window, edge, TRUE);
  }
  gtk_widget_set_size_request(GTK_WIDGET(window), 300, -1);
  gtk_layer_set_exclusive_zone(window, 300);
}

void painted(GdkFrameClock* clock, gpointer window) {
  g_signal_handlers_disconnect_by_func(clock, reinterpret_cast<gpointer>(painted), window);
  tell("shown");
}

}  // namespace

int main(int argc, char** argv) {
  gtk_init(&argc, &argv);
  auto* const window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
  gtk_window_set_title(GTK_WINDOW(window), argc > 1 ? argv[1] : "Sample");
  gdk_rgba_parse(&colour, argc > 2 ? argv[2] : "#336699");
  if (argc > 3 && std::strcmp(argv[3], "below") == 0) gtk_window_set_keep_below(GTK_WINDOW(window), TRUE);
  if (argc > 3 && std::strcmp(argv[3], "panel") == 0) makePanel(GTK_WINDOW(window));
  if (argc > 3 && std::strcmp(argv[3], "maximized") == 0) gtk_window_maximize(GTK_WINDOW(window));
  gtk_window_set_decorated(GTK_WINDOW(window), FALSE);
  gtk_window_set_default_size(GTK_WINDOW(window), 300, 200);
  if (argc > 3 && std::strcmp(argv[3], "large") == 0) gtk_window_set_default_size(GTK_WINDOW(window), 1000, 700);
  if (argc > 3 && std::strcmp(argv[3], "icons") == 0) {
    gtk_window_set_type_hint(GTK_WINDOW(window), GDK_WINDOW_TYPE_HINT_DESKTOP);
    gtk_window_set_default_size(GTK_WINDOW(window), 1280, 800);
  }
  auto* const accessible = gtk_widget_get_accessible(window);
  atk_object_set_name(accessible, "A sample");
  atk_object_set_description(accessible, "Nothing to read.");
  gtk_widget_set_app_paintable(window, TRUE);
  gtk_widget_add_events(window, GDK_BUTTON_PRESS_MASK | GDK_BUTTON_RELEASE_MASK);
  g_signal_connect(window, "draw", G_CALLBACK(draw), nullptr);
  g_signal_connect(window, "button-press-event", G_CALLBACK(button), nullptr);
  g_signal_connect(window, "button-release-event", G_CALLBACK(button), nullptr);
  g_signal_connect(window, "key-press-event", G_CALLBACK(key), nullptr);
  g_signal_connect(window, "destroy", G_CALLBACK(gtk_main_quit), nullptr);
  g_signal_connect(gdk_display_get_default(), "monitor-added", G_CALLBACK(monitorsChanged), nullptr);
  g_signal_connect(gdk_display_get_default(), "monitor-removed", G_CALLBACK(monitorsChanged), nullptr);
  gtk_widget_realize(window);
  g_signal_connect(gdk_window_get_frame_clock(gtk_widget_get_window(window)), "after-paint", G_CALLBACK(painted),
                   window);
  gtk_widget_show_all(window);
  gtk_main();
  return 0;
}
