#include "render/support/markup.hpp"

#include <glib.h>

namespace render::testing {
namespace {

struct Reading {
  Markup markup;
  std::vector<std::size_t> open;
};

void start(GMarkupParseContext*, const char* name, const char** keys, const char** values, void* data, GError**) {
  auto& reading = *static_cast<Reading*>(data);
  Element element{.name = name};
  for (; *keys != nullptr; ++keys, ++values) element.attributes.emplace_back(*keys, *values);
  reading.open.push_back(reading.markup.elements.size());
  reading.markup.elements.push_back(std::move(element));
}

void end(GMarkupParseContext*, const char*, void* data, GError**) { static_cast<Reading*>(data)->open.pop_back(); }

void text(GMarkupParseContext*, const char* bytes, gsize count, void* data, GError**) {
  auto& reading = *static_cast<Reading*>(data);
  if (!reading.open.empty()) reading.markup.elements[reading.open.back()].text.append(bytes, count);
}

}  // namespace

Markup readMarkup(const std::string& source) {
  Reading reading;
  const GMarkupParser parser{start, end, text, nullptr, nullptr};
  GMarkupParseContext* context = g_markup_parse_context_new(&parser, GMarkupParseFlags{}, &reading, nullptr);
  GError* error = nullptr;
  if (g_markup_parse_context_parse(context, source.data(), static_cast<gssize>(source.size()), &error) == FALSE ||
      g_markup_parse_context_end_parse(context, &error) == FALSE) {
    reading.markup.fault = error->message;
    g_error_free(error);
  }
  g_markup_parse_context_free(context);
  // XML allows no control characters, which the reader lets pass.
  for (const char character : source) {
    if (static_cast<unsigned char>(character) < 0x20 && character != '\n') reading.markup.fault = "control character";
  }
  return reading.markup;
}

}  // namespace render::testing
