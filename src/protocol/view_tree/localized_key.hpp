// Localised keys: their wordings in each language, with numbers put in.
//
//   withArguments(wordingOf("%lld do decyzji", "lt").value(), {{3}})   "Spręsti: 3"
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "protocol/view_tree/node.hpp"

namespace protocol {

/// `format` with each "%lld" replaced by the next argument in decimal, independent of any locale. A "%lld" without an
/// argument stays as written; arguments left over are not shown. Nothing else in `format` has a meaning.
std::string withArguments(std::string_view format, std::span<const std::int64_t> arguments);

/// The wording of a key in "en" or "lt"; in any other language the key itself, which is Polish. Absent for a key that
/// has no wordings.
std::optional<std::string_view> wordingOf(std::string_view key, std::string_view language);

/// What a host shows if it does not know the key: the sender's own text, else the key with its arguments.
std::string asWritten(const LocalizedKey& key);

/// The text of a node: verbatim, or its key as written.
std::string asWritten(const TextNode& text);

}  // namespace protocol
