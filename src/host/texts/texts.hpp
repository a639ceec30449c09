// The host's localised-text mechanism: what the widget hands over as a key is worded in Polish, English or Lithuanian
// (protocol/view_tree/localized_key.hpp holds the wordings, so no locale has to be installed). The widget's own
// sentences arrive translated.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "protocol/view_tree/node.hpp"

namespace host {

/// The languages that the host speaks.
enum class Language { polish, english, lithuanian };

/// The user's language by the rule that the widget follows, so that one board speaks one language: the first preferred
/// language alone decides ("en" and "lt" in their forms); none, or any other, is Polish, the language the keys are
/// written in.
Language languageOf(std::span<const std::string> preferred);

/// `languageOf` the environment's preferred languages (platform::preferredLanguages()), read at each call.
Language userLanguage();

/// As in BCP 47.
std::string languageTag(Language language);

/// The key's wording in the language with its numbers put in. A key that is not known shows the sender's own text, else
/// as written.
std::string worded(const protocol::LocalizedKey& key, Language language);

/// The tree with every key replaced by its wording as verbatim text; all else stays as it is.
protocol::Node localised(protocol::Node view, Language language);
protocol::Node localised(protocol::Node view);

}  // namespace host
