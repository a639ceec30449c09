#include "protocol/view_tree/localized_key.hpp"

#include <algorithm>
#include <array>

namespace protocol {
namespace {

struct Wording {
  std::string_view polish;  ///< the key itself
  std::string_view english;
  std::string_view lithuanian;
};

// No noun depends on the number: each wording is correct for 1, 2, 5, 11, 21 and any other count. Otherwise Lithuanian
// and Polish would need three forms of the noun.
constexpr std::array wordings{
    Wording{"Vamba", "Vamba", "Vamba"},
    Wording{"%lld do decyzji", "%lld to decide", "Spręsti: %lld"},
    Wording{"i %lld więcej", "and %lld more", "ir dar %lld"},
    Wording{"#%lld", "#%lld", "#%lld"},
};

}  // namespace

std::optional<std::string_view> wordingOf(std::string_view key, std::string_view language) {
  const auto found = std::ranges::find(wordings, key, &Wording::polish);
  if (found == wordings.end()) return std::nullopt;
  if (language == "en") return found->english;
  return language == "lt" ? found->lithuanian : found->polish;
}

std::string withArguments(std::string_view format, std::span<const std::int64_t> arguments) {
  constexpr std::string_view placeholder = "%lld";
  std::string text;
  for (const std::int64_t argument : arguments) {
    const auto found = format.find(placeholder);
    if (found == std::string_view::npos) break;
    text.append(format.substr(0, found)).append(std::to_string(argument));
    format.remove_prefix(found + placeholder.size());
  }
  return text.append(format);
}

std::string asWritten(const LocalizedKey& key) { return key.value.value_or(withArguments(key.key, key.arguments)); }

std::string asWritten(const TextNode& text) {
  if (const auto* verbatim = std::get_if<Verbatim>(&text.content)) return verbatim->text;
  return asWritten(std::get<LocalizedKey>(text.content));
}

}  // namespace protocol
