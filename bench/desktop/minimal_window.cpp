// The floor for a first frame: a window of the toolkit with nothing in it, of the size of a medium board. Writes a line
// when its first frame has been painted.
#include <cstdio>

#include <gtk/gtk.h>

namespace {

void painted(GdkFrameClock* clock, gpointer /*data*/) {
  g_signal_handlers_disconnect_matched(clock, G_SIGNAL_MATCH_FUNC, 0, 0, nullptr, reinterpret_cast<gpointer>(&painted),
                                       nullptr);
  std::puts("the first frame is shown");
  std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
  gtk_init(&argc, &argv);
  GtkWidget* const window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
  gtk_window_set_default_size(GTK_WINDOW(window), 480, 240);
  g_signal_connect(window, "destroy", G_CALLBACK(gtk_main_quit), nullptr);
  gtk_widget_realize(window);
  g_signal_connect(gdk_window_get_frame_clock(gtk_widget_get_window(window)), "after-paint", G_CALLBACK(painted),
                   nullptr);
  gtk_widget_show(window);
  gtk_main();
}
