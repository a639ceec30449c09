#include "desktop/end_to_end/wayland_fixture.hpp"

#include <algorithm>
#include <cmath>

namespace end_to_end {

using nlohmann::json;
using support::Bitmap;

const Bitmap& OnSway::exported(const std::string& family, const std::vector<std::string>& options) {
  std::vector<std::string> all = options;
  all.insert(all.end(), {"--family", family});
  auto& picture = pictures_[all];
  if (picture.pixels.empty()) picture = exportedPicture(display(), settings_, all);
  return picture;
}

Bitmap OnSway::screenWith(const std::vector<ShownBoard>& boards, const std::vector<std::string>& options,
                          std::uint32_t width, std::uint32_t height) {
  constexpr support::Pixel background{63, 63, 63, 255};
  Bitmap screen{width, height, std::vector(std::size_t{width} * height, background)};
  for (const auto& board : boards) {
    const auto& picture = exported(board.family, options);
    const int scale = static_cast<int>(picture.width) / (board.family == "small" ? smallWidth : mediumWidth);
    paint(screen, picture, {board.place.x * scale, board.place.y * scale});
  }
  return screen;
}

testing::AssertionResult OnSway::comesToShow(const Bitmap& expected, const std::string& name, const std::string& output,
                                             std::size_t mayDiffer) {
  const support::Tolerance tolerance{.channel = 4, .oneMayDiffer = expected.pixels.size() / mayDiffer};
  Bitmap shown;
  eventually([&] {
    shown = desktop().screenshot(output);
    return support::differingPixels(shown, expected, tolerance.channel) <= mayDiffer;
  });
  return support::showsTheSame(shown, expected, "wayland-" + name, tolerance) << "\n" << host().said();
}

json OnSway::kept(std::size_t widget) { return placedWidget(display(), widget); }

testing::AssertionResult OnSway::comesToBeKept(const std::vector<json>& widgets) {
  const auto now = [this] {
    const auto all = placements(display());
    return all.is_null() ? json(nullptr) : all["widgets"];
  };
  if (eventually([&] { return now() == json(widgets); })) return testing::AssertionSuccess();
  return testing::AssertionFailure() << now() << "\n" << host().said();
}

void paint(Bitmap& screen, const Bitmap& picture, ScreenPoint place) {
  const auto painted = over(support::crop(screen, place.x, place.y, picture.width, picture.height), picture);
  for (std::uint32_t row = 0; row < painted.height; ++row) {
    const auto from = painted.pixels.begin() + std::ptrdiff_t{row} * painted.width;
    const auto start = (static_cast<std::ptrdiff_t>(row) + place.y) * screen.width + place.x;
    std::copy(from, from + painted.width, screen.pixels.begin() + start);
  }
}

Bitmap faded(Bitmap picture, double opacity) {
  for (auto& pixel : picture.pixels) pixel.opacity = static_cast<std::uint8_t>(std::lround(pixel.opacity * opacity));
  return picture;
}

json placedOn(const std::string& output, int id, const std::string& family, const std::string& corner, int x, int y) {
  auto widget = placed(id, family, output, corner, x, y);
  widget["monitor"]["make"] = "headless";
  widget["monitor"]["model"] = "headless";
  return widget;
}

}  // namespace end_to_end
