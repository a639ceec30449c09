// How long does a desktop take to draw the fullest medium board anew at two pixels a point: view, layout and painting,
// warm, without encoding a file? The floor beside it is one line of text painted onto the same surface.
#include <fstream>

#include <benchmark/benchmark.h>

#include "platform/calendar/clock.hpp"
#include "render/layout/family_form.hpp"
#include "render/picture/paint.hpp"
#include "render/picture/picture.hpp"
#include "render/picture/surface.hpp"
#include "widzety/timeline/wpis_json.hpp"
#include "widzety/view/widok_dnia.hpp"

namespace {

class NoonInUtc final : public platform::Clock {
 public:
  absl::Time now() const override { return absl::FromUnixSeconds(981201600); }
  platform::Calendar calendar() const override { return platform::Calendar(absl::UTCTimeZone()); }
};

const widzety::Wpis& fullestEntry() {
  static const widzety::Wpis entry = [] {
    std::ifstream file(VAMBA_FULLEST_ENTRY);
    return platform::EntryForm<widzety::Wpis>::fromJson(nlohmann::json::parse(file)).value();
  }();
  return entry;
}

protocol::Node view() {
  const widzety::WidokDnia widok{fullestEntry(), [] { return protocol::WidgetFamily::systemMedium; }};
  return widok.body(NoonInUtc(), widzety::Jezyk::pl);
}

constexpr double pixelsAPoint = 2;
constexpr render::Size board = render::mediumFamily.size;

/// A surface as large as the board.
struct Canvas {
  render::OwnedSurface surface{cairo_image_surface_create(
      CAIRO_FORMAT_ARGB32, static_cast<int>(board.width* pixelsAPoint), static_cast<int>(board.height* pixelsAPoint))};
  render::OwnedCairo cairo{cairo_create(surface.get())};
};

void viewLayoutAndPainting(benchmark::State& state) {
  const Canvas canvas;
  for (auto _ : state) {
    auto drawing = render::prepare(view(), {});
    if (!drawing) {
      state.SkipWithError("not painted");
      break;
    }
    render::paint(canvas.cairo.get(), *drawing, {.form = render::mediumFamily, .pixels = pixelsAPoint});
  }
}
BENCHMARK(viewLayoutAndPainting)->Unit(benchmark::kMillisecond)->MinWarmUpTime(0.2);

void viewAlone(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(view());
}
BENCHMARK(viewAlone)->Unit(benchmark::kMillisecond);

void fileOfThePicture(benchmark::State& state) {
  const auto tree = view();
  for (auto _ : state) benchmark::DoNotOptimize(render::drawPng(tree, {.scale = pixelsAPoint}));
}
BENCHMARK(fileOfThePicture)->Unit(benchmark::kMillisecond)->MinWarmUpTime(0.2);

void floorOneLineOfText(benchmark::State& state) {
  const Canvas canvas;
  cairo_scale(canvas.cairo.get(), pixelsAPoint, pixelsAPoint);
  for (auto _ : state) {
    const render::OwnedLayout layout(pango_cairo_create_layout(canvas.cairo.get()));
    const render::OwnedFontDescription font(pango_font_description_from_string("Inter 15px"));
    pango_layout_set_font_description(layout.get(), font.get());
    pango_layout_set_text(layout.get(), "Vamba", -1);
    pango_cairo_show_layout(canvas.cairo.get(), layout.get());
  }
}
BENCHMARK(floorOneLineOfText)->Unit(benchmark::kMillisecond)->MinWarmUpTime(0.2);

}  // namespace

BENCHMARK_MAIN();
