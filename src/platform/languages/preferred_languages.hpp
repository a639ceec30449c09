// The user's preferred languages, from the environment. Each program chooses among them those that it speaks.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace platform {

/// The languages of `LANGUAGE` (a list separated by colons), else of the first of `LC_ALL`, `LC_MESSAGES` and `LANG`
/// that is set and not empty; most preferred first. The encoding and modifier are dropped, and "C" and "POSIX" name no
/// language. Reads the environment at each call; no locale has to be installed.
///
///   LANGUAGE=lt:en_GB                  {"lt", "en_GB"}
///   LANGUAGE= LANG=pl_PL.UTF-8         {"pl_PL"}
///   LC_ALL=C LANG=pl_PL.UTF-8          {}
std::vector<std::string> preferredLanguages();

/// The language of a tag: its first piece between '-' and '_', in lower case ("en-GB" gives "en", "-LT" gives "lt");
/// empty for a tag that has no piece.
std::string primarySubtag(std::string_view tag);

}  // namespace platform
