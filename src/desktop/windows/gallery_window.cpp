#include "desktop/windows/gallery_window.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

#include "desktop/glib/gobject.hpp"
#include "render/layout/family_form.hpp"

namespace desktop {
namespace {

constexpr int margin = 16;
constexpr int spacing = 12;

/// Flat tiles in any theme. A tile's corners are slightly rounder than those of the preview within it.
constexpr const char* tileStyle = R"(
.vamba-tile { padding: 6px; border: 2px solid transparent; border-radius: 14px; outline-width: 0;
              background: none; box-shadow: none; }
.vamba-tile:hover { background: alpha(currentColor, 0.08); }
.vamba-tile:active { background: alpha(currentColor, 0.18); }
.vamba-tile:focus { border-color: @theme_selected_bg_color; }
)";

constexpr int tileFrame = 2 * (6 + 2);  // padding and border of tileStyle

/// Once for the program.
void useTileStyle() {
  static const bool used = [] {
    GtkCssProvider* const provider = gtk_css_provider_new();
    gtk_css_provider_load_from_data(provider, tileStyle, -1, nullptr);
    gtk_style_context_add_provider_for_screen(gdk_screen_get_default(), GTK_STYLE_PROVIDER(provider),
                                              GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
    g_object_unref(provider);
    return true;
  }();
  static_cast<void>(used);
}

/// The part of the monitor that the window may take, without the frame that window managers add.
Size roomForContent() {
  GdkDisplay* const display = gdk_display_get_default();
  GdkMonitor* monitor = gdk_display_get_primary_monitor(display);
  if (monitor == nullptr) monitor = gdk_display_get_monitor(display, 0);
  constexpr Size usual{1280, 800};
  if (monitor == nullptr) return usual;
  GdkRectangle area{};
  gdk_monitor_get_workarea(monitor, &area);
  constexpr Size frame{8, 40};
  return {area.width - frame.width, area.height - frame.height};
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
  gtk_window_set_icon_name(GTK_WINDOW(window_), "pl.ferol.vamba.Desktop");
  gtk_window_set_resizable(GTK_WINDOW(window_), FALSE);
  gtk_window_set_position(GTK_WINDOW(window_), GTK_WIN_POS_CENTER);
  connect<&GalleryWindow::keyPressed>(window_, "key-press-event", this);
  connect<&GalleryWindow::closeAsked>(window_, "delete-event", this);
  build();
}

GalleryWindow::~GalleryWindow() { gtk_widget_destroy(window_); }

// In visual order, from top to bottom.
void GalleryWindow::build() {
  useTileStyle();
  GtkWidget* const column = gtk_box_new(GTK_ORIENTATION_VERTICAL, spacing);
  gtk_container_set_border_width(GTK_CONTAINER(column), margin);
  GtkWidget* const heading = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
  name_ = label(1.4, PANGO_WEIGHT_BOLD);
  add(heading, name_);
  description_ = label(1, PANGO_WEIGHT_NORMAL);
  add(heading, description_);
  add(column, heading);

  GtkWidget* const sizes = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, spacing);
  gtk_widget_set_valign(sizes, GTK_ALIGN_START);
  add(sizes, preview(protocol::WidgetFamily::systemSmall, texts_.addSmall));
  add(sizes, preview(protocol::WidgetFamily::systemMedium, texts_.addMedium));
  add(sizes, preview(protocol::WidgetFamily::systemLarge, texts_.addLarge));
  add(column, sizes);

  message_ = label(1, PANGO_WEIGHT_NORMAL);
  gtk_label_set_text(GTK_LABEL(message_), texts_.addHint);
  add(column, message_);
  content_ = column;
  gtk_container_add(GTK_CONTAINER(window_), column);
  gtk_widget_show_all(column);
}

GtkWidget* GalleryWindow::preview(protocol::WidgetFamily family, const char* action) {
  auto& preview = *previews_.emplace_back(std::make_unique<Preview>());
  preview.gallery = this;
  preview.family = family;
  preview.drawing = gtk_drawing_area_new();
  connect<&Preview::draw>(preview.drawing, "draw", &preview);

  preview.button = gtk_button_new();
  gtk_style_context_add_class(gtk_widget_get_style_context(preview.button), "vamba-tile");
  gtk_container_add(GTK_CONTAINER(preview.button), preview.drawing);
  atk_object_set_name(gtk_widget_get_accessible(preview.button), action);
  connect<&Preview::clicked>(preview.button, "clicked", &preview);

  preview.tile = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
  gtk_widget_set_valign(preview.tile, GTK_ALIGN_START);
  add(preview.tile, preview.button);
  add(preview.tile, gtk_label_new(action));
  return preview.tile;
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
    gtk_widget_set_visible(preview->tile, std::ranges::find(widget.families, preview->family) != widget.families.end());
  }
  fit();
}

void GalleryWindow::setTextScale(double scale) {
  textScale_ = scale;
  fit();
}

/// Previews have three quarters of the boards' size, or less where the monitor has no room for the window then.
void GalleryWindow::fit() {
  resizePreviews(0);
  GtkRequisition beside{};
  gtk_widget_get_preferred_size(content_, nullptr, &beside);
  const Size room = roomForContent();
  double across = 0;
  double down = 1;
  for (const auto& preview : previews_) {
    if (gtk_widget_get_visible(preview->tile) == FALSE) continue;
    const auto size = render::familyForm(preview->family).size;
    across += size.width;
    down = std::max(down, size.height);
  }
  // The heading is above the previews and does not limit their width. Only the margins, gaps and frames of the tiles
  // do.
  const double tilesAside = 2 * margin + (spacing + tileFrame) * static_cast<double>(previews_.size());
  constexpr double usual = 0.75;
  constexpr double smallest = 0.25;
  resizePreviews(
      std::clamp(std::min((room.width - tilesAside) / std::max(1.0, across), (room.height - beside.height) / down),
                 smallest, usual * textScale_));
}

void GalleryWindow::resizePreviews(double scale) {
  for (const auto& preview : previews_) {
    const auto size = render::familyForm(preview->family).size;
    preview->size = {static_cast<int>(std::lround(size.width * scale)),
                     static_cast<int>(std::lround(size.height * scale))};
    gtk_widget_set_size_request(preview->drawing, preview->size.width, preview->size.height);
  }
}

void GalleryWindow::announce(const char* message) {
  gtk_label_set_text(GTK_LABEL(message_), message);
  AtkObject* const accessible = gtk_widget_get_accessible(message_);
  // Screen readers say it although the focus stays where it is.
  if (g_signal_lookup("announcement", G_OBJECT_TYPE(accessible)) != 0) {
    g_signal_emit_by_name(accessible, "announcement", message);
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
  const guint modifiers = event->state & static_cast<guint>(gtk_accelerator_get_default_mod_mask());
  if (gdk_keyval_to_lower(event->keyval) == GDK_KEY_z && modifiers == GDK_CONTROL_MASK) {
    actions_.undoRemoval();
    return TRUE;
  }
  if (event->keyval != GDK_KEY_Escape) return FALSE;
  actions_.closed();
  return TRUE;
}

gboolean GalleryWindow::closeAsked(GdkEvent* /*event*/) {
  actions_.closed();
  return TRUE;
}

}  // namespace desktop
