// Any view tree that an extension may send is painted as a whole file of each kind, the same at each try. The first
// byte chooses the painter, the form and the appearance; the rest is a tree as JSON, or else the bytes of a title.
#include <cstdint>
#include <string>
#include <string_view>

#include <glib.h>

#include "any_tree.hpp"
#include "protocol/view_tree/builders.hpp"
#include "render/picture/picture.hpp"
#include "require.hpp"

namespace {

using namespace protocol;
using fuzz::require;

bool isWellFormed(const std::string& markup) {
  const GMarkupParser parser{};
  GMarkupParseContext* const context = g_markup_parse_context_new(&parser, GMarkupParseFlags{}, nullptr, nullptr);
  const bool parsed =
      g_markup_parse_context_parse(context, markup.data(), static_cast<gssize>(markup.size()), nullptr) &&
      g_markup_parse_context_end_parse(context, nullptr);
  g_markup_parse_context_free(context);
  return parsed;
}

}  // namespace

// The font library keeps its data until the process ends, in a way that the leak checker reports.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() { return "leak:libfontconfig\n"; }

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  constexpr render::BoardForm forms[] = {render::smallFamily, render::mediumFamily, render::largeFamily};
  const Node tree = fuzz::treeOrTitles({reinterpret_cast<const char*>(data) + 1, size - 1});
  const render::PictureOptions options{
      .form = forms[(data[0] >> 2) % 3],
      .scale = (data[0] & 0x20) != 0 ? 2.0 : 1.0,
      .appearance = (data[0] & 0x40) != 0 ? render::Appearance::dark : render::Appearance::light,
      .lettering = (data[0] & 0x80) != 0 ? render::Lettering::outlines : render::Lettering::text};
  constexpr render::Picture (*painters[])(const Node&, const render::PictureOptions&) = {
      render::drawPng, render::drawSvg, render::drawPdf};
  const auto painter = painters[data[0] % 3];
  const auto picture = painter(tree, options);
  require(picture.has_value());
  require(painter(tree, options) == picture);
  if (painter == render::drawPng) require(picture->starts_with("\x89PNG") && picture->contains("IEND"));
  if (painter == render::drawSvg) require(isWellFormed(*picture));
  if (painter == render::drawPdf) require(picture->starts_with("%PDF-") && picture->contains("%%EOF"));
  return 0;
}
