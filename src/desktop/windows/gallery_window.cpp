#include "desktop/windows/gallery_window.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

#include "desktop/windows/gobject.hpp"
#include "render/layout/family_form.hpp"

namespace desktop {
namespace {

constexpr int margin = 24;
constexpr int spacing = 16;

/// The scale of the previews: three quarters of a board's size, or less where the monitor is too small for that.
double previewScale(double textScale) {
  GdkDisplay* const display = gdk_display_get_default();
  GdkMonitor* monitor = gdk_display_get_primary_monitor(display);
  if (monitor == nullptr) monitor = gdk_display_get_monitor(display, 0);
  if (monitor == nullptr) return 0.75 * textScale;
  GdkRectangle area{};
  gdk_monitor_get_workarea(monitor, &area);
  // The rest of the window's size is margins, texts and the frame.
  const double across =
      (area.width - 160 * textScale) /
      (render::smallFamily.size.width + render::mediumFamily.size.width + render::largeFamily.size.width);
  const double down = (area.height - 220 * textScale) / render::largeFamily.size.height;
  return std::max(0.25, std::min({0.75 * textScale, across, down}));
}

GtkWidget* label(double size, PangoWeight weight) {
  GtkWidget* const label = gtk_label_new(nullptr);
  PangoAttrList* const attributes = pango_attr_list_new();
  pango_attr_list_insert(attributes, pango_attr_scale_new(size));
  pango_attr_list_insert(attributes, pango_attr_weight_new(weight));
  gtk_label_set_attributes(GTK_LABEL(label), attributes);
  pango_attr_list_unref(attributes);
  gtk_label_set_xalign(GTK_LABEL(label), 0);
  gtk_label_set_line_wrap(GTK_LABEL(label), TRUE);
  return label;
}

void add(GtkWidget* box, GtkWidget* child) { gtk_box_pack_start(GTK_BOX(box), child, FALSE, FALSE, 0); }

}  // namespace

GalleryWindow::GalleryWindow(const Texts& texts, Actions actions)
    : texts_(texts), actions_(std::move(actions)), window_(gtk_window_new(GTK_WINDOW_TOPLEVEL)) {
  gtk_window_set_title(GTK_WINDOW(window_), texts.galleryTitle);
  gtk_window_set_icon_name(GTK_WINDOW(window_), "vamba");
  gtk_window_set_resizable(GTK_WINDOW(window_), FALSE);
  gtk_window_set_position(GTK_WINDOW(window_), GTK_WIN_POS_CENTER);
  connect<&GalleryWindow::keyPressed>(window_, "key-press-event", this);
  connect<&GalleryWindow::closeAsked>(window_, "delete-event", this);
  build();
}

GalleryWindow::~GalleryWindow() { gtk_widget_destroy(window_); }

// In visual order, from top to bottom.
void GalleryWindow::build() {
  GtkWidget* const column = gtk_box_new(GTK_ORIENTATION_VERTICAL, spacing);
  gtk_container_set_border_width(GTK_CONTAINER(column), margin);
  name_ = label(1.6, PANGO_WEIGHT_BOLD);
  add(column, name_);
  description_ = label(1, PANGO_WEIGHT_NORMAL);
  add(column, description_);

  GtkWidget* const sizes = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, spacing);
  gtk_widget_set_valign(sizes, GTK_ALIGN_START);
  add(sizes, preview(protocol::WidgetFamily::systemSmall, texts_.addSmall));
  add(sizes, preview(protocol::WidgetFamily::systemMedium, texts_.addMedium));
  add(sizes, preview(protocol::WidgetFamily::systemLarge, texts_.addLarge));
  add(column, sizes);

  GtkWidget* const hint = label(1, PANGO_WEIGHT_NORMAL);
  gtk_label_set_text(GTK_LABEL(hint), texts_.addHint);
  add(column, hint);
  gtk_container_add(GTK_CONTAINER(window_), column);
  gtk_widget_show_all(column);
}

GtkWidget* GalleryWindow::preview(protocol::WidgetFamily family, const char* action) {
  auto& preview = *previews_.emplace_back(std::make_unique<Preview>());
  preview.gallery = this;
  preview.family = family;
  preview.drawing = gtk_drawing_area_new();
  connect<&Preview::draw>(preview.drawing, "draw", &preview);

  GtkWidget* const column = gtk_box_new(GTK_ORIENTATION_VERTICAL, spacing / 2);
  add(column, preview.drawing);
  add(column, gtk_label_new(action));
  preview.button = gtk_button_new();
  gtk_container_add(GTK_CONTAINER(preview.button), column);
  gtk_widget_set_valign(preview.button, GTK_ALIGN_START);
  atk_object_set_name(gtk_widget_get_accessible(preview.button), action);
  connect<&Preview::clicked>(preview.button, "clicked", &preview);
  return preview.button;
}

gboolean GalleryWindow::Preview::draw(cairo_t* cairo) {
  if (!picture) return FALSE;
  picture->paint(cairo, size, gtk_widget_get_scale_factor(drawing));
  return FALSE;
}

void GalleryWindow::Preview::clicked() { gallery->actions_.add(family); }

void GalleryWindow::describe(const host::WidgetDeclaration& widget) {
  gtk_label_set_text(GTK_LABEL(name_), widget.displayName.c_str());
  gtk_label_set_text(GTK_LABEL(description_), widget.description.c_str());
  for (const auto& preview : previews_) {
    gtk_widget_set_visible(preview->button,
                           std::ranges::find(widget.families, preview->family) != widget.families.end());
  }
}

void GalleryWindow::setTextScale(double scale) {
  const double shown = previewScale(scale);
  for (const auto& preview : previews_) {
    const auto form = render::familyForm(preview->family);
    preview->size = {static_cast<int>(std::lround(form.size.width * shown)),
                     static_cast<int>(std::lround(form.size.height * shown))};
    gtk_widget_set_size_request(preview->drawing, preview->size.width, preview->size.height);
  }
}

void GalleryWindow::show(const std::map<protocol::WidgetFamily, std::shared_ptr<BoardPicture>>& pictures) {
  for (const auto& preview : previews_) {
    const auto picture = pictures.find(preview->family);
    if (picture == pictures.end()) continue;
    preview->picture = picture->second;
    atk_object_set_description(gtk_widget_get_accessible(preview->button), preview->picture->aloud().c_str());
    gtk_widget_queue_draw(preview->drawing);
  }
}

void GalleryWindow::present() {
  // Focuses the medium size, as most people want that one. Without this, the toolkit chooses the focus.
  if (gtk_window_get_focus(GTK_WINDOW(window_)) == nullptr) gtk_widget_grab_focus(previews_[1]->button);
  gtk_window_present(GTK_WINDOW(window_));
}

gboolean GalleryWindow::keyPressed(GdkEventKey* event) {
  if (event->keyval != GDK_KEY_Escape) return FALSE;
  actions_.closed();
  return TRUE;
}

gboolean GalleryWindow::closeAsked(GdkEvent* /*event*/) {
  actions_.closed();
  return TRUE;
}

}  // namespace desktop
