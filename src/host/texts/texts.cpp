#include "host/texts/texts.hpp"

#include <array>
#include <utility>

#include "platform/languages/preferred_languages.hpp"
#include "protocol/view_tree/localized_key.hpp"

namespace host {
namespace {

struct Wording {
  std::string_view polish;  ///< the key itself
  std::string_view english;
  std::string_view lithuanian;
};

// A number is never agreed with: each wording is right for 1, 2, 5, 11, 21 and any other count, where Lithuanian and
// Polish would need three forms of a noun.
constexpr std::array wordings{
    Wording{"Vamba", "Vamba", "Vamba"},
    Wording{"%lld do decyzji", "%lld to decide", "Spręsti: %lld"},
    Wording{"i %lld więcej", "and %lld more", "ir dar %lld"},
    Wording{"#%lld", "#%lld", "#%lld"},
};

std::string_view format(std::string_view key, Language language) {
  for (const Wording& wording : wordings) {
    if (wording.polish != key) continue;
    switch (language) {
      case Language::polish:
        return wording.polish;
      case Language::english:
        return wording.english;
      case Language::lithuanian:
        return wording.lithuanian;
    }
  }
  return key;
}

void localise(protocol::Node& node, Language language) {
  const auto children = [&](auto& stack) {
    for (auto& child : stack.children) localise(child, language);
  };
  if (auto* text = std::get_if<protocol::TextNode>(&node.kind)) {
    if (const auto* key = std::get_if<protocol::LocalizedKey>(&text->content)) {
      text->content = protocol::Verbatim{worded(*key, language)};
    }
  } else if (auto* vertical = std::get_if<protocol::VStackNode>(&node.kind)) {
    children(*vertical);
  } else if (auto* horizontal = std::get_if<protocol::HStackNode>(&node.kind)) {
    children(*horizontal);
  }
}

}  // namespace

Language languageOf(std::span<const std::string> preferred) {
  if (preferred.empty()) return Language::polish;
  const std::string first = platform::primarySubtag(preferred.front());
  if (first == "en") return Language::english;
  if (first == "lt") return Language::lithuanian;
  return Language::polish;
}

Language userLanguage() { return languageOf(platform::preferredLanguages()); }

std::string languageTag(Language language) {
  switch (language) {
    case Language::english:
      return "en";
    case Language::lithuanian:
      return "lt";
    case Language::polish:
      break;
  }
  return "pl";
}

std::string worded(const protocol::LocalizedKey& key, Language language) {
  return protocol::withArguments(format(key.key, language), key.arguments);
}

protocol::Node localised(protocol::Node view, Language language) {
  localise(view, language);
  return view;
}

protocol::Node localised(protocol::Node view) { return localised(std::move(view), userLanguage()); }

}  // namespace host
