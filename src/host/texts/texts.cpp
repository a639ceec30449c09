#include "host/texts/texts.hpp"

#include <utility>

#include "platform/languages/preferred_languages.hpp"
#include "protocol/view_tree/localized_key.hpp"

namespace host {
namespace {

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
  const auto wording = protocol::wordingOf(key.key, languageTag(language));
  return wording ? protocol::withArguments(*wording, key.arguments) : protocol::asWritten(key);
}

protocol::Node localised(protocol::Node view, Language language) {
  localise(view, language);
  return view;
}

protocol::Node localised(protocol::Node view) { return localised(std::move(view), userLanguage()); }

}  // namespace host
