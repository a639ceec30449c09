#include "platform/url/url.hpp"

#include <algorithm>
#include <utility>

#include <uriparser/Uri.h>

#include "platform/url/ascii.hpp"

namespace platform {
namespace {

std::optional<std::string> nonEmptyText(const UriTextRangeA& range) {
  if (range.first == nullptr || range.first == range.afterLast) return std::nullopt;
  return std::string(range.first, range.afterLast);
}

std::optional<std::string> nonEmptyLowerCase(const UriTextRangeA& range) {
  auto text = nonEmptyText(range);
  if (text) std::ranges::transform(*text, text->begin(), ascii::lower);
  return text;
}

}  // namespace

std::optional<Url> Url::parse(std::string text) {
  Url url(std::move(text));
  const char* const first = url.text_.data();
  UriUriA parts;
  const char* errorPosition = nullptr;
  // On failure the library has already freed what it had taken.
  if (uriParseSingleUriExA(&parts, first, first + url.text_.size(), &errorPosition) != URI_SUCCESS) return std::nullopt;
  url.scheme_ = nonEmptyLowerCase(parts.scheme);
  url.host_ = nonEmptyLowerCase(parts.hostText);
  url.port_ = nonEmptyText(parts.portText);
  uriFreeUriMembersA(&parts);
  return url;
}

}  // namespace platform
