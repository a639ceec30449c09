// The floor for drawing a board as a process of its own: one line of text into a PNG of the same size, by the text
// library's shortest way and the PNG library's fastest settings. Writes the file to standard output.
#include <csetjmp>
#include <cstdio>

#include <pango/pangocairo.h>
#include <png.h>

int main() {
  constexpr int width = 480;
  constexpr int height = 320;
  cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height);
  cairo_t* cairo = cairo_create(surface);
  cairo_set_source_rgb(cairo, 1, 1, 1);
  cairo_paint(cairo);
  cairo_set_source_rgb(cairo, 0, 0, 0);
  PangoLayout* layout = pango_cairo_create_layout(cairo);
  pango_layout_set_font_description(layout, pango_font_description_from_string("Inter 15px"));
  pango_layout_set_text(layout, "Vamba", -1);
  pango_cairo_show_layout(cairo, layout);
  cairo_surface_flush(surface);

  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(png);
  if (setjmp(png_jmpbuf(png)) != 0) return 1;
  png_init_io(png, stdout);
  png_set_compression_level(png, 1);
  png_set_filter(png, PNG_FILTER_TYPE_BASE, PNG_FILTER_NONE);
  png_set_IHDR(png, info, width, height, 8, PNG_COLOR_TYPE_RGBA, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
               PNG_FILTER_TYPE_DEFAULT);
  png_set_bgr(png);
  png_write_info(png, info);
  unsigned char* row = cairo_image_surface_get_data(surface);
  for (int y = 0; y < height; ++y, row += cairo_image_surface_get_stride(surface)) png_write_row(png, row);
  png_write_end(png, info);
  return 0;
}
