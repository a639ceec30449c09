// A localised key with its numbers put in. Which wording a language has for a key is the host's knowledge
// (host/texts); this is the mechanism's fall-back and its substitution, which every painter can use.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "protocol/view_tree/node.hpp"

namespace protocol {

/// `format` with each "%lld" replaced by the next argument in decimal, independent of any locale. A "%lld" without an
/// argument stays as written; arguments left over are not shown. Nothing else in `format` has a meaning.
std::string withArguments(std::string_view format, std::span<const std::int64_t> arguments);

/// The key as written, in the language of whoever wrote it, with its arguments put in.
std::string asWritten(const LocalizedKey& key);

}  // namespace protocol
