// The gallery: what the widget is called, what it is, and a live preview in each of its sizes; a click or Enter on one
// adds it to the desktop.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <gtk/gtk.h>

#include "desktop/texts/texts.hpp"
#include "desktop/windows/board_picture.hpp"
#include "host/extension/answers.hpp"
#include "protocol/view_tree/widget_family.hpp"

namespace desktop {

class GalleryWindow {
 public:
  struct Actions {
    std::function<void(protocol::WidgetFamily family)> add;
    std::function<void()> closed;  ///< the window may be destroyed in it
  };

  GalleryWindow(const Texts& texts, Actions actions);
  ~GalleryWindow();
  GalleryWindow(const GalleryWindow&) = delete;
  GalleryWindow& operator=(const GalleryWindow&) = delete;

  void describe(const host::WidgetDeclaration& widget);
  /// Previews grow with the text, as far as the monitor has room for them.
  void setTextScale(double scale);
  /// Those that have no picture yet show nothing.
  void show(const std::map<protocol::WidgetFamily, std::shared_ptr<BoardPicture>>& pictures);
  /// To the front, with the keyboard.
  void present();

 private:
  /// One size's button with its drawing.
  struct Preview {
    GalleryWindow* gallery = nullptr;
    protocol::WidgetFamily family;
    GtkWidget* button = nullptr;
    GtkWidget* drawing = nullptr;
    std::shared_ptr<BoardPicture> picture;
    Size size;

    gboolean draw(cairo_t* cairo);
    void clicked();
  };

  void build();
  GtkWidget* preview(protocol::WidgetFamily family, const char* action);
  gboolean keyPressed(GdkEventKey* event);
  gboolean closeAsked(GdkEvent* event);

  const Texts& texts_;
  Actions actions_;
  GtkWidget* window_;
  GtkWidget* name_ = nullptr;
  GtkWidget* description_ = nullptr;
  std::vector<std::unique_ptr<Preview>> previews_;
};

}  // namespace desktop
