// The window of the gallery: the widget's name and description, and a live preview of each size. A click or Enter on a
// preview adds a widget of that size to the desktop.
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
    std::function<void()> undoRemoval;
    std::function<void()> closed;  ///< the window may be destroyed in it
  };

  GalleryWindow(const Texts& texts, Actions actions);
  ~GalleryWindow();
  GalleryWindow(const GalleryWindow&) = delete;
  GalleryWindow& operator=(const GalleryWindow&) = delete;

  void describe(const host::WidgetDeclaration& widget);
  /// Scales the previews with the text, up to what fits the monitor.
  void setTextScale(double scale);
  /// Sets the previews. A family without a picture shows an empty tile.
  void show(const std::map<protocol::WidgetFamily, std::shared_ptr<BoardPicture>>& pictures);
  /// Shows a message below the previews and has it read aloud.
  void announce(const char* message);
  /// Brings the window to the front and focuses it.
  void present();

 private:
  /// The button of one size with its drawing.
  struct Preview {
    GalleryWindow* gallery = nullptr;
    protocol::WidgetFamily family;
    GtkWidget* tile = nullptr;  ///< the button with its label below
    GtkWidget* button = nullptr;
    GtkWidget* drawing = nullptr;
    std::shared_ptr<BoardPicture> picture;
    Size size;

    gboolean draw(cairo_t* cairo);
    void clicked();
  };

  void build();
  GtkWidget* preview(protocol::WidgetFamily family, const char* action);
  void fit();
  void resizePreviews(double scale);
  gboolean keyPressed(GdkEventKey* event);
  gboolean closeAsked(GdkEvent* event);

  const Texts& texts_;
  Actions actions_;
  GtkWidget* window_;
  GtkWidget* name_ = nullptr;
  GtkWidget* description_ = nullptr;
  GtkWidget* message_ = nullptr;
  GtkWidget* content_ = nullptr;
  double textScale_ = 1;
  std::vector<std::unique_ptr<Preview>> previews_;
};

}  // namespace desktop
